#include "download/queueprogress.h"

#include "logging/formatmemory.h"

void QueueProgress::expect(qint64 bytes)
{
    ++m_filesEnqueued;
    m_bytesToDownload += bytes;
}

void QueueProgress::receive(qint64 bytes)
{
    m_bytesReceived += bytes;
    m_meter.add(bytes);
}

bool QueueProgress::isReportDue()
{
    if (!m_reports.isDue())
        return false;
    m_meter.update(m_clock.elapsed(), m_bytesToDownload - m_bytesReceived);
    return true;
}

float QueueProgress::fraction() const
{
    return m_bytesToDownload > 0 ? static_cast<float>(m_bytesReceived) / static_cast<float>(m_bytesToDownload)
                                 : 0.0F;
}

QString QueueProgress::text() const
{
    return tr("%1 of %2 files (%3)").arg(m_filesDone).arg(m_filesEnqueued).arg(formatMemory(m_bytesReceived));
}
