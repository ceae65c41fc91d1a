#include "maintenance/migratesettingsgui.h"

#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QInputDialog>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>

MigrateSettingsGui::MigrateSettingsGui(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(tr("Client Settings"));
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(16);
    grid->setVerticalSpacing(10);
    m_left = createSide(tr("&From"), grid, 0);
    m_copy = new QPushButton(tr("C&opy >"), this);
    m_copy->setToolTip(tr("Copies the profile on the left to the server on the right"));
    grid->addWidget(m_copy, 2, 1, Qt::AlignVCenter);
    m_right = createSide(tr("&To"), grid, 2);
    if (m_right.server->count() > 1)
        m_right.server->setCurrentIndex(1);

    m_create = new QPushButton(tr("&New..."), this);
    m_create->setToolTip(tr("Makes a profile that starts as a copy of the one on the left"));
    m_rename = new QPushButton(tr("&Rename..."), this);
    m_delete = new QPushButton(tr("&Delete..."), this);
    auto* operations = new QHBoxLayout;
    operations->setSpacing(8);
    for (auto* button : {m_create, m_rename, m_delete}) {
        button->setAutoDefault(false);
        operations->addWidget(button);
    }
    m_copy->setAutoDefault(false);
    operations->addStretch();
    grid->addLayout(operations, 3, 0);
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("note"));
    m_status->setWordWrap(true);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addLayout(grid, 1);
    layout->addWidget(m_status);
    layout->addWidget(buttons);
    resize(720, 440);

    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_copy, &QPushButton::clicked, this, &MigrateSettingsGui::onCopy);
    connect(m_create, &QPushButton::clicked, this, &MigrateSettingsGui::onCreate);
    connect(m_rename, &QPushButton::clicked, this, &MigrateSettingsGui::onRename);
    connect(m_delete, &QPushButton::clicked, this, &MigrateSettingsGui::onDelete);
    connect(Settings::instance(), &Settings::clientSettingsProfilesChanged, this, [this] {
        fill(m_left);
        fill(m_right);
    });
    updateButtons();
}

MigrateSettingsGui::Side MigrateSettingsGui::createSide(const QString& label, QGridLayout* layout, int column)
{
    Side side{new QComboBox(this), new QListWidget(this)};
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys) {
        const auto* server = Settings::instance()->getServer(key);
        side.server->addItem(server ? server->getDisplayName() : key, key);
    }
    auto* text = new QLabel(label, this);
    text->setBuddy(side.server);
    side.profiles->setAccessibleName(tr("Profiles"));
    layout->addWidget(text, 0, column);
    layout->addWidget(side.server, 1, column);
    layout->addWidget(side.profiles, 2, column);
    layout->setColumnStretch(column, 1);
    layout->setColumnMinimumWidth(column, 280);
    connect(side.server, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            [this, side] { fill(side); });
    connect(side.profiles, &QListWidget::currentRowChanged, this, &MigrateSettingsGui::updateButtons);
    fill(side);
    return side;
}

void MigrateSettingsGui::fill(const Side& side)
{
    const auto chosen = profileOf(side);
    const auto names = getSettingsProfiles(serverOf(side));
    side.profiles->clear();
    side.profiles->addItems(names);
    side.profiles->setCurrentRow(qMax(0, names.indexOf(chosen)));
}

QString MigrateSettingsGui::serverOf(const Side& side) const { return side.server->currentData().toString(); }

QString MigrateSettingsGui::profileOf(const Side& side) const
{
    const auto* item = side.profiles->currentItem();
    return item ? item->text() : QString();
}

void MigrateSettingsGui::updateButtons()
{
    if (!m_delete) // while the dialog is being made
        return;
    const bool isOwn = m_left.profiles->currentRow() > 0; // the first is "Default"
    m_rename->setEnabled(isOwn);
    m_delete->setEnabled(isOwn);
}

void MigrateSettingsGui::show(ClientSettingsProfileResult result, const QString& success)
{
    m_status->setText(result == ClientSettingsProfileResult::Success ? success
                                                                     : describeProfileResult(result));
}

QString MigrateSettingsGui::askForName(const QString& title, const QString& proposal)
{
    bool accepted = false;
    const auto name = QInputDialog::getText(this, title, tr("Name of the profile:"), QLineEdit::Normal,
                                            proposal, &accepted);
    return accepted ? name.trimmed() : QString();
}

// "Default" is copied under another name, and so is what the other server has already.
void MigrateSettingsGui::onCopy()
{
    const auto profile = profileOf(m_left);
    auto name = profile;
    const auto taken = getSettingsProfiles(serverOf(m_right));
    if (taken.contains(name, Qt::CaseInsensitive))
        name = askForName(tr("Copy"), tr("%1 from %2").arg(profile, m_left.server->currentText()));
    if (!name.isEmpty())
        show(createSettingsProfile(serverOf(m_right), name, serverOf(m_left), profile),
             tr("%1 has been copied to %2.").arg(profile, m_right.server->currentText()));
}

void MigrateSettingsGui::onCreate()
{
    const auto name = askForName(tr("New profile"), QString());
    if (!name.isEmpty())
        show(createSettingsProfile(serverOf(m_left), name, serverOf(m_left), profileOf(m_left)),
             tr("%1 has been made.").arg(name));
}

void MigrateSettingsGui::onRename()
{
    const auto profile = profileOf(m_left);
    const auto name = askForName(tr("Rename"), profile);
    if (!name.isEmpty())
        show(renameSettingsProfile(serverOf(m_left), profile, name),
             tr("%1 is called %2 now.").arg(profile, name));
}

void MigrateSettingsGui::onDelete()
{
    const auto profile = profileOf(m_left);
    const auto question = tr("Do you want to delete the profile %1 of %2? Its settings are lost then.")
                              .arg(profile, m_left.server->currentText());
    if (QMessageBox::question(this, tr("Delete"), question, QMessageBox::Yes | QMessageBox::No,
                              QMessageBox::No) == QMessageBox::Yes)
        show(deleteSettingsProfile(serverOf(m_left), profile), tr("%1 has been deleted.").arg(profile));
}
