#pragma once

#include "settings/settings.h"

#include <QDialog>
#include <QVector>

#include <functional>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QFormLayout;
class QGroupBox;
class QLabel;
class QLineEdit;
class Task;

/**
 * The form in which a player edits the settings. "OK" applies all of them at once and saves them, after two
 * questions where the choice is a risky one; "Cancel" changes nothing.
 */
class SettingsDialog : public QDialog
{
    Q_OBJECT

public:
    /** settings is not owned and has to outlive the dialog. */
    explicit SettingsDialog(Settings* settings, QWidget* parent = nullptr);

private slots:
    void populateWineVersions();
    void onWineInfoDownloadFinished(Task* task);
    void onOk();

private:
    /** A check box and the setting that it stands for. */
    struct Switch {
        QCheckBox* box;
        void (Settings::*set)(bool);
    };

    QGroupBox* createGeneralForm();
    QGroupBox* createWineForm();
    QWidget* createTestServers();
    void addDownloadRows(QFormLayout* form);
    /** Adds a row whose label leads the keyboard to the field; help is its tooltip. */
    void addRow(QFormLayout* form, const QString& label, QWidget* field, const QString& help);
    QCheckBox* addSwitch(QFormLayout* form, const QString& label, bool on, void (Settings::*set)(bool),
                         const QString& help);
    void selectWineVersion(const QString& version);
    bool confirm(const QString& question);
    void apply();

    Settings* const m_settings;
    QVector<Switch> m_switches; // in the order in which they are applied
    QComboBox* m_language = nullptr;
    QComboBox* m_versionType = nullptr;
    QCheckBox* m_ignoreCertErrors = nullptr;
    QComboBox* m_threadCount = nullptr;
    QDoubleSpinBox* m_downloadLimit = nullptr;
    QVector<QPair<QString, QCheckBox*>> m_testServers;
    QCheckBox* m_useDevVersions = nullptr;
    QLineEdit* m_customWinePath = nullptr;
    QLineEdit* m_wineBranch = nullptr;
    QComboBox* m_wineVersion = nullptr;
    QLabel* m_wineVersionNote = nullptr;
    QLineEdit* m_wineDebug = nullptr;
    QComboBox* m_videoMemory = nullptr;
    int m_wineRequest = 0; // the newest; older answers are not shown any more
};
