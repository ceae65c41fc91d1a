#include "shell/adoptdialog.h"

#include "shell/fitheight.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

AdoptDialog::AdoptDialog(const QString& folder, const QString& cache, QWidget* parent)
    : QDialog(parent), m_cache(cache)
{
    setWindowTitle(tr("Use existing game files"));
    auto* text =
        new QLabel(tr("Game files that are on this machine already, from an older installation or from "
                      "a copied disk, need not be downloaded. Name the folder that they are in: "
                      "whatever matches is taken over, under whatever names. Nothing in the folder is "
                      "changed."),
                   this);
    text->setWordWrap(true);
    m_folder = new QLineEdit(folder, this);
    auto* label = new QLabel(tr("&Folder:"), this);
    label->setBuddy(m_folder);
    auto* browseButton = new QPushButton(tr("&Browse..."), this);
    m_link = new QCheckBox(tr("&Link files instead of copying them"), this);
    m_link->setToolTip(tr("They take no more room then, where both folders are on one disk"));
    auto* warning =
        new QLabel(tr("Linked files are shared: do not play from the old folder any more, nor change "
                      "files in it. It may be deleted."),
                   this);
    warning->setWordWrap(true);
    warning->setVisible(false);
    connect(m_link, &QCheckBox::toggled, warning, &QLabel::setVisible);
    m_problem = new QLabel(this);
    m_problem->setObjectName(QStringLiteral("note"));
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_buttons->addButton(tr("&Use these files"), QDialogButtonBox::AcceptRole)->setDefault(true);
    connect(m_buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(m_buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(browseButton, &QPushButton::clicked, this, &AdoptDialog::browse);
    connect(m_folder, &QLineEdit::textChanged, this, &AdoptDialog::check);

    auto* row = new QHBoxLayout;
    row->addWidget(label);
    row->addWidget(m_folder, 1);
    row->addWidget(browseButton);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(text);
    layout->addLayout(row);
    layout->addWidget(m_link);
    layout->addWidget(warning);
    layout->addWidget(m_problem);
    layout->addStretch();
    layout->addWidget(m_buttons);
    resize(560, 0);
    new FitHeight(this);
    check();
}

QString AdoptDialog::folder() const
{
    auto text = m_folder->text().trimmed();
    if (text == QLatin1String("~") || text.startsWith(QLatin1String("~/")))
        text.replace(0, 1, QDir::homePath());
    return text.isEmpty() ? QString() : QDir::cleanPath(text);
}

bool AdoptDialog::linkFiles() const { return m_link->isChecked(); }

void AdoptDialog::browse()
{
    const auto chosen = QFileDialog::getExistingDirectory(this, tr("Folder with game files"), folder());
    if (!chosen.isEmpty())
        m_folder->setText(chosen);
}

QString AdoptDialog::problem() const
{
    const QFileInfo info(folder());
    if (!info.isAbsolute() || !info.isDir())
        return tr("There is no such folder.");
    if (!info.isReadable() || !info.isExecutable())
        return tr("The folder cannot be read.");
    const auto chosen = info.canonicalFilePath() + QLatin1Char('/');
    const auto cache = QFileInfo(m_cache).canonicalFilePath() + QLatin1Char('/');
    if (cache.size() > 1 && (chosen.startsWith(cache) || cache.startsWith(chosen)))
        return tr("That folder is, or contains, the launcher's own shared cache.");
    return {};
}

void AdoptDialog::check()
{
    const auto text = problem();
    m_problem->setText(m_folder->text().isEmpty() ? QString() : text);
    const auto all = m_buttons->buttons();
    for (auto* button : all) {
        if (m_buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
            button->setEnabled(text.isEmpty());
    }
}
