#pragma once

#include <QElapsedTimer>
#include <QString>

/** Logs, when it goes out of scope, how many milliseconds the scope took and on which kind of thread it ran.
 */
class ScopedTimer
{
public:
    explicit ScopedTimer(const QString& name);
    ~ScopedTimer();
    Q_DISABLE_COPY_MOVE(ScopedTimer)

private:
    const QString m_name;
    QElapsedTimer m_timer;
};
