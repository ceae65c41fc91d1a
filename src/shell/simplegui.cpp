#include "shell/simplegui.h"

#include "settings/settings.h"
#include "shell/serverline.h"
#include "shell/toolsmenu.h"

#include <QDebug>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QScrollArea>
#include <QStyleOption>
#include <QStylePainter>
#include <QVBoxLayout>

static QString listGeometryKey() { return QStringLiteral("LauncherServerListWindowGeometry"); }

SimpleGui::SimpleGui(QWidget* parent)
    : QWidget(parent), m_layout(new QVBoxLayout(this)), m_rows(new QVBoxLayout),
      m_menuBar(new QMenuBar(this)), m_message(new QLabel(this)), m_pause(new QPushButton(this))
{
    setWindowTitle(tr("Server list - Velkor Launcher"));
    resize(Settings::instance()->getMainWindowSize());
    restoreGeometry(Settings::instance()->store().value(listGeometryKey()).toByteArray());

    auto* list = new QWidget(this);
    list->setLayout(m_rows);
    m_rows->setContentsMargins(24, 12, 24, 12);
    m_rows->setSpacing(12);
    auto* scroll = new QScrollArea(this);
    scroll->setWidget(list);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);

    m_message->setObjectName(QStringLiteral("message"));
    m_message->setTextFormat(Qt::PlainText);
    m_message->setWordWrap(true);
    m_message->setContentsMargins(28, 8, 12, 16);
    m_pause->hide(); // until there are tools
    auto* bottom = new QHBoxLayout;
    bottom->setContentsMargins(0, 0, 24, 8);
    bottom->addWidget(m_message, 1);
    bottom->addWidget(m_pause);

    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setSpacing(0);
    m_layout->setMenuBar(m_menuBar);
    m_layout->addWidget(scroll, 1);
    m_layout->addLayout(bottom);
    setupLayout();
    connect(Settings::instance(), &Settings::serverListChanged, this, &SimpleGui::onServerListChanged);
    qDebug() << "SimpleGui opened";
}

void SimpleGui::setupLayout()
{
    while (auto* item = m_rows->takeAt(0)) {
        delete item->widget();
        delete item;
    }
    m_menuBar->clear();
    if (m_menu) {
        auto* file = m_menuBar->addAction(tr("&File"));
        file->setMenu(m_menu);
    }
    if (m_tools)
        m_menuBar->addMenu(m_tools);
    const auto keys = Settings::instance()->getServerList();
    for (const auto& key : keys) {
        if (auto* server = Settings::instance()->getServer(key))
            m_rows->addWidget(new ServerLine(server));
    }
    m_rows->addStretch();
}

void SimpleGui::onServerListChanged()
{
    qDebug() << "onServerListChanged";
    setupLayout();
}

void SimpleGui::setMessage(const QString& text) { m_message->setText(text); }

void SimpleGui::setMenu(QMenu* menu)
{
    m_menu = menu;
    setupLayout();
}

void SimpleGui::setTools(ToolsMenu* tools)
{
    m_tools = tools;
    auto* pause = tools->pauseAction();
    connect(m_pause, &QPushButton::clicked, pause, &QAction::trigger);
    connect(pause, &QAction::changed, this, &SimpleGui::updatePauseButton);
    updatePauseButton();
    m_pause->show();
    setupLayout();
}

void SimpleGui::updatePauseButton() { m_pause->setText(m_tools->pauseAction()->text()); }

void SimpleGui::closeEvent(QCloseEvent* event)
{
    Settings::instance()->store().setValue(listGeometryKey(), saveGeometry());
    qDebug() << "SimpleGui closed";
    QWidget::closeEvent(event);
}

// A plain widget paints the background of its style sheet only when asked to.
void SimpleGui::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOption option;
    option.initFrom(this);
    QStylePainter(this).drawPrimitive(QStyle::PE_Widget, option);
}
