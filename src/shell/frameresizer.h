#pragma once

#include <QObject>
#include <QWidget>

/** Lets a window without a frame be resized at its edges, whatever widget lies there. */
class FrameResizer : public QObject
{
    Q_OBJECT

public:
    /** The window owns this object. */
    explicit FrameResizer(QWidget* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* const m_window;
};
