#include "shell/frameresizer.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace
{
constexpr int resizeMargin = 5;

Qt::Edges edgesAt(const QPoint& position, const QSize& size)
{
    Qt::Edges edges;
    if (position.x() < resizeMargin)
        edges |= Qt::LeftEdge;
    if (position.x() >= size.width() - resizeMargin)
        edges |= Qt::RightEdge;
    if (position.y() < resizeMargin)
        edges |= Qt::TopEdge;
    if (position.y() >= size.height() - resizeMargin)
        edges |= Qt::BottomEdge;
    return edges;
}

Qt::CursorShape cursorFor(Qt::Edges edges)
{
    if (edges == (Qt::LeftEdge | Qt::TopEdge) || edges == (Qt::RightEdge | Qt::BottomEdge))
        return Qt::SizeFDiagCursor;
    if (edges == (Qt::RightEdge | Qt::TopEdge) || edges == (Qt::LeftEdge | Qt::BottomEdge))
        return Qt::SizeBDiagCursor;
    return edges & (Qt::LeftEdge | Qt::RightEdge) ? Qt::SizeHorCursor : Qt::SizeVerCursor;
}
} // namespace

FrameResizer::FrameResizer(QWidget* window) : QObject(window), m_window(window)
{
    qApp->installEventFilter(this);
}

bool FrameResizer::eventFilter(QObject* watched, QEvent* event)
{
    auto* handle = m_window->windowHandle();
    if (watched != handle ||
        (event->type() != QEvent::MouseMove && event->type() != QEvent::MouseButtonPress))
        return false;
    const auto* mouse = static_cast<QMouseEvent*>(event);
    const auto edges = m_window->isMaximized() ? Qt::Edges() : edgesAt(mouse->pos(), m_window->size());
    if (event->type() == QEvent::MouseMove) {
        if (edges)
            handle->setCursor(cursorFor(edges));
        else
            handle->unsetCursor();
        return false;
    }
    return edges && mouse->button() == Qt::LeftButton && handle->startSystemResize(edges);
}
