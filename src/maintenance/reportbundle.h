#pragma once

#include "maintenance/diagnostics.h"

#include <QFutureWatcher>
#include <QVector>

/** One file of a report. */
struct ReportPart {
    QString name;
    /** UTF-8. */
    QByteArray content;
};

/**
 * Gathers what somebody who helps a player wants to know: the last logs, the settings, versions, the state of
 * each server, and what the diagnostics say. No part holds a secret, the name of the user or the user's home
 * folder. Main thread; logs are read on the global thread pool, and the diagnostics take some seconds.
 */
class ReportBundle : public QObject
{
    Q_OBJECT

public:
    explicit ReportBundle(QObject* parent = nullptr);
    /** Waits for the worker thread. */
    ~ReportBundle() override;

    /** Starts it; finished() follows. */
    void gather(const Diagnostics::Plan& plan);
    /** In the order in which they are to be read. */
    const QVector<ReportPart>& parts() const { return m_parts; }

    /** Writes the parts as a zip file, in one step. Returns why that failed, for people; empty when it did
     * not. Any thread. */
    static QString write(const QString& path, const QVector<ReportPart>& parts);

signals:
    void finished();

private:
    void partDone();

    Diagnostics m_diagnostics;
    QFutureWatcher<QVector<ReportPart>> m_state;
    QVector<ReportPart> m_parts;
    int m_pending = 0;
};
