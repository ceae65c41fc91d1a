#pragma once

#include <QDateTime>
#include <QObject>

/** Broadcasts every log record. The signal is emitted on the thread that logs; receivers get it on their own.
 */
class Router : public QObject
{
    Q_OBJECT

signals:
    void log(const QDateTime& time, int type, const QString& category, const QString& message);
};
