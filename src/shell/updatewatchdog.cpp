#include "shell/updatewatchdog.h"

#include <QDebug>

static constexpr int looksInPatience = 12;
/** From then on the time between two lines stays the same. */
static constexpr int mostDoublings = 4;

UpdateWatchdog::UpdateWatchdog(std::function<QString()> activity, std::chrono::milliseconds patience,
                               QObject* parent)
    : QObject(parent), m_activity(std::move(activity)), m_patience(patience)
{
    m_sinceMove.start();
    connect(&m_timer, &QTimer::timeout, this, &UpdateWatchdog::look);
    m_timer.start(qMax(std::chrono::milliseconds(1), patience / looksInPatience));
}

void UpdateWatchdog::look()
{
    const auto activity = m_activity();
    if (activity != m_last || activity.isEmpty()) {
        m_last = activity;
        m_sinceMove.start();
        m_warnings = 0;
        return;
    }
    const auto due = m_patience.count() << qMin(m_warnings, mostDoublings);
    if (!m_sinceMove.hasExpired(due))
        return;
    ++m_warnings;
    qWarning().noquote() << "Nothing has moved for" << m_sinceMove.elapsed() / 1000
                         << "s, waiting for:" << activity;
    emit stuck(activity);
}
