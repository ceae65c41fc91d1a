#include "cache/updatemarker.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/testmain.h"

#include <QtConcurrent>

class TestUpdateMarker : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_cache;
    std::atomic<bool> m_stop{false};

    QString file(const QString& name) const { return m_cache->filePath("ResFiles/" + name); }
    QString addFile(const QByteArray& content, const QByteArray& onDisk)
    {
        const auto name = SampleTree::pathOf(content).mid(1);
        writeSample(file(name), onDisk);
        return name;
    }
    static void setAge(const QString& path, int seconds)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds),
                                 QFileDevice::FileModificationTime));
    }
    UpdateMarker::Recovery recover()
    {
        return UpdateMarker::recoverAfterCrash(
            m_cache->path(), [](const QString&) { return QString(); }, m_stop);
    }
    QStringList markers() const
    {
        return QDir(m_cache->filePath("ResFiles")).entryList({".updating-*"}, QDir::Files | QDir::Hidden);
    }

private slots:
    void init()
    {
        m_cache = std::make_unique<QTemporaryDir>();
        m_stop = false;
    }

    void marksUntilTheLastHolderIsDone()
    {
        QString error;
        auto first = UpdateMarker::acquire(m_cache->path(), &error);
        auto second = UpdateMarker::acquire(m_cache->path(), &error);
        QVERIFY2(first && second, qPrintable(error));
        QCOMPARE(markers(),
                 QStringList{QStringLiteral(".updating-%1").arg(QCoreApplication::applicationPid())});
        QVERIFY(UpdateMarker::release(std::move(first)));
        QCOMPARE(markers().size(), 1);
        QCOMPARE(recover().markers, 0); // this process lives
        QVERIFY(UpdateMarker::release(std::move(second)));
        QVERIFY(markers().isEmpty());
    }

    void saysWhyItCannotMark()
    {
        QString error;
        QVERIFY(!UpdateMarker::acquire(QStringLiteral("/proc/nothing"), &error));
        QVERIFY(error.contains("/proc/nothing/ResFiles/.updating-"));
    }

    void removesWhatAPowerCutSpoiled()
    {
        writeSample(file(".updating-99999"), {});
        const QByteArray content = sampleBytes(1, 5000);
        const auto whole = addFile(content, content);
        const auto emptied = addFile(sampleBytes(2, 5000), {});
        const auto shortened = addFile(sampleBytes(3, 5000), sampleBytes(3, 5000).left(4096));
        writeSample(file("zz/not named after its content"), "?");
        writeSample(file("ab/half.tmp"), "half");
        const auto result = recover();
        QCOMPARE(result.markers, 1);
        QCOMPARE(result.checked, 4);
        QCOMPARE(result.removed, 3);
        QVERIFY(QFile::exists(file(whole)));
        QVERIFY(QFile::exists(file("ab/half.tmp")));
        QVERIFY(!QFile::exists(file(emptied)) && !QFile::exists(file(shortened)));
        QVERIFY(markers().isEmpty());
        QCOMPARE(recover().markers, 0);
    }

    void trustsFilesOlderThanTheMarker()
    {
        const auto old = addFile(sampleBytes(4, 100), "bad but old");
        setAge(file(old), 100);
        writeSample(file(".updating-99999"), {});
        setAge(file(".updating-99999"), 50);
        const auto young = addFile(sampleBytes(5, 100), "bad and young");
        QCOMPARE(recover().removed, 1);
        QVERIFY(QFile::exists(file(old)));
        QVERIFY(!QFile::exists(file(young)));
    }

    void believesTheIndexBeforeTheName()
    {
        writeSample(file(".updating-99999"), {});
        writeSample(file("ab/any name"), "content");
        const auto result = UpdateMarker::recoverAfterCrash(
            m_cache->path(),
            [](const QString& name) { return name == "ab/any name" ? md5Of("content") : QString(); }, m_stop);
        QCOMPARE(result.removed, 0);
    }

    void leavesTheMarkerWhenStopped()
    {
        writeSample(file(".updating-99999"), {});
        m_stop = true;
        recover();
        QCOMPARE(markers().size(), 1);
    }

    void recoversOnceForManyAtATime()
    {
        writeSample(file(".updating-99999"), {});
        for (int i = 0; i < 50; ++i)
            addFile(sampleBytes(i, 2000), {});
        std::atomic<int> removed{0};
        QVector<int> launchers{1, 2, 3, 4};
        QtConcurrent::blockingMap(launchers, [&](int) { removed += recover().removed; });
        QCOMPARE(removed.load(), 50);
        QVERIFY(markers().isEmpty());
    }
};

VELKOR_TEST_MAIN(TestUpdateMarker)
#include "tst_updatemarker.moc"
