#pragma once

#include <QObject>

class QWidget;

/** Makes a window high enough for its texts, which are wrapped, whenever they change. The window owns it. */
class FitHeight : public QObject
{
    Q_OBJECT

public:
    explicit FitHeight(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* const m_window;
};
