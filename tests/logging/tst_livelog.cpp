#include "logging/filelogger.h"
#include "logging/loglens.h"
#include "logging/logrecord.h"
#include "logging/messagehandler.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"
#include "tools/loglens/logwindow.h"

#include <QAction>
#include <QTcpServer>
#include <QtConcurrent>

#include <ctime>

#ifdef __SANITIZE_THREAD__
constexpr int maxPauseMs = 2000; // everything is slower there
#elif defined(__SANITIZE_ADDRESS__)
constexpr int maxPauseMs = 500;
#else
constexpr int maxPauseMs = 100;
#endif

/** The live log from the message functions to the viewer's table. */
class TestLiveLog : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_folder;
    std::unique_ptr<LogReceiver> m_receiver;
    std::unique_ptr<LogLens> m_lens;
    QVector<LogRecord> m_received;

    QString logText()
    {
        const auto files = readFolder(m_folder.path());
        return files.isEmpty() ? QString() : QString::fromUtf8(files.first());
    }
    static void decodeInto(const QByteArray& bytes, QVector<LogRecord>* records)
    {
        for (int at = 0; at < bytes.size(); at += LogRecord::size) {
            LogRecord record;
            QVERIFY(decodeLogRecord(bytes.mid(at, LogRecord::size), &record));
            records->append(record);
        }
    }

    /** How long this thread has been on a processor. */
    static double processorMs()
    {
        timespec time;
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return double(time.tv_sec) * 1000 + double(time.tv_nsec) / 1e6;
    }

private slots:
    void initTestCase()
    {
        m_receiver = std::make_unique<LogReceiver>();
        QVERIFY(m_receiver->listen(0));
        connect(m_receiver.get(), &LogReceiver::received, this,
                [this](const QVector<LogRecord>& records) { m_received += records; });
        m_lens = std::make_unique<LogLens>(quint16(m_receiver->port()));
        QVERIFY(FileLogger::instance()->initialize(m_folder.path()));
        installLogMessageHandler({FileLogger::instance(), m_lens.get()});
    }
    void cleanupTestCase()
    {
        qInstallMessageHandler(nullptr);
        m_lens.reset();
    }

    void encodesRecords_data()
    {
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("records");
        QTest::newRow("empty") << "" << 1;
        QTest::newRow("short") << "text" << 1;
        QTest::newRow("just fits") << QString(448, 'x') << 1;
        QTest::newRow("one too many") << QString(449, 'x') << 2;
        QTest::newRow("characters of three bytes") << QString(1000, QChar(0x20ac)) << 7;
        QTest::newRow("characters of four bytes") << QString::fromUtf8("\xf0\x9f\x9a\x80").repeated(300) << 3;
        QTest::newRow("long") << QString(100000, 'y') << 224;
    }
    void encodesRecords()
    {
        QFETCH(QString, message);
        QFETCH(int, records);
        LogRecord record;
        record.type = 2;
        record.msSinceEpoch = 1795260000123;
        record.processId = 4242;
        record.repeatCount = 7;
        record.category = QString(30, QChar(0xe4)); // 60 bytes
        record.message = message;
        QVector<LogRecord> decoded;
        const auto bytes = encodeLogRecords(record);
        QCOMPARE(bytes.size(), records * LogRecord::size);
        QCOMPARE(bytes.left(8), QByteArray("VLOG\1\0\2", 7) + char(records > 1 ? 1 : 0));
        decodeInto(bytes, &decoded);
        QString together;
        for (int i = 0; i < decoded.size(); ++i) {
            together += decoded[i].message;
            QCOMPARE(decoded[i].continues, i + 1 < decoded.size());
            QCOMPARE(decoded[i].category, QString(20, QChar(0xe4)));
            QCOMPARE(decoded[i].msSinceEpoch, qint64(1795260000123));
            QCOMPARE(decoded[i].processId, 4242U);
            QCOMPARE(decoded[i].repeatCount, 7U);
        }
        QCOMPARE(together, message);
    }

    void refusesWhatIsNoRecord()
    {
        auto bytes = encodeLogRecords({});
        LogRecord record;
        QVERIFY(decodeLogRecord(bytes, &record));
        QVERIFY(!decodeLogRecord(bytes.chopped(1), &record));
        for (const auto& [at, value] : {std::pair(0, 'X'), std::pair(4, '\2'), std::pair(6, '\5')}) {
            auto broken = bytes;
            broken[at] = value;
            QVERIFY(!decodeLogRecord(broken, &record));
        }
        QVERIFY(decodeLogRecord(bytes.left(24) + QByteArray(488, '\xff'), &record)); // no end, no text
    }

    // Eight threads log as fast as they can; the main thread stays responsive.
    void survivesABurst()
    {
        constexpr int threads = 8;
        constexpr int each = 12500;
        m_lens->connectToViewer();
        QTRY_COMPARE(m_receiver->launchers(), 1);
        // Time on the processor, so that other programs on a busy machine do not count.
        double longest = 0;
        double lastBeat = processorMs();
        QTimer beat;
        connect(&beat, &QTimer::timeout, this, [&] {
            const double now = processorMs();
            longest = qMax(longest, now - lastBeat);
            lastBeat = now;
        });
        beat.start(5);
        QVector<QFuture<void>> loggers;
        QThreadPool pool;
        pool.setMaxThreadCount(threads);
        for (int thread = 0; thread < threads; ++thread) {
            loggers << QtConcurrent::run(&pool, [thread] {
                for (int i = 0; i < each; ++i)
                    qDebug("thread %d record %d", thread, i);
            });
        }
        QEventLoop loop; // as the launcher runs; the test's own waiting sleeps now and then
        std::vector<QFutureWatcher<void>> watchers(threads);
        int running = threads;
        for (size_t i = 0; i < threads; ++i) {
            connect(&watchers[i], &QFutureWatcher<void>::finished, &loop, [&] {
                if (--running == 0)
                    loop.quit();
            });
            watchers[i].setFuture(loggers[int(i)]);
        }
        loop.exec();
        qDebug("the burst is over");
        flushLogMessages();
        QTRY_VERIFY_WITH_TIMEOUT(!m_received.isEmpty() && m_received.last().message.startsWith("thread"),
                                 10000);
        QVERIFY2(longest < maxPauseMs, qPrintable(QString::number(longest)));

        const auto isInOrder = [](const QStringList& messages, int* records) {
            QVector<int> next(threads, -1);
            static const QRegularExpression pattern("thread (\\d) record (\\d+)");
            *records = 0;
            for (const auto& message : messages) {
                const auto match = pattern.match(message);
                if (!match.hasMatch())
                    continue;
                auto& last = next[match.captured(1).toInt()];
                if (match.captured(2).toInt() <= last)
                    return false;
                last = match.captured(2).toInt();
                ++*records;
            }
            return true;
        };
        int count = 0;
        QVERIFY(isInOrder(logText().split('\n'), &count));
        QCOMPARE(count, threads * each); // none is missing in the file
        QStringList streamed;
        for (const auto& record : qAsConst(m_received))
            streamed << record.message;
        QVERIFY(isInOrder(streamed, &count));
        QVERIFY(count > 1000);
        QStringList kept;
        for (const auto& record : getLastLogMessages(2000))
            kept.prepend(record.message);
        QVERIFY(kept.size() <= 1001);
        QVERIFY(isInOrder(kept, &count));
    }

    void keepsSecretsFromTheViewer()
    {
        m_received.clear();
        const QString secret = "s3cret/token of a player";
        logRedactor().addSecret(secret);
        // Where a record is cut into two on the wire, the secret is gone already.
        qDebug().noquote() << QString(430, 'x') + secret + QString(600, 'y');
        qDebug().noquote() << "percent" << QString::fromLatin1(QUrl::toPercentEncoding(secret));
        qDebug().noquote() << "hex" << QString::fromLatin1(secret.toUtf8().toHex());
        QtConcurrent::run([&] { qWarning().noquote() << "elsewhere" << secret; }).waitForFinished();
        flushLogMessages();
        QTRY_VERIFY(!m_received.isEmpty() && m_received.last().message.startsWith("elsewhere"));
        QStringList all{logText()};
        for (const auto& record : qAsConst(m_received))
            all << record.message;
        for (const auto& text : all) {
            QVERIFY(!text.contains("s3cret") && !text.contains("token of a"));
            QVERIFY(!text.contains(QString::fromLatin1(QByteArray("s3cret").toHex())));
        }
        QVERIFY(all.contains(QString(430, 'x') + "[redacted]" + QString(600, 'y')));
    }

    void forgetsTheOldestForASlowViewer()
    {
        QTcpServer silent; // accepts and never reads
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        LogLens lens(silent.serverPort());
        lens.connectToViewer();
        QVERIFY(silent.waitForNewConnection(5000));
        const auto now = QDateTime::currentDateTime();
        for (int i = 0; i < 50000; ++i) {
            lens.outputMessage(now, "debug", "default", QString::number(i), 0);
            QVERIFY(lens.waiting() <= LogLens::maxWaiting);
            if (i % 500 == 0)
                QCoreApplication::processEvents();
        }
        QVERIFY(lens.waiting() > 0);
    }

    void findsAViewerThatComesLater()
    {
        LogReceiver late;
        QVERIFY(late.listen(0));
        const auto port = quint16(late.port());
        QVector<LogRecord> received;
        LogLens lens(port);
        lens.outputMessage(QDateTime::currentDateTime(), "debug", "default", "before anybody wanted it", 0);
        connect(&late, &LogReceiver::received, this, [&](const auto& records) { received += records; });
        lens.connectToViewer();
        lens.connectToViewer();
        lens.outputMessage(QDateTime::currentDateTime(), "error", "net", "kept until it came", 3);
        QTRY_COMPARE(received.size(), 1);
        QCOMPARE(late.launchers(), 1);
        QCOMPARE(received.first().message, QString("kept until it came"));
        QCOMPARE(received.first().type, 2);
        QCOMPARE(received.first().repeatCount, 3U);
    }

    void closesOnNonsense()
    {
        LogReceiver receiver;
        QVERIFY(receiver.listen(0));
        QSignalSpy refused(&receiver, &LogReceiver::refused);
        QTcpSocket socket;
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), quint16(receiver.port()));
        QVERIFY(socket.waitForConnected());
        socket.write(QByteArray(2000, 'x'));
        QTRY_COMPARE(refused.count(), 1);
        QTRY_COMPARE(receiver.launchers(), 0);
    }

    void showsWhatIsWanted()
    {
        LogModel model;
        QVector<LogRecord> records;
        for (int i = 0; i < 5000; ++i) {
            LogRecord record;
            record.type = i % 5;
            record.category = i % 2 == 0 ? "even" : "odd";
            record.message = QStringLiteral("message %1").arg(i);
            records << record;
        }
        model.append(records);
        QCOMPARE(model.rowCount(), 5000);
        model.setFilter({1U << 2, QString()});
        QCOMPARE(model.rowCount(), 1000);
        model.append(records.mid(0, 10));
        QCOMPARE(model.rowCount(), 1002);
        model.setFilter({0x1f, "MESSAGE 49"});
        QCOMPARE(model.rowCount(), 111); // 49, 490 to 499, 4900 to 4999
        QCOMPARE(model.data(model.index(0, LogModel::Message), Qt::DisplayRole).toString(),
                 QString("message 49"));
        model.setFilter({0x1f, "odd"});
        QCOMPARE(model.rowCount(), 2505);
        QCOMPARE(model.toText().count('\n'), 2505);
        model.clear();
        QCOMPARE(model.rowCount(), 0);
    }

    void keepsTheNewest()
    {
        LogModel model;
        LogRecord record;
        QVector<LogRecord> some;
        for (int i = 0; i < 30000; ++i) {
            record.message = QString::number(i);
            record.type = i % 2;
            some << record;
        }
        model.setFilter({1U, QString()});
        for (int i = 0; i < 10; ++i)
            model.append(some);
        QCOMPARE(int(model.recordCount()), int(LogModel::maxRecords));
        QCOMPARE(model.rowCount(), int(LogModel::maxRecords) / 2);
        QCOMPARE(model.data(model.index(model.rowCount() - 1, LogModel::Message), Qt::DisplayRole).toString(),
                 QString("29998"));
    }

    void pausesAndSaves()
    {
        LogReceiver receiver;
        LogWindow window(&receiver);
        QVector<LogRecord> records(1);
        records[0].message = "first";
        emit receiver.received(records);
        QTRY_COMPARE(window.model()->rowCount(), 1);
        const auto actions = window.findChildren<QAction*>();
        const auto pause = std::find_if(actions.begin(), actions.end(),
                                        [](const QAction* action) { return action->text() == "Pause"; });
        QVERIFY(pause != actions.end());
        (*pause)->trigger();
        records[0].message = "second";
        emit receiver.received(records);
        QTest::qWait(300);
        QCOMPARE(window.model()->rowCount(), 1);
        (*pause)->trigger();
        QTRY_COMPARE(window.model()->rowCount(), 2);
        const auto path = m_folder.filePath("saved/none");
        QVERIFY(!window.saveTo(path)); // no such folder
        QVERIFY(window.saveTo(m_folder.filePath("saved")));
        QVERIFY(readSample(m_folder.filePath("saved")).contains("\tsecond\n"));
    }
};

VELKOR_TEST_MAIN(TestLiveLog)
#include "tst_livelog.moc"
