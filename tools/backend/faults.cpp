#include "tools/backend/faults.h"

void FaultTable::set(const QString& path, const Fault& fault)
{
    const std::lock_guard lock(m_mutex);
    auto& kept = m_faults[path];
    kept = fault;
    kept.cleared = m_cleared;
}

void FaultTable::clear()
{
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
    *m_cleared = true;
    m_cleared = std::make_shared<std::atomic<bool>>(false);
}

Fault FaultTable::take(const QString& path)
{
    const std::lock_guard lock(m_mutex);
    for (auto fault = m_faults.begin(); fault != m_faults.end(); ++fault) {
        const bool matches = fault.key().endsWith(QLatin1Char('*')) ? path.startsWith(fault.key().chopped(1))
                                                                    : path == fault.key();
        if (!matches || fault->times == 0)
            continue;
        if (fault->times > 0)
            --fault->times;
        return *fault;
    }
    return {};
}
