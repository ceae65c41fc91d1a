#include "shell/launchoptionsdialog.h"

#include "servers/launchoptions.h"
#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>

LaunchOptionsDialog::LaunchOptionsDialog(Settings* settings, QWidget* parent)
    : QDialog(parent), m_settings(settings)
{
    setWindowTitle(tr("Launch options"));
    m_wrapper = new QLineEdit(settings->getLaunchWrapper(), this);
    auto* wrapperLabel = new QLabel(tr("&Command in front of Wine:"), this);
    wrapperLabel->setBuddy(m_wrapper);
    auto* wrapperHint =
        new QLabel(tr("For example \"gamemoderun\" or \"gamescope -f --\". Leave it empty to start "
                      "the game as usual."),
                   this);
    wrapperHint->setObjectName(QStringLiteral("note"));
    wrapperHint->setWordWrap(true);

    m_server = new QComboBox(this);
    auto* serverLabel = new QLabel(tr("&Server:"), this);
    serverLabel->setBuddy(m_server);
    for (const auto& key : settings->getFullServerList()) {
        const auto* server = settings->getServer(key);
        m_server->addItem(server ? server->getDisplayName() : key, key);
        m_lines.insert(key, settings->getClientEnvironment(key));
    }
    m_variables = new QPlainTextEdit(this);
    m_variables->setTabChangesFocus(true);
    m_variables->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    auto* variablesLabel = new QLabel(tr("&Environment variables of its clients, one on each line:"), this);
    variablesLabel->setBuddy(m_variables);
    variablesLabel->setWordWrap(true);
    m_problem = new QLabel(this);
    m_problem->setWordWrap(true);
    m_problem->setTextFormat(Qt::PlainText);
    m_problem->setObjectName(QStringLiteral("problem"));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &LaunchOptionsDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_server, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &LaunchOptionsDialog::showServer);

    auto* serverRow = new QHBoxLayout;
    serverRow->addWidget(serverLabel);
    serverRow->addWidget(m_server, 1);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(10);
    layout->addWidget(wrapperLabel);
    layout->addWidget(m_wrapper);
    layout->addWidget(wrapperHint);
    layout->addSpacing(10);
    layout->addLayout(serverRow);
    layout->addWidget(variablesLabel);
    layout->addWidget(m_variables, 1);
    layout->addWidget(m_problem);
    layout->addWidget(buttons);
    resize(520, 460);
    showServer();
}

void LaunchOptionsDialog::keepShown()
{
    if (!m_shownServer.isEmpty())
        m_lines[m_shownServer] = m_variables->toPlainText().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

void LaunchOptionsDialog::showServer()
{
    keepShown();
    m_shownServer = m_server->currentData().toString();
    m_variables->setPlainText(m_lines.value(m_shownServer).join(QLatin1Char('\n')));
}

QString LaunchOptionsDialog::problem()
{
    LaunchOptions options;
    auto wrapperProblem = readWrapper(m_wrapper->text(), &options);
    if (!wrapperProblem.isEmpty()) {
        m_wrapper->setFocus();
        return wrapperProblem;
    }
    for (int i = 0; i < m_server->count(); ++i) {
        auto text = readVariables(m_lines.value(m_server->itemData(i).toString()), &options);
        if (!text.isEmpty()) {
            m_server->setCurrentIndex(i);
            m_variables->setFocus();
            return text;
        }
    }
    return {};
}

void LaunchOptionsDialog::accept()
{
    keepShown();
    const auto text = problem();
    m_problem->setText(text);
    if (!text.isEmpty())
        return;
    m_settings->setLaunchWrapper(m_wrapper->text());
    for (auto server = m_lines.cbegin(); server != m_lines.cend(); ++server)
        m_settings->setClientEnvironment(server.key(), server.value());
    m_settings->save();
    QDialog::accept();
}
