#pragma once

#include "download/reportthrottle.h"
#include "download/transfermeter.h"

#include <QElapsedTimer>

/** How far a download queue has come: its counts, and what is said about them. */
class QueueProgress
{
    Q_DECLARE_TR_FUNCTIONS(QueueProgress)

public:
    QueueProgress() { m_clock.start(); }

    /** Forgets everything. */
    void reset() { *this = QueueProgress(); }
    void start() { m_meter.start(m_clock.elapsed()); }
    void stop() { m_meter.stop(m_clock.elapsed()); }

    void expect(qint64 bytes);
    /** A file needs no transfer, or less of one. */
    void spare(qint64 bytes) { m_bytesToDownload -= bytes; }
    void receive(qint64 bytes);
    /** What was received is of no use. */
    void lose(qint64 bytes) { m_bytesReceived -= bytes; }
    void fileDone() { ++m_filesDone; }

    int filesDone() const { return m_filesDone; }
    qint64 bytesToDownload() const { return m_bytesToDownload; }
    qint64 bytesReceived() const { return m_bytesReceived; }

    /** Whether it is time for another report; says yes at most eight times a second. */
    bool isReportDue();
    /** 0 to 1. */
    float fraction() const;
    QString text() const;
    /** Speed and time left. */
    QString detail() const { return m_meter.text(); }
    /** Time and average speed of the whole run, for the log. */
    QString summary() const { return m_meter.summary(); }

private:
    QElapsedTimer m_clock;
    ReportThrottle m_reports;
    TransferMeter m_meter;
    int m_filesEnqueued = 0;
    int m_filesDone = 0;
    qint64 m_bytesToDownload = 0;
    qint64 m_bytesReceived = 0;
};
