#include "shell/titlebar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMouseEvent>
#include <QStyleOption>
#include <QStylePainter>
#include <QToolButton>
#include <QWindow>

namespace
{
/** Shows another image while the pointer is over it or it has the focus. */
class HoverButton : public QToolButton
{
public:
    HoverButton(const QString& image, const QString& activeImage, QWidget* parent)
        : QToolButton(parent), m_normal(image), m_active(activeImage)
    {
        setIcon(m_normal);
        setFocusPolicy(Qt::TabFocus);
    }

protected:
    void enterEvent(QEvent* event) override
    {
        setIcon(m_active);
        QToolButton::enterEvent(event);
    }
    void leaveEvent(QEvent* event) override
    {
        setIcon(m_normal);
        QToolButton::leaveEvent(event);
    }

private:
    const QIcon m_normal;
    const QIcon m_active;
};
} // namespace

TitleBar::TitleBar(QWidget* parent) : QWidget(parent), m_title(new QLabel(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 8, 4);
    layout->setSpacing(6);

    m_icon = addButton(QStringLiteral("icon"), QStringLiteral("icon_active"), tr("Menu"));
    m_icon->setIconSize({24, 24});
    m_icon->setPopupMode(QToolButton::InstantPopup);
    m_title->setStyleSheet(QStringLiteral("QLabel {background-color: transparent; color: white}"));
    // Presses on the title drag the window like presses beside it.
    m_title->setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* minimize = addButton(QStringLiteral("minimize"), QStringLiteral("minimize_active"), tr("Minimize"));
    auto* close = addButton(QStringLiteral("close"), QStringLiteral("close_active"), tr("Close"));
    connect(minimize, &QToolButton::clicked, this, [this] { window()->showMinimized(); });
    connect(close, &QToolButton::clicked, this, [this] { window()->close(); });

    layout->addWidget(m_icon);
    layout->addWidget(m_title, 1);
    layout->addWidget(minimize);
    layout->addWidget(close);
}

QToolButton* TitleBar::addButton(const QString& image, const QString& activeImage, const QString& name)
{
    const auto path = [](const QString& file) { return QStringLiteral("://images/%1.png").arg(file); };
    auto* button = new HoverButton(path(image), path(activeImage), this);
    button->setAccessibleName(name);
    button->setToolTip(name);
    return button;
}

void TitleBar::setTitle(const QString& title) { m_title->setText(title); }

void TitleBar::setMenu(QMenu* menu) { m_icon->setMenu(menu); }

void TitleBar::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && window()->windowHandle())
        window()->windowHandle()->startSystemMove();
    QWidget::mousePressEvent(event);
}

// A plain widget paints the background of its style sheet only when asked to.
void TitleBar::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOption option;
    option.initFrom(this);
    QStylePainter(this).drawPrimitive(QStyle::PE_Widget, option);
}
