#include "settings/commandline.h"

#include <QCommandLineParser>

namespace
{
struct OptionRow {
    const char* longName;
    const char* shortName;
    const char* help;
    bool CommandLine::*flag;        // set when the option is given, or
    QString CommandLine::*value;    // takes the option's value, or
    QStringList CommandLine::*list; // takes the value's parts between commas
};

constexpr OptionRow options[] = {
    {"skip-version-check", "s", "Skip version check", &CommandLine::skipVersionCheck, nullptr, nullptr},
    {"verify-after-refresh", "v", "Verifies cache contents and purges extra files after refresh",
     &CommandLine::verifyAfterRefresh, nullptr, nullptr},
    {"exit-after-refresh", "e", "Exit as soon as the first refresh is done", &CommandLine::exitAfterRefresh,
     nullptr, nullptr},
    {"telemetry", "t", "Run with Telemetry", &CommandLine::telemetry, nullptr, nullptr},
    {"skip-test-servers", "k", "Skip updates for any test servers", &CommandLine::skipTestServers, nullptr,
     nullptr},
    {"extra-test-servers", "x", "Additional test servers", nullptr, nullptr, &CommandLine::extraTestServers},
    {"updating", "u", "Used by updater", &CommandLine::startedFromUpdater, nullptr, nullptr},
    {"client-args", "c", "Arguments to be passed to the Velkor client", nullptr, &CommandLine::clientArgs,
     nullptr},
    {"disable-web-gui", "d", "Disable the web gui", &CommandLine::disableWebGui, nullptr, nullptr},
    {"startup-server", "p", "Server landing page to load on startup", nullptr, &CommandLine::startupServer,
     nullptr},
};

QCommandLineOption toOption(const OptionRow& row)
{
    const QString longName = QLatin1String(row.longName);
    QCommandLineOption option({longName, QLatin1String(row.shortName)}, QLatin1String(row.help));
    if (!row.flag)
        option.setValueName(longName);
    return option;
}
} // namespace

CommandLine CommandLine::process(const QCoreApplication& app)
{
    QCommandLineParser parser;
    for (const auto& row : options)
        parser.addOption(toOption(row));
    parser.addHelpOption();
    parser.process(app);

    CommandLine result;
    for (const auto& row : options) {
        const QString name = QLatin1String(row.longName);
        if (row.flag)
            result.*row.flag = parser.isSet(name);
        else if (row.value)
            result.*row.value = parser.value(name);
        else if (const auto value = parser.value(name); !value.isEmpty())
            result.*row.list = value.split(QLatin1Char(','));
    }
    return result;
}
