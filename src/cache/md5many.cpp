#include "cache/md5many.h"

#include "cache/md5blocks.h"

#include <QCryptographicHash>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <functional>
#include <memory>
#include <numeric>
#include <unistd.h>

namespace
{
bool isStopped(const std::atomic<bool>* stop) { return stop && stop->load(std::memory_order_relaxed); }

#ifdef __x86_64__
using md5::blockSize;
using md5::lanes;

constexpr int maxLanesAlone = 2;
constexpr size_t readSize = size_t(32) * 1024;

/** One message on its way through a lane, a file or bytes in memory: read piece by piece, padded at its end.
 */
class Lane
{
public:
    Lane() : m_buffer(new char[readSize + 2 * blockSize]) {}
    ~Lane() { close(); }
    Q_DISABLE_COPY_MOVE(Lane)

    bool isActive() const { return m_message >= 0; }
    /** The number of the message; negative for none. */
    int message() const { return m_message; }
    const char* data() const { return m_buffer.get() + m_position; }
    size_t blocks() const { return (m_filled - m_position) / blockSize; }
    bool isAtEnd() const { return m_padded && blocks() == 0; }
    void skipBlocks(size_t count) { m_position += count * blockSize; }

    bool openFile(int message, const QString& path)
    {
        m_descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        start(message);
        return m_descriptor >= 0;
    }

    /** The bytes have to outlive the lane's work. */
    bool openBytes(int message, const QByteArray& bytes)
    {
        m_next = bytes.constData();
        m_left = static_cast<size_t>(bytes.size());
        start(message);
        return true;
    }

    void close()
    {
        if (m_descriptor >= 0)
            ::close(m_descriptor);
        m_descriptor = -1;
        m_message = -1;
    }

    /** Reads on when no whole block is left. Returns false when the file cannot be read. */
    bool refill()
    {
        if (m_padded || blocks() > 0)
            return true;
        std::memmove(m_buffer.get(), m_buffer.get() + m_position, m_filled - m_position);
        m_filled -= m_position;
        m_position = 0;
        while (m_filled < readSize) {
            const auto got = readSome(m_buffer.get() + m_filled, readSize - m_filled);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                return false;
            if (got == 0) {
                pad();
                return true;
            }
            m_filled += static_cast<size_t>(got);
            m_total += static_cast<uint64_t>(got);
        }
        return true;
    }

private:
    void start(int message)
    {
        m_message = message;
        m_total = 0;
        m_position = 0;
        m_filled = 0;
        m_padded = false;
    }

    ssize_t readSome(char* to, size_t length)
    {
        if (m_descriptor >= 0)
            return ::read(m_descriptor, to, length);
        length = qMin(length, m_left);
        std::memcpy(to, m_next, length);
        m_next += length;
        m_left -= length;
        return static_cast<ssize_t>(length);
    }

    void pad()
    {
        m_buffer[m_filled++] = static_cast<char>(0x80);
        while (m_filled % blockSize != blockSize - 8)
            m_buffer[m_filled++] = 0;
        const uint64_t bits = m_total * 8;
        std::memcpy(m_buffer.get() + m_filled, &bits, sizeof bits);
        m_filled += sizeof bits;
        m_padded = true;
    }

    const std::unique_ptr<char[]> m_buffer;
    int m_message = -1;
    int m_descriptor = -1;
    const char* m_next = nullptr;
    size_t m_left = 0;
    uint64_t m_total = 0;
    size_t m_position = 0;
    size_t m_filled = 0;
    bool m_padded = false;
};

class LaneHasher
{
public:
    /** Opens a message in a lane; returns false when it cannot be read. */
    using Opener = std::function<bool(Lane* lane, int message)>;

    LaneHasher(int messages, Opener open, const std::atomic<bool>* stop)
        : m_open(std::move(open)), m_stop(stop), m_results(messages)
    {
    }

    QVector<QByteArray> run()
    {
        for (size_t lane = 0; lane < lanes; ++lane)
            startNextMessage(lane);
        while (!isStopped(m_stop) && hashWhatIsThere())
            settleLanes();
        return m_results;
    }

private:
    void startNextMessage(size_t lane)
    {
        while (m_next < m_results.size()) {
            const int message = m_next++;
            if (m_open(&m_lanes[lane], message) && m_lanes[lane].refill()) {
                for (size_t word = 0; word < 4; ++word)
                    m_states.words[word][lane] = md5::initialState[word];
                return;
            }
            m_lanes[lane].close();
        }
    }

    /** Hashes as many blocks as all busy lanes have. Returns false when no lane is busy. */
    bool hashWhatIsThere()
    {
        static constexpr std::array<char, blockSize> idleBlock{};
        std::array<const char*, lanes> data;
        std::array<size_t, lanes> advance;
        size_t count = SIZE_MAX;
        int busy = 0;
        for (size_t lane = 0; lane < lanes; ++lane) {
            const bool active = m_lanes[lane].isActive();
            data[lane] = active ? m_lanes[lane].data() : idleBlock.data();
            advance[lane] = active ? blockSize : 0;
            if (active) {
                count = qMin(count, m_lanes[lane].blocks());
                ++busy;
            }
        }
        if (busy == 0)
            return false;
        if (busy <= maxLanesAlone) {
            hashLanesAlone();
            return true;
        }
        md5::hashBlocks(&m_states, data, advance, count);
        for (auto& lane : m_lanes) {
            if (lane.isActive())
                lane.skipBlocks(count);
        }
        return true;
    }

    void hashLanesAlone()
    {
        for (size_t lane = 0; lane < lanes; ++lane) {
            auto& current = m_lanes[lane];
            if (!current.isActive())
                continue;
            const size_t blocks = current.blocks();
            md5::hashBlocksAlone(&m_states, lane, current.data(), blocks);
            current.skipBlocks(blocks);
        }
    }

    void settleLanes()
    {
        for (size_t lane = 0; lane < lanes; ++lane) {
            auto& current = m_lanes[lane];
            if (!current.isActive())
                continue;
            const bool readable = current.refill();
            if (readable && !current.isAtEnd())
                continue;
            if (readable)
                m_results[current.message()] = digest(lane);
            current.close();
            startNextMessage(lane);
        }
    }

    QByteArray digest(size_t lane) const
    {
        std::array<uint32_t, 4> words;
        for (size_t word = 0; word < 4; ++word)
            words[word] = m_states.words[word][lane];
        return QByteArray(reinterpret_cast<const char*>(words.data()), sizeof words).toHex();
    }

    const Opener m_open;
    const std::atomic<bool>* const m_stop;
    QVector<QByteArray> m_results;
    md5::States m_states{};
    std::array<Lane, lanes> m_lanes;
    int m_next = 0;
};
#endif
} // namespace

QVector<QByteArray> md5OfFilesPlain(const QVector<QString>& paths, const std::atomic<bool>* stop)
{
    QVector<QByteArray> results(paths.size());
    for (int i = 0; i < paths.size() && !isStopped(stop); ++i) {
        QFile file(paths[i]);
        QCryptographicHash hash(QCryptographicHash::Md5);
        if (file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) && hash.addData(&file))
            results[i] = hash.result().toHex();
    }
    return results;
}

QVector<QByteArray> md5OfFiles(const QVector<QString>& paths, const std::atomic<bool>* stop)
{
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) {
        const auto open = [&](Lane* lane, int i) { return lane->openFile(i, paths[i]); };
        return LaneHasher(paths.size(), open, stop).run();
    }
#endif
    return md5OfFilesPlain(paths, stop);
}

QVector<QByteArray> md5OfMany(const QVector<QByteArray>& messages)
{
#ifdef __x86_64__
    if (__builtin_cpu_supports("avx2")) {
        // The longest first, so that no lane is left alone with one at the end.
        QVector<int> order(messages.size());
        std::iota(order.begin(), order.end(), 0);
        std::sort(order.begin(), order.end(),
                  [&](int a, int b) { return messages[a].size() > messages[b].size(); });
        const auto open = [&](Lane* lane, int i) { return lane->openBytes(order[i], messages[order[i]]); };
        return LaneHasher(messages.size(), open, nullptr).run();
    }
#endif
    QVector<QByteArray> results;
    for (const auto& bytes : messages)
        results << QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex();
    return results;
}
