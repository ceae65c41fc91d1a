#include "logging/filelogger.h"
#include "logging/formatmemory.h"
#include "logging/messagehandler.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QLoggingCategory>
#include <QtConcurrent>

Q_LOGGING_CATEGORY(special, "special")

namespace
{
struct Line {
    QString type;
    QString category;
    QString message;
    int repeats;
};

/** A sink that keeps its lines. */
class ListLogger : public LoggerBase
{
public:
    QVector<Line> lines;
    void outputMessage(const QDateTime& /*time*/, const QString& typeName, const QString& category,
                       const QString& message, int repeatCount) override
    {
        lines.append({typeName, category, message, repeatCount});
    }
    void log(const QString& message, int type = QtDebugMsg,
             const QString& category = QStringLiteral("default"))
    {
        onLog(QDateTime::currentDateTime(), type, category, message);
    }
};
} // namespace

class TestLogging : public QObject
{
    Q_OBJECT

private:
    ListLogger m_sink;

    static QString newest() { return getLastLogMessages(1).first().message; }

private slots:
    void initTestCase() { installLogMessageHandler({&m_sink}); }
    void init() { m_sink.lines.clear(); }
    void cleanupTestCase() { qInstallMessageHandler(nullptr); }

    void foldsRepeats_data()
    {
        QTest::addColumn<int>("repeats");
        QTest::addColumn<QVector<int>>("counts"); // of the lines for the repeated record
        QTest::newRow("one") << 1 << QVector<int>{0};
        QTest::newRow("five") << 5 << QVector<int>{0, 4};
        QTest::newRow("hundred") << 100 << QVector<int>{0, 99};
        QTest::newRow("hundred and one") << 101 << QVector<int>{0, 100};
        QTest::newRow("two hundred and fifty") << 250 << QVector<int>{0, 100, 100, 49};
    }
    void foldsRepeats()
    {
        QFETCH(int, repeats);
        ListLogger logger;
        for (int i = 0; i < repeats; ++i)
            logger.log(QStringLiteral("same"));
        logger.log(QStringLiteral("other"));
        QVector<int> counts;
        for (const auto& line : qAsConst(logger.lines)) {
            if (line.message == QLatin1String("same"))
                counts << line.repeats;
        }
        QTEST(counts, "counts");
        QCOMPARE(logger.lines.last().message, QStringLiteral("other"));
        QCOMPARE(logger.lines.last().repeats, 0);
    }

    void doesNotFoldDifferentRecords()
    {
        ListLogger logger;
        logger.log(QStringLiteral("same"), QtDebugMsg);
        logger.log(QStringLiteral("same"), QtWarningMsg);
        logger.log(QStringLiteral("same"), QtWarningMsg, QStringLiteral("special"));
        QCOMPARE(logger.lines.size(), 3);
    }

    void namesTypesAndCategories()
    {
        qDebug("d");
        qInfo("i");
        qWarning("w");
        qCCritical(special, "c");
        QStringList seen;
        for (const auto& line : qAsConst(m_sink.lines))
            seen << line.category + "/" + line.type + "/" + line.message;
        QCOMPARE(seen,
                 (QStringList{"default/debug/d", "default/info/i", "default/warning/w", "special/error/c"}));
        QCOMPARE(loggingGetTypeStringFromType(QtFatalMsg), QStringLiteral("fatal"));
        QCOMPARE(loggingGetTypeStringFromType(9), QString());
    }

    void keepsABoundedHistoryNewestFirst()
    {
        for (int i = 0; i < 1500; ++i)
            qDebug("record %d", i);
        const auto records = getLastLogMessages(5000);
        QVERIFY(records.size() >= 1000 && records.size() <= 1001);
        QCOMPARE(records.first().message, QStringLiteral("record 1499"));
        QCOMPARE(getLastLogMessages(2).size(), 2);
        QCOMPARE(getLastLogMessages(2).last().message, QStringLiteral("record 1498"));
        QVERIFY(getLastLogMessages(0).isEmpty());
        QVERIFY(getLastLogMessages(-1).isEmpty());
    }

    void keepsTheOrderOfEachThread()
    {
        constexpr int perThread = 500;
        QVector<int> threads{0, 1, 2, 3, 4, 5, 6, 7};
        auto logging = QtConcurrent::map(threads, [](int thread) {
            for (int i = 0; i < perThread; ++i)
                qDebug("thread %d message %d", thread, i);
        });
        logging.waitForFinished();
        QTRY_COMPARE(m_sink.lines.size(), threads.size() * perThread);
        QMap<QString, int> next;
        for (const auto& line : qAsConst(m_sink.lines)) {
            const auto words = line.message.split(' ');
            QCOMPARE(words[3].toInt(), next[words[1]]++);
        }
    }

    void hidesSecrets_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << "begin %1 end";
        QTest::newRow("twice") << "%1%1";
        const QString secret = QStringLiteral("s3cret/token+with=signs");
        QTest::newRow("percent") << QString::fromLatin1("x=" + QUrl::toPercentEncoding(secret));
        QTest::newRow("hex") << QString::fromLatin1(secret.toUtf8().toHex());
        QTest::newRow("upper hex") << QString::fromLatin1(secret.toUtf8().toHex().toUpper());
        QTest::newRow("base64") << QString::fromLatin1(secret.toUtf8().toBase64());
    }
    void hidesSecrets()
    {
        QFETCH(QString, text);
        const QString secret = QStringLiteral("s3cret/token+with=signs");
        logRedactor().addSecret(secret);
        logRedactor().addSecret(QString());
        const auto logged = text.contains("%1") ? text.arg(secret) : text;
        qDebug().noquote() << QTest::currentDataTag() << logged;
        QVERIFY2(newest().contains(QLatin1String("[redacted]")), qPrintable(newest()));
        QCOMPARE(m_sink.lines.last().message, newest());
        QVERIFY(!newest().contains(logged));
        QVERIFY(!newest().contains(secret));
    }

    void takesSecretsFromTheEnvironment()
    {
        qputenv("SOME_ACCESS_TOKEN", "from-the-environment");
        qputenv("PLAIN_NAME", "nothing-special");
        qputenv("API_KEY_ENABLED", "1");
        Redactor redactor;
        redactor.addSecretsOfEnvironment();
        QCOMPARE(redactor.redact("a from-the-environment nothing-special 1"),
                 QStringLiteral("a [redacted] nothing-special 1"));
    }

    void redactsLongSecretsBeforeTheirParts()
    {
        Redactor redactor;
        redactor.addSecret("abcd");
        redactor.addSecret("abcdefgh");
        QCOMPARE(redactor.redact("abcdefgh"), QStringLiteral("[redacted]"));
    }

    void writesALogFile()
    {
        const QTemporaryDir folder;
        const auto logs = folder.filePath("deep/logs");
        FileLogger logger;
        QVERIFY(logger.initialize(logs));
        const QDateTime time(QDate(2024, 3, 5), QTime(14, 7, 9, 42));
        logger.outputMessage(time, "debug", "default", QStringLiteral("Größe"), 0);
        logger.outputMessage(time, "error", "wine", "again", 4);
        const auto names = QDir(logs).entryList({"launcherlog-*.txt"}, QDir::Files);
        QCOMPARE(names.size(), 1);
        QVERIFY(QRegularExpression(
                    "^launcherlog-\\d{4}\\.\\d\\d\\.\\d\\d-\\d\\d\\.\\d\\d\\.\\d\\d\\.\\d{3}\\.txt$")
                    .match(names.first())
                    .hasMatch());
        QCOMPARE(QString::fromUtf8(readSample(logs + "/" + names.first())),
                 QStringLiteral("2024-03-05T14:07:09.042Z\tdefault\tdebug\tGröße\n"
                                "2024-03-05T14:07:09.042Z\twine\terror\tagain (Repeated 4 times)\n"));
        QCOMPARE(QFileInfo(logs + "/" + names.first()).permissions() & (QFile::ReadGroup | QFile::ReadOther),
                 QFile::Permissions());
    }

    void keepsTheNewestFourOldLogs()
    {
        const QTemporaryDir folder;
        for (int i = 0; i < 6; ++i) {
            const auto path = folder.filePath(QStringLiteral("launcherlog-%1.txt").arg(i));
            writeSample(path, "old");
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadWrite));
            // The names run against the ages: age decides.
            QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-1000 * (i + 1)),
                                     QFileDevice::FileModificationTime));
        }
        writeSample(folder.filePath("other.txt"), "kept");
        FileLogger logger;
        QVERIFY(logger.initialize(folder.path()));
        QStringList old = QDir(folder.path()).entryList({"launcherlog-?.txt"}, QDir::Files, QDir::Name);
        QCOMPARE(old, (QStringList{"launcherlog-0.txt", "launcherlog-1.txt", "launcherlog-2.txt",
                                   "launcherlog-3.txt"}));
        QVERIFY(QFile::exists(folder.filePath("other.txt")));
    }

    void doesWithoutALogFile()
    {
        QVERIFY(!FileLogger().initialize(QString()));
        QVERIFY(!FileLogger().initialize(QStringLiteral("/proc/no/such/folder")));
    }

    void formatsMemory_data()
    {
        QTest::addColumn<qint64>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << qint64(0) << "0.00 B";
        QTest::newRow("bytes") << qint64(1023) << "1023.00 B";
        QTest::newRow("kilo") << qint64(1024) << "1.00 KB";
        QTest::newRow("mega") << qint64(1048576) << "1.00 MB";
        QTest::newRow("below giga") << qint64(1073741823) << "1024.00 MB";
        QTest::newRow("giga") << qint64(5368709120) << "5.00 GB";
    }
    void formatsMemory()
    {
        QFETCH(qint64, bytes);
        QTEST(formatMemory(bytes), "text");
    }
};

VELKOR_TEST_MAIN(TestLogging)
#include "tst_logging.moc"
