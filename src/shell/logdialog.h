#pragma once

#include "logging/logmodel.h"
#include "logging/logtail.h"

#include <QDialog>
#include <QTimer>

class QComboBox;
class QLabel;
class QLineEdit;
class QTableView;

/** Shows the log of this run while it is being written: by level, by search, and to be copied. */
class LogDialog : public QDialog
{
    Q_OBJECT

public:
    /** path: the log file. */
    explicit LogDialog(const QString& path, QWidget* parent = nullptr);

private:
    QWidget* createFilters();
    void createTable();
    void applyFilter();
    void follow();
    void copy() const;

    LogTail m_tail;
    LogModel m_model;
    QTableView* m_table = nullptr;
    QComboBox* m_level = nullptr;
    QLineEdit* m_search = nullptr;
    QLabel* m_count = nullptr;
    QTimer m_timer;
};
