#pragma once

#include <QElapsedTimer>

/** Keeps reports of progress from coming more often than a person can read: eight times a second. */
class ReportThrottle
{
public:
    /** Whether it is time for another report; the first is always due. */
    bool isDue()
    {
        if (m_sinceReport.isValid() && !m_sinceReport.hasExpired(intervalMs - 1))
            return false;
        m_sinceReport.start();
        return true;
    }

private:
    static constexpr int intervalMs = 125;
    QElapsedTimer m_sinceReport;
};
