#pragma once

#include <QObject>

/**
 * Turns the system's wish that the process end (SIGTERM, SIGINT, SIGHUP) into a signal on the main thread, so
 * that it ends in good order. One object at a time.
 */
class EndSignals : public QObject
{
    Q_OBJECT

public:
    explicit EndSignals(QObject* parent = nullptr);
    /** The system's own handling is back afterwards. */
    ~EndSignals() override;

signals:
    void endRequested();
};
