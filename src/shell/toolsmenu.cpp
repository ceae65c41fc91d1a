#include "shell/toolsmenu.h"

#include "servers/downloadcontrol.h"
#include "settings/settings.h"

#include <QActionGroup>
#include <QLocale>

#include <algorithm>
#include <vector>

ToolsMenu::ToolsMenu(DownloadControl* control, QWidget* parent)
    : QMenu(tr("&Tools"), parent), m_control(control)
{
    m_pause = addAction(QString(), this, [this] {
        m_control->setPaused(m_control->state() != DownloadControl::State::Paused);
    });
    m_limits = addMenu(tr("Download &limit"));
    addSeparator();
    addAction(tr("Use existing &game files..."), this, &ToolsMenu::adoptRequested);
    addAction(tr("Launch &options..."), this, &ToolsMenu::launchOptionsRequested);
    addSeparator();
    addAction(tr("Sho&w the log..."), this, &ToolsMenu::logRequested);
    addAction(tr("&Report for the support..."), this, &ToolsMenu::reportRequested);
    connect(control, &DownloadControl::stateChanged, this, &ToolsMenu::showState);
    connect(control, &DownloadControl::limitChanged, this, &ToolsMenu::fillLimits);
    showState();
    fillLimits();
}

void ToolsMenu::showState()
{
    const bool paused = m_control->state() == DownloadControl::State::Paused;
    m_pause->setText(paused ? tr("Resume &downloads") : tr("Pause &downloads"));
}

// The usual limits, and the one that the settings have.
void ToolsMenu::fillLimits()
{
    const double current = Settings::instance()->getDownloadLimit();
    std::vector<double> limits{0, 1, 2, 5, 10, 20, 50};
    if (std::find(limits.cbegin(), limits.cend(), current) == limits.cend())
        limits.insert(std::upper_bound(limits.begin(), limits.end(), current), current);
    m_limits->clear();
    delete m_limits->findChild<QActionGroup*>();
    auto* group = new QActionGroup(m_limits);
    for (const double limit : limits) {
        auto* action =
            m_limits->addAction(limit > 0 ? tr("%1 MB/s").arg(QLocale().toString(limit)) : tr("None"));
        action->setCheckable(true);
        action->setChecked(limit == current);
        group->addAction(action);
        connect(action, &QAction::triggered, m_control, [this, limit] { m_control->setLimit(limit); });
    }
}
