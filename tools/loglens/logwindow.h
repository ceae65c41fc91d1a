#pragma once

#include "logging/logmodel.h"
#include "tools/loglens/logreceiver.h"

#include <QMainWindow>
#include <QTimer>

class QAction;
class QLabel;
class QLineEdit;
class QTableView;

/** The window of the viewer: the table, what is shown in it, and what can be done with it. */
class LogWindow : public QMainWindow
{
    Q_OBJECT

public:
    /** receiver is not owned and has to outlive the window. */
    explicit LogWindow(LogReceiver* receiver);

    LogModel* model() { return &m_model; }
    /** Writes what is shown to a file. Returns false, and tells the person, when that fails. */
    bool saveTo(const QString& path);

private:
    void setupToolBar();
    void setupTable();
    void applyFilter();
    void onReceived(const QVector<LogRecord>& records);
    void showArrived();
    void updateStatus();
    void askAndSave();

    LogReceiver* const m_receiver;
    LogModel m_model;
    QTableView* m_table = nullptr;
    QLineEdit* m_search = nullptr;
    QList<QAction*> m_levels; // in the order of the types
    QAction* m_pause = nullptr;
    QLabel* m_status = nullptr;
    QVector<LogRecord> m_arrived; // not in the table yet
    QTimer m_showTimer;
};
