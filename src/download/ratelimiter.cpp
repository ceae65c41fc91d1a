#include "download/ratelimiter.h"

#include <QDebug>

namespace
{
constexpr int refillMs = 20;
/** How long the bucket takes to fill, and by which part a second can exceed the limit. */
constexpr double capacitySeconds = 1.0 / 12;
/** A document that has not asked for so long does not wait any more. */
constexpr int longestWaitMs = 500;
constexpr int mostRequests = 10;
constexpr int fewestRequests = 3;
constexpr qint64 bytesPerRequest = 512 << 10;
constexpr qint64 smallestBuffer = 16 << 10;
constexpr qint64 largestBuffer = 1 << 20;
/** Without a limit the buffer only keeps a slow disk from filling the memory. */
constexpr qint64 unlimitedBuffer = 4 << 20;
} // namespace

RateLimiter::RateLimiter(QObject* parent) : QObject(parent)
{
    m_sinceRefill.start();
    m_refillTimer.setSingleShot(true);
    m_refillTimer.setTimerType(Qt::PreciseTimer);
    m_refillTimer.setInterval(refillMs);
    connect(&m_refillTimer, &QTimer::timeout, this, &RateLimiter::refilled);
}

RateLimiter* RateLimiter::instance()
{
    static auto* limiter = new RateLimiter;
    return limiter;
}

double RateLimiter::capacity() const { return static_cast<double>(m_limit) * capacitySeconds; }

void RateLimiter::refill()
{
    const double seconds = static_cast<double>(m_sinceRefill.nsecsElapsed()) / 1e9;
    m_sinceRefill.start();
    m_tokens = qMin(capacity(), m_tokens + seconds * static_cast<double>(m_limit));
}

void RateLimiter::setLimit(qint64 bytesPerSecond)
{
    if (bytesPerSecond == m_limit)
        return;
    refill();
    m_limit = qMax<qint64>(0, bytesPerSecond);
    m_tokens = qMin(m_tokens, capacity());
    qInfo() << "Download limit:" << m_limit << "bytes per second";
    emit limitChanged();
    emit refilled();
}

void RateLimiter::setHeld(bool held)
{
    if (std::exchange(m_held, held) != held)
        emit heldChanged(held);
}

qint64 RateLimiter::take(qint64 wanted, Kind kind)
{
    if (!isLimited())
        return wanted;
    refill();
    const bool documentWaits = m_sinceDocument.isValid() && !m_sinceDocument.hasExpired(longestWaitMs);
    const double kept = kind == Kind::File && documentWaits ? capacity() / 2 : 0;
    const auto granted = qBound<qint64>(0, static_cast<qint64>(m_tokens - kept), wanted);
    if (kind == Kind::Document) {
        m_sinceDocument.invalidate();
        if (granted < wanted)
            m_sinceDocument.start();
    }
    m_tokens -= static_cast<double>(granted);
    if (granted < wanted && !m_refillTimer.isActive())
        m_refillTimer.start();
    return granted;
}

qint64 RateLimiter::bufferSize() const
{
    return isLimited() ? qBound(smallestBuffer, m_limit / 80, largestBuffer) : unlimitedBuffer;
}

int RateLimiter::maxRequests() const
{
    const auto share = qMin<qint64>(m_limit / bytesPerRequest, mostRequests);
    return isLimited() ? qMax(fewestRequests, static_cast<int>(share)) : mostRequests;
}
