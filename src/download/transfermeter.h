#pragma once

#include <QCoreApplication>
#include <QString>

#include <optional>

/**
 * Tells how fast a transfer is and how long it will still take. The caller says what time it is, in
 * milliseconds of any steady clock.
 */
class TransferMeter
{
    Q_DECLARE_TR_FUNCTIONS(TransferMeter)

public:
    void start(qint64 nowMs);
    /** The time until the next start() does not count. */
    void stop(qint64 nowMs);
    void add(qint64 bytes) { m_bytes += bytes; }
    /** Brings the figures up to date; call it now and then, with the bytes that are still to come. */
    void update(qint64 nowMs, qint64 bytesLeft);

    /** Bytes per second over the whole time; 0 while nothing is known. */
    double averageSpeed() const;
    /** Seconds; none while nothing can be said. Goes down evenly where the transfer does. */
    std::optional<double> timeLeft() const;

    /** "1.20 MB/s on average, about 2 min left"; without its second part where nothing can be said. */
    QString text() const;
    /** "12.3 s, 1.20 MB/s on average". */
    QString summary() const;
    /** A time for people, rounded the more the longer it is. */
    static QString formatTime(double seconds);

private:
    qint64 m_bytes = 0;
    qint64 m_activeMs = 0;
    qint64 m_lastUpdate = -1; // negative while stopped
    qint64 m_sampledMs = 0;
    qint64 m_sampledBytes = 0;
    double m_speed = 0;
    double m_timeLeft = -1;
};
