#pragma once

#include "maintenance/reportbundle.h"

#include <QDialog>

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/** Shows what a report for the support will hold, part by part, and saves those parts that the player leaves
 * in. */
class ReportDialog : public QDialog
{
    Q_OBJECT

public:
    explicit ReportDialog(const Diagnostics::Plan& plan, QWidget* parent = nullptr);
    /** Waits for a file that is being written. */
    ~ReportDialog() override;

private:
    void onGathered();
    void showPart(int row);
    void save();
    void onSaved();

    ReportBundle m_bundle;
    QFutureWatcher<QString> m_saving;
    QString m_path;
    QLabel* m_status = nullptr;
    QProgressBar* m_progress = nullptr;
    QListWidget* m_list = nullptr;
    QPlainTextEdit* m_text = nullptr;
    QPushButton* m_save = nullptr;
};
