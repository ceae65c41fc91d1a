#pragma once

#include <QMenu>

class DownloadControl;

/** The menu of what can be done beside playing: pausing and limiting downloads, and the tools. */
class ToolsMenu : public QMenu
{
    Q_OBJECT

public:
    /** control is not owned and has to outlive the menu. */
    explicit ToolsMenu(DownloadControl* control, QWidget* parent = nullptr);

    /** Pauses or resumes, as its text says. */
    QAction* pauseAction() const { return m_pause; }
    QMenu* limitMenu() const { return m_limits; }

signals:
    void adoptRequested();
    void launchOptionsRequested();
    void logRequested();
    void reportRequested();

private:
    void showState();
    void fillLimits();

    DownloadControl* const m_control;
    QAction* m_pause = nullptr;
    QMenu* m_limits = nullptr;
};
