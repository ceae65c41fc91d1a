#pragma once

#include "maintenance/diagnostics.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/** Shows what the diagnostics find, to be copied or saved for the support. Starts when it is made. */
class DiagnosticsDialog : public QDialog
{
    Q_OBJECT

public:
    explicit DiagnosticsDialog(const Diagnostics::Plan& plan, QWidget* parent = nullptr);

    /** Writes the text; returns an error for people, empty when it has worked. */
    QString saveTo(const QString& path) const;

private:
    void run();
    void onFinished();
    void copy() const;
    void save();

    const Diagnostics::Plan m_plan;
    Diagnostics* const m_diagnostics;
    QLabel* m_status = nullptr;
    QProgressBar* m_progress = nullptr;
    QPlainTextEdit* m_text = nullptr;
    QPushButton* m_again = nullptr;
};
