#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

/**
 * The download limit. All requests of the process take what they read from one token bucket, so that no
 * second sees more than a twelfth over the limit. What is not read stays with the network, which slows the
 * sender down.
 *
 * It can also be held: then files do not move at all, until it is let go. Main thread.
 */
class RateLimiter : public QObject
{
    Q_OBJECT

public:
    explicit RateLimiter(QObject* parent = nullptr);

    /** The one limiter of the process. */
    static RateLimiter* instance();

    /** Bytes per second; 0 for none. Takes effect at once. */
    void setLimit(qint64 bytesPerSecond);
    qint64 limit() const { return m_limit; }
    bool isLimited() const { return m_limit > 0; }

    void setHeld(bool held);
    bool isHeld() const { return m_held; }

    /** Single documents, which an update waits for, go before files. */
    enum class Kind { Document, File };
    /**
     * How many of so many bytes, which have arrived, may be read now; they count as read. After less than
     * wanted, refilled() follows.
     */
    qint64 take(qint64 wanted, Kind kind);

    /** The buffer that a request should have, in bytes: the less is let through, the less lies in it. */
    qint64 bufferSize() const;

    /** How many requests should be in flight: what lies in their buffers counts the more, the lower the
     * limit. */
    int maxRequests() const;

signals:
    /** Whoever got less than wanted may ask again. */
    void refilled();
    void limitChanged();
    void heldChanged(bool held);

private:
    void refill();
    double capacity() const;

    qint64 m_limit = 0;
    bool m_held = false;
    double m_tokens = 0;
    QElapsedTimer m_sinceRefill;
    QElapsedTimer m_sinceDocument; // valid while a document has to wait
    QTimer m_refillTimer;
};
