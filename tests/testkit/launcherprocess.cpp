#include "tests/testkit/launcherprocess.h"

#include "tools/backend/localbackend.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSettings>
#include <QTest>

LauncherProcess::LauncherProcess(const LocalBackend& backend)
    : m_cache(m_home.filePath(QStringLiteral("cache"))),
      m_environment(QProcessEnvironment::systemEnvironment())
{
    m_environment.insert(QStringLiteral("HOME"), home());
    m_environment.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home.filePath(QStringLiteral(".config")));
    m_environment.insert(QStringLiteral("XDG_DATA_HOME"), m_home.filePath(QStringLiteral(".local/share")));
    m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), home());
    m_environment.insert(QStringLiteral("VELKOR_DEPLOYMENT_FILE"), backend.deploymentFile());
    shareCache(m_cache);
    set(QStringLiteral("UseCustomWine"), true); // most tests publish no Wine
    set(QStringLiteral("LauncherLastVerifyTime"), QDateTime::currentDateTime());
}

/** What a failed test needs to see of a log: the lines that warn, without the reports that repeat the others.
 */
static void printWarnings(const QString& log)
{
    auto lines = log.split(QLatin1Char('\n'));
    lines = lines.filter(QRegularExpression(QStringLiteral("\twarning\t|\terror\t")));
    for (const auto& line : lines.mid(qMax(0, lines.size() - 30)))
        qWarning().noquote() << "launcher:" << line.left(240);
    qWarning().noquote() << "launcher: last lines:" << log.right(1500);
}

LauncherProcess::~LauncherProcess()
{
    if (QTest::currentTestFailed()) {
        printWarnings(log());
        qWarning().noquote() << m_process.readAllStandardError();
    }
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void LauncherProcess::shareCache(const QString& cache)
{
    m_cache = cache;
    set(QStringLiteral("SharedCacheFolder"), cache);
}

static QString settingsFile(const QString& home)
{
    return home + QStringLiteral("/.config/Halden/Velkor.conf");
}

void LauncherProcess::set(const QString& key, const QVariant& value)
{
    QSettings(settingsFile(home()), QSettings::IniFormat).setValue(key, value);
}

QVariant LauncherProcess::setting(const QString& key) const
{
    return QSettings(settingsFile(home()), QSettings::IniFormat).value(key);
}

// The engine looks for authorities in a database of its own, and refuses to run as root in its sandbox.
void LauncherProcess::useWebEngine(const LocalBackend& backend, const QString& display, int port)
{
    setEnvironment(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    setEnvironment(QStringLiteral("DISPLAY"), display);
    setEnvironment(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
    setEnvironment(QStringLiteral("QTWEBENGINE_REMOTE_DEBUGGING"), QStringLiteral("127.0.0.1:%1").arg(port));
    // Leaks of the display's libraries cannot be told apart from ours; other tests look for leaks.
    setEnvironment(QStringLiteral("ASAN_OPTIONS"), QStringLiteral("detect_leaks=0"));
    const auto database = QStringLiteral("sql:") + home() + QStringLiteral("/.pki/nssdb");
    QDir(home()).mkpath(QStringLiteral(".pki/nssdb"));
    const auto certutil = [&](const QStringList& arguments) {
        QCOMPARE(QProcess::execute(QStringLiteral("certutil"),
                                   QStringList{QStringLiteral("-d"), database} + arguments),
                 0);
    };
    certutil({QStringLiteral("-N"), QStringLiteral("--empty-password")});
    certutil({QStringLiteral("-A"), QStringLiteral("-t"), QStringLiteral("C,,"), QStringLiteral("-n"),
              QStringLiteral("backend"), QStringLiteral("-i"), backend.authorityFile()});
}

void LauncherProcess::start(const QStringList& arguments)
{
    const auto earlier = logFiles();
    for (const auto& path : earlier)
        QFile::remove(path);
    auto command = m_wrapper + QStringList{m_program} + arguments;
    m_process.setProcessEnvironment(m_environment);
    m_process.start(command.takeFirst(), command);
    QVERIFY(m_process.waitForStarted());
}

int LauncherProcess::refreshOnce(const QStringList& moreArguments)
{
    start(QStringList{QStringLiteral("-d"), QStringLiteral("-k"), QStringLiteral("-e")} + moreArguments);
    const bool ended = m_process.waitForFinished(60000);
    m_standardError = QString::fromLocal8Bit(m_process.readAllStandardError());
    m_standardOutput = QString::fromLocal8Bit(m_process.readAllStandardOutput());
    if (!m_standardError.isEmpty())
        qWarning().noquote() << m_standardError;
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QStringList LauncherProcess::logFiles() const
{
    const QDir folder(m_home.filePath(QStringLiteral(".local/share/Halden/Velkor/Launcher")));
    auto names = folder.entryList({QStringLiteral("launcherlog*.txt")}, QDir::Files, QDir::Name);
    for (auto& name : names)
        name = folder.filePath(name);
    return names;
}

QString LauncherProcess::log() const
{
    const auto files = logFiles();
    return files.isEmpty() ? QString() : QString::fromUtf8(readSample(files.constLast()));
}

bool LauncherProcess::waitForLog(const QString& text, int milliseconds, int from) const
{
    QElapsedTimer timer;
    for (timer.start(); !timer.hasExpired(milliseconds); QTest::qWait(20)) {
        if (log().indexOf(text, from) >= 0)
            return true;
    }
    return false;
}
