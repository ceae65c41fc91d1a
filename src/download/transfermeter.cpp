#include "download/transfermeter.h"

#include "logging/formatmemory.h"

#include <cmath>

namespace
{
constexpr qint64 sampleMs = 500;
/** Nothing is said about the time left before so much time: the first figures jump. */
constexpr qint64 firstWordMs = 3000;
/** How many seconds of the past the speed looks back on, and how fast the time left follows it. */
constexpr double speedMemory = 15;
constexpr double timeMemory = 8;

/** The weight of a new value after so many seconds, when the old ones are forgotten within memory. */
double weight(double seconds, double memory) { return 1 - std::exp(-seconds / memory); }
} // namespace

void TransferMeter::start(qint64 nowMs)
{
    if (m_lastUpdate < 0)
        m_lastUpdate = nowMs;
}

void TransferMeter::stop(qint64 nowMs)
{
    if (m_lastUpdate >= 0)
        m_activeMs += nowMs - m_lastUpdate;
    m_lastUpdate = -1;
}

void TransferMeter::update(qint64 nowMs, qint64 bytesLeft)
{
    if (m_lastUpdate < 0)
        return;
    m_activeMs += nowMs - m_lastUpdate;
    m_lastUpdate = nowMs;
    if (m_activeMs - m_sampledMs < sampleMs)
        return;

    const double seconds = static_cast<double>(m_activeMs - m_sampledMs) / 1000;
    const double speed = static_cast<double>(m_bytes - m_sampledBytes) / seconds;
    // At first there is less to look back on.
    const double memory = qMin(speedMemory, static_cast<double>(m_activeMs) / 1000);
    m_speed = m_sampledMs == 0 ? speed : m_speed + weight(seconds, memory) * (speed - m_speed);
    m_sampledMs = m_activeMs;
    m_sampledBytes = m_bytes;

    if (m_activeMs < firstWordMs || m_speed < 1)
        return;
    const double estimate = static_cast<double>(qMax(bytesLeft, qint64(0))) / m_speed;
    if (m_timeLeft < 0)
        m_timeLeft = estimate;
    const double counted = qMax(m_timeLeft - seconds, 0.0);
    m_timeLeft = counted + weight(seconds, timeMemory) * (estimate - counted);
}

double TransferMeter::averageSpeed() const
{
    return m_activeMs > 0 ? static_cast<double>(m_bytes) * 1000 / static_cast<double>(m_activeMs) : 0;
}

std::optional<double> TransferMeter::timeLeft() const
{
    return m_timeLeft < 0 ? std::nullopt : std::optional(m_timeLeft);
}

QString TransferMeter::text() const
{
    const auto speed = tr("%1/s on average").arg(formatMemory(std::llround(averageSpeed())));
    return m_timeLeft < 0 ? speed : tr("%1, about %2 left").arg(speed, formatTime(m_timeLeft));
}

QString TransferMeter::summary() const
{
    return QStringLiteral("%1 s, %2/s on average")
        .arg(static_cast<double>(m_activeMs) / 1000, 0, 'f', 1)
        .arg(formatMemory(std::llround(averageSpeed())));
}

QString TransferMeter::formatTime(double seconds)
{
    if (seconds < 55)
        return tr("%1 s").arg(std::max(5LL, std::llround(seconds / 5) * 5));
    const auto minutes = std::llround(seconds / 60);
    if (minutes < 60)
        return tr("%1 min").arg(minutes);
    const auto rounded = (minutes + 2) / 5 * 5;
    return tr("%1 h %2 min").arg(rounded / 60).arg(rounded % 60);
}
