#include "shell/fitheight.h"

#include <QEvent>
#include <QLayout>
#include <QWidget>

FitHeight::FitHeight(QWidget* window) : QObject(window), m_window(window)
{
    window->installEventFilter(this);
}

// A layout alone asks for the height that its texts have when they are not wrapped.
bool FitHeight::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Show || event->type() == QEvent::LayoutRequest) {
        const int needed = m_window->layout()->totalHeightForWidth(m_window->width());
        if (m_window->height() < needed)
            m_window->resize(m_window->width(), needed);
    }
    return QObject::eventFilter(watched, event);
}
