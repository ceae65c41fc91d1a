#include "logging/scopedtimer.h"

#include <QCoreApplication>
#include <QDebug>
#include <QThread>

ScopedTimer::ScopedTimer(const QString& name) : m_name(name) { m_timer.start(); }

ScopedTimer::~ScopedTimer()
{
    const auto* app = QCoreApplication::instance();
    const bool onMain = app && QThread::currentThread() == app->thread();
    qDebug().noquote() << m_name << ":" << m_timer.elapsed()
                       << (onMain ? "on main thread" : "on background thread");
}
