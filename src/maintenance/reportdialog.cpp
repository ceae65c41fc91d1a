#include "maintenance/reportdialog.h"

#include "logging/formatmemory.h"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QStandardPaths>
#include <QVBoxLayout>
#include <QtConcurrent>

ReportDialog::ReportDialog(const Diagnostics::Plan& plan, QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Report for the support"));
    auto* text =
        new QLabel(tr("This is what the report will hold. Sign-in tokens, your name and your home folder "
                      "are left out of it. Untick what you do not want to share. Nothing is sent: you "
                      "save the report as a file."),
                   this);
    text->setWordWrap(true);
    m_list = new QListWidget(this);
    m_list->setAccessibleName(tr("Parts of the report"));
    m_text = new QPlainTextEdit(this);
    m_text->setReadOnly(true);
    m_text->setTabChangesFocus(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(tr("Content of the part"));
    connect(m_list, &QListWidget::currentRowChanged, this, &ReportDialog::showPart);
    auto* parts = new QSplitter(this);
    parts->addWidget(m_list);
    parts->addWidget(m_text);
    parts->setStretchFactor(1, 1);
    parts->setChildrenCollapsible(false);
    parts->setSizes({340, 540});

    m_status = new QLabel(tr("Looking at the network and the disk. This takes some seconds."), this);
    m_status->setWordWrap(true);
    m_status->setTextFormat(Qt::PlainText);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Progress"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    m_save = buttons->addButton(tr("&Save..."), QDialogButtonBox::ActionRole);
    m_save->setEnabled(false);
    connect(m_save, &QPushButton::clicked, this, &ReportDialog::save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(text);
    layout->addWidget(parts, 1);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    layout->addWidget(buttons);
    resize(920, 600);
    connect(&m_bundle, &ReportBundle::finished, this, &ReportDialog::onGathered);
    connect(&m_saving, &QFutureWatcher<QString>::finished, this, &ReportDialog::onSaved);
    m_bundle.gather(plan);
}

ReportDialog::~ReportDialog() { m_saving.waitForFinished(); }

void ReportDialog::onGathered()
{
    for (const auto& part : m_bundle.parts()) {
        auto* item = new QListWidgetItem(
            QStringLiteral("%1 (%2)").arg(part.name, formatMemory(part.content.size())), m_list);
        item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
        item->setCheckState(Qt::Checked);
    }
    m_list->setCurrentRow(0);
    m_progress->hide();
    m_status->setText(tr("The report is ready to be saved."));
    m_save->setEnabled(true);
}

void ReportDialog::showPart(int row)
{
    if (row >= 0)
        m_text->setPlainText(QString::fromUtf8(m_bundle.parts().at(row).content));
}

void ReportDialog::save()
{
    const auto folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    const auto name = QStringLiteral("velkor-report-%1.zip")
                          .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss")));
    const auto path = QFileDialog::getSaveFileName(this, tr("Save the report"), QDir(folder).filePath(name),
                                                   tr("Zip files (*.zip)"));
    if (path.isEmpty())
        return;
    QVector<ReportPart> chosen;
    for (int row = 0; row < m_list->count(); ++row) {
        if (m_list->item(row)->checkState() == Qt::Checked)
            chosen << m_bundle.parts().at(row);
    }
    if (chosen.isEmpty()) {
        m_status->setText(tr("Nothing has been chosen."));
        return;
    }
    m_path = path;
    m_save->setEnabled(false);
    m_saving.setFuture(QtConcurrent::run(ReportBundle::write, path, chosen));
}

void ReportDialog::onSaved()
{
    m_save->setEnabled(true);
    const auto error = m_saving.result();
    m_status->setText(error.isEmpty() ? tr("Saved as %1.").arg(QDir::toNativeSeparators(m_path)) : error);
}
