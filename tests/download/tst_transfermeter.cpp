#include "download/transfermeter.h"
#include "tests/testkit/testmain.h"

class TestTransferMeter : public QObject
{
    Q_OBJECT

private:
    static constexpr qint64 total = 100000000;

private slots:
    void goesDownEvenly()
    {
        // 100 MB at 1 MB/s, in gusts: nothing for a second, then two seconds' worth at once.
        TransferMeter meter;
        meter.start(0);
        qint64 received = 0;
        double last = -1;
        double largestJump = 0;
        for (qint64 now = 100; now <= 90000; now += 100) {
            const qint64 got = now % 2000 == 0 ? 2000000 : 0;
            received += got;
            meter.add(got);
            meter.update(now, total - received);
            const auto left = meter.timeLeft();
            QCOMPARE(left.has_value(), now >= 3000);
            if (now > 20000 && left) {
                const double truth = double(total - received) / 1000000;
                QVERIFY2(qAbs(*left - truth) < 0.25 * truth + 3, qPrintable(QString::number(now)));
                if (last >= 0)
                    largestJump = qMax(largestJump, qAbs(*left - last));
                last = *left;
            }
        }
        QVERIFY2(largestJump < 4, qPrintable(QString::number(largestJump)));
        QVERIFY(qAbs(meter.averageSpeed() - 1e6) < 1e4);
    }

    void doesNotCountPauses()
    {
        TransferMeter meter;
        meter.start(0);
        meter.add(1000000);
        meter.stop(1000);
        meter.stop(5000);
        meter.update(100000, total);
        meter.start(100000);
        meter.add(1000000);
        meter.stop(101000);
        QCOMPARE(meter.averageSpeed(), 1e6);
    }

    void knowsNothingAtFirst()
    {
        TransferMeter meter;
        QCOMPARE(meter.averageSpeed(), 0.0);
        meter.start(0);
        meter.update(10000, total);
        QVERIFY(!meter.timeLeft()); // nothing has come: for ever is no answer
        QVERIFY(!meter.text().contains("left"));
    }

    void roundsTimes()
    {
        const QVector<QPair<double, QString>> times{{0, "5 s"},          {12, "10 s"},       {54, "55 s"},
                                                    {58, "1 min"},       {89, "1 min"},      {3500, "58 min"},
                                                    {3600, "1 h 0 min"}, {7380, "2 h 5 min"}};
        for (const auto& [seconds, text] : times)
            QCOMPARE(TransferMeter::formatTime(seconds), text);
    }
};

VELKOR_TEST_MAIN(TestTransferMeter)
#include "tst_transfermeter.moc"
