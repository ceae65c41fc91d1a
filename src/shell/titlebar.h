#pragma once

#include <QWidget>

class QLabel;
class QMenu;
class QToolButton;

/** The title bar that a frameless window draws itself: icon with the menu, title, minimise and close. */
class TitleBar : public QWidget
{
    Q_OBJECT

public:
    /** The buttons act on the window that the bar is part of. */
    explicit TitleBar(QWidget* parent);

    void setTitle(const QString& title);
    /** The menu opens from the icon; not owned. */
    void setMenu(QMenu* menu);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    QToolButton* addButton(const QString& image, const QString& activeImage, const QString& name);

    QLabel* const m_title;
    QToolButton* m_icon = nullptr;
};
