#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>

/**
 * Says in the log what the update is waiting for, whenever nothing has moved for a minute; again after two
 * more, four more and so on, as long as it stays so.
 */
class UpdateWatchdog : public QObject
{
    Q_OBJECT

public:
    /** activity tells what is going on, with whatever changes while it moves; empty when nothing is to be
     * done. */
    UpdateWatchdog(std::function<QString()> activity, std::chrono::milliseconds patience,
                   QObject* parent = nullptr);

    /** Whether nothing has moved for so long that it was logged. */
    bool isStuck() const { return m_warnings > 0; }

signals:
    void stuck(const QString& activity);

private:
    void look();

    const std::function<QString()> m_activity;
    const std::chrono::milliseconds m_patience;
    QTimer m_timer;
    QString m_last;
    QElapsedTimer m_sinceMove;
    int m_warnings = 0;
};
