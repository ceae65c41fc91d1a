#pragma once

#include <QDateTime>
#include <QObject>
#include <QString>

/**
 * Base of all log sinks: folds runs of identical records into one line with a repeat count.
 *
 * Lives on the main thread, where onLog() is delivered.
 */
class LoggerBase : public QObject
{
    Q_OBJECT

public:
    ~LoggerBase() override;

    /** Writes one line. repeatCount is 0, or how many identical records this line stands for. */
    virtual void outputMessage(const QDateTime& time, const QString& typeName, const QString& category,
                               const QString& message, int repeatCount) = 0;

public slots:
    void onLog(const QDateTime& time, int type, const QString& category, const QString& message);

private:
    QDateTime m_lastTime;
    int m_lastType = -1;
    QString m_lastTypeName;
    QString m_lastCategory;
    QString m_lastMessage;
    int m_repeatCount = 0;
};
