#pragma once

#include <atomic>

/** Base that counts the living objects of a class, for diagnosis: class Index : private LiveCount<Index>. */
template <typename T>
class LiveCount
{
public:
    static int count() { return s_count; }

protected:
    LiveCount() { ++s_count; }
    LiveCount(const LiveCount&) { ++s_count; }
    LiveCount& operator=(const LiveCount&) = default;
    ~LiveCount() { --s_count; }

private:
    static inline std::atomic<int> s_count{0};
};
