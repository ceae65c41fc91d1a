#include "tasks/scheduler.h"
#include "tests/testkit/testmain.h"

namespace
{
/** Writes what happens to it into a journal; ends when told. */
class JournalTask : public Task
{
public:
    JournalTask(const QString& name, QStringList* journal) : m_journal(journal) { setProperty("name", name); }
    void go() override { note("go"); }
    void cancel() override { note("cancel"); }
    void pause() override { note("pause"); }
    void resume() override { note("resume"); }
    void end()
    {
        note("end");
        emit finished(this);
    }

private:
    void note(const char* what) { m_journal->append(taskName() + " " + QLatin1String(what)); }
    QStringList* const m_journal;
};

class InstantTask : public JournalTask
{
public:
    using JournalTask::JournalTask;
    void go() override
    {
        JournalTask::go();
        end();
    }
};
} // namespace

class TestScheduler : public QObject
{
    Q_OBJECT

private:
    QStringList m_journal;
    Scheduler m_scheduler{[] { return QStringList{"ks", "pl"}; }};

    void schedule(const QString& key, Task* task)
    {
        emit m_scheduler.schedule(key, task);
        QCoreApplication::processEvents();
    }

private slots:
    void init() { m_journal.clear(); }

    void runsOneForegroundTaskAtATime()
    {
        JournalTask a("a", &m_journal);
        JournalTask b("b", &m_journal);
        JournalTask c("c", &m_journal);
        schedule("ks", &a);
        schedule("pl", &b);
        schedule("ks", &c);
        QCOMPARE(m_journal, QStringList{"a go"});
        a.end();
        QCOMPARE(m_journal.last(),
                 QStringLiteral("c go")); // the server list decides, not the order of arrival
        c.end();
        QCOMPARE(m_journal.last(), QStringLiteral("b go"));
        b.end();
    }

    void defersEvenOnTheSameThread()
    {
        JournalTask a("a", &m_journal);
        emit m_scheduler.schedule("ks", &a);
        QVERIFY(m_journal.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(m_journal, QStringList{"a go"});
        a.end();
    }

    void servesThePriorityKeyFirstAndStrangersLast()
    {
        JournalTask running("running", &m_journal);
        JournalTask zoo("zoo", &m_journal);
        JournalTask alpha("alpha", &m_journal);
        JournalTask ks("ks", &m_journal);
        JournalTask pl("pl", &m_journal);
        JournalTask capital("Background", &m_journal);
        schedule("ks", &running);
        schedule("zoo", &zoo);
        schedule("alpha", &alpha);
        schedule("Background", &capital); // an ordinary queue
        schedule("ks", &ks);
        schedule("pl", &pl);
        m_scheduler.setPriorityKey("pl");
        for (auto* task : {&running, &pl, &ks, &capital, &alpha, &zoo}) {
            QVERIFY(m_journal.contains(task->taskName() + " go"));
            task->end();
        }
        m_scheduler.setPriorityKey(QString());
        QCOMPARE(m_journal.filter(" go"),
                 (QStringList{"running go", "pl go", "ks go", "Background go", "alpha go", "zoo go"}));
        QVERIFY(!m_scheduler.hasBackgroundTask());
    }

    void pausesTheBackgroundWhileSomethingElseRuns()
    {
        JournalTask back("back", &m_journal);
        JournalTask next("next", &m_journal);
        JournalTask fore("fore", &m_journal);
        schedule("background", &back);
        QCOMPARE(m_journal, QStringList{"back go"});
        schedule("background", &next);
        QCOMPARE(m_journal, (QStringList{"back go", "back pause", "back resume"}));
        m_journal.clear();
        schedule("ks", &fore);
        QCOMPARE(m_journal, (QStringList{"back pause", "fore go"}));
        fore.end();
        QCOMPARE(m_journal.last(), QStringLiteral("back resume"));
        back.end();
        QCOMPARE(m_journal.last(), QStringLiteral("next go"));
        QVERIFY(m_scheduler.hasBackgroundTask());
        next.end();
        QVERIFY(!m_scheduler.hasBackgroundTask());
        m_scheduler.pauseBackgroundTask();
        m_scheduler.resumeBackgroundTask();
    }

    void goesOnAfterTasksThatEndAtOnce()
    {
        InstantTask a("a", &m_journal);
        InstantTask b("b", &m_journal);
        emit m_scheduler.schedule("ks", &a);
        emit m_scheduler.schedule("ks", &b);
        QCoreApplication::processEvents();
        QCOMPARE(m_journal, (QStringList{"a go", "a end", "b go", "b end"}));
    }

    void waitsForTheBackground()
    {
        JournalTask back("back", &m_journal);
        schedule("background", &back);
        QTimer::singleShot(10, &back, [&back] { back.end(); });
        m_scheduler.waitForBackgroundTasks();
        QVERIFY(m_journal.contains("back end"));
    }

    void goesOnWhenTasksAreDeletedEarly()
    {
        auto running = std::make_unique<JournalTask>("running", &m_journal);
        auto waiting = std::make_unique<JournalTask>("waiting", &m_journal);
        auto unheard = std::make_unique<JournalTask>("unheard", &m_journal);
        JournalTask last("last", &m_journal);
        schedule("ks", running.get());
        schedule("ks", waiting.get());
        schedule("ks", &last);
        emit m_scheduler.schedule("ks", unheard.get());
        unheard.reset();
        waiting.reset();
        QCoreApplication::processEvents();
        QCOMPARE(m_journal, QStringList{"running go"});
        running.reset();
        QCOMPARE(m_journal.last(), QStringLiteral("last go"));
        last.end();
    }

    void stopsForGood()
    {
        Scheduler scheduler([] { return QStringList(); });
        JournalTask a("a", &m_journal);
        JournalTask b("b", &m_journal);
        emit scheduler.schedule("x", &a);
        emit scheduler.schedule("x", &b);
        QCoreApplication::processEvents();
        scheduler.stop();
        a.end();
        QCOMPARE(m_journal, (QStringList{"a go", "a cancel", "a end"}));
    }
};

VELKOR_TEST_MAIN(TestScheduler)
#include "tst_scheduler.moc"
