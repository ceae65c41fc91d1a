#include "tests/e2e/wineprefix.h"

#include <QDir>
#include <QProcess>
#include <QtTest>

WinePrefix::WinePrefix(const QString& display) : m_environment(QProcessEnvironment::systemEnvironment())
{
    m_environment.insert(QStringLiteral("WINEPREFIX"), filePath(QStringLiteral("cache/wineenv")));
    m_environment.insert(QStringLiteral("WINEDLLOVERRIDES"), QStringLiteral("mscoree,mshtml="));
    m_environment.insert(QStringLiteral("DISPLAY"), display);
    // The sanitizers of the launcher are nothing for Wine.
    m_environment.insert(QStringLiteral("LD_PRELOAD"), QString());
    QDir().mkpath(cache());
    QProcess registry;
    registry.setProcessEnvironment(m_environment);
    registry.setProcessChannelMode(QProcess::MergedChannels);
    registry.start(QLatin1String(wine),
                   {QStringLiteral("reg"), QStringLiteral("add"),
                    QStringLiteral("HKCU\\Software\\Wine\\WineDbg"), QStringLiteral("/v"),
                    QStringLiteral("ShowCrashDialog"), QStringLiteral("/t"), QStringLiteral("REG_DWORD"),
                    QStringLiteral("/d"), QStringLiteral("0"), QStringLiteral("/f")});
    QVERIFY(registry.waitForFinished(120000));
    QVERIFY2(registry.exitCode() == 0, registry.readAll());
}

WinePrefix::~WinePrefix()
{
    QProcess server;
    server.setProcessEnvironment(m_environment);
    server.start(QStringLiteral("/usr/lib/wine/wineserver64"), {QStringLiteral("-k")});
    server.waitForFinished();
}
