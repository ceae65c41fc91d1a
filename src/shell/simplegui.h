#pragma once

#include <QWidget>

class QLabel;
class QMenu;
class QMenuBar;
class QPushButton;
class QVBoxLayout;
class ToolsMenu;

/** The server list: one row for each served server, and a line for messages. Follows the list of the
 * settings. */
class SimpleGui : public QWidget
{
    Q_OBJECT

public:
    explicit SimpleGui(QWidget* parent = nullptr);

    /** The text of the message line. */
    void setMessage(const QString& text);
    /** The menu below "File"; not owned. */
    void setMenu(QMenu* menu);
    /** The menu beside it, and the button that pauses downloads; not owned. */
    void setTools(ToolsMenu* tools);

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private slots:
    void onServerListChanged();

private:
    void setupLayout();
    void updatePauseButton();

    QVBoxLayout* const m_layout;
    QVBoxLayout* const m_rows;
    QMenuBar* const m_menuBar;
    QLabel* const m_message;
    QPushButton* const m_pause;
    QMenu* m_menu = nullptr;
    ToolsMenu* m_tools = nullptr;
};
