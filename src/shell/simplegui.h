#pragma once

#include <QWidget>

class QLabel;
class QMenu;
class QMenuBar;
class QVBoxLayout;

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

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private slots:
    void onServerListChanged();

private:
    void setupLayout();

    QVBoxLayout* const m_layout;
    QVBoxLayout* const m_rows;
    QMenuBar* const m_menuBar;
    QLabel* const m_message;
    QMenu* m_menu = nullptr;
};
