#pragma once

#include <QDialog>
#include <QHash>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class Settings;

/** Edits what is put in front of the Wine program, and the environment variables of each server's clients.
 * What cannot be used is not accepted. */
class LaunchOptionsDialog : public QDialog
{
    Q_OBJECT

public:
    /** settings is not owned and has to outlive the dialog. */
    explicit LaunchOptionsDialog(Settings* settings, QWidget* parent = nullptr);

public slots:
    /** Stores everything, unless something is wrong with it: that is shown. */
    void accept() override;

private:
    void showServer();
    void keepShown();
    /** What is wrong, for people, and leads to it. */
    QString problem();

    Settings* const m_settings;
    QLineEdit* m_wrapper = nullptr;
    QComboBox* m_server = nullptr;
    QPlainTextEdit* m_variables = nullptr;
    QLabel* m_problem = nullptr;
    QString m_shownServer;
    QHash<QString, QStringList> m_lines; // by server
};
