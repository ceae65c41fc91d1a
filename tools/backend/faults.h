#pragma once

#include <QHash>
#include <QString>

#include <atomic>
#include <memory>
#include <mutex>

/** Something that goes wrong with the answers for a path. */
struct Fault {
    enum class Kind {
        None,
        Status,     // answers with the status
        Stall,      // sends half of the body and falls silent
        Cut,        // sends half of the body and closes the connection
        WrongBytes, // sends as many bytes as it should, but others
        Slow,       // sends at bytesPerSecond, until the fault is cleared
        NoRange,    // sends all where a part is asked for
    };
    Kind kind = Kind::None;
    int status = 0;
    int bytesPerSecond = 0;
    /** For how many requests; negative for all. */
    int times = -1;
    /** True as soon as the fault has been cleared; null before it is set. */
    std::shared_ptr<const std::atomic<bool>> cleared = nullptr;

    static Fault answerWith(int status, int times = -1) { return {Kind::Status, status, 0, times, {}}; }
    static Fault stall(int times = -1) { return {Kind::Stall, 0, 0, times, {}}; }
    static Fault cut(int times = -1) { return {Kind::Cut, 0, 0, times, {}}; }
    static Fault wrongBytes(int times = -1) { return {Kind::WrongBytes, 0, 0, times, {}}; }
    static Fault noRange(int times = -1) { return {Kind::NoRange, 0, 0, times, {}}; }
    static Fault slow(int bytesPerSecond, int times = -1)
    {
        return {Kind::Slow, 0, bytesPerSecond, times, {}};
    }
};

/** The faults of one server, by path. Any thread. */
class FaultTable
{
public:
    /** A path that ends with "*" stands for all that begin so. */
    void set(const QString& path, const Fault& fault);
    /** Responses that are being sent slowly go on at full speed. */
    void clear();
    /** The fault for one request, which uses one of its times up. */
    Fault take(const QString& path);

private:
    std::mutex m_mutex;
    QHash<QString, Fault> m_faults;
    std::shared_ptr<std::atomic<bool>> m_cleared = std::make_shared<std::atomic<bool>>(false);
};
