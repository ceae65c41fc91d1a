#pragma once

#include "maintenance/clientsettingsprofiles.h"

#include <QDialog>

class QComboBox;
class QGridLayout;
class QLabel;
class QListWidget;
class QPushButton;

/** The manager of client settings profiles: copies between servers, makes, renames and deletes. */
class MigrateSettingsGui : public QDialog
{
    Q_OBJECT

public:
    explicit MigrateSettingsGui(QWidget* parent = nullptr);

private:
    /** One server and its profiles. */
    struct Side {
        QComboBox* server = nullptr;
        QListWidget* profiles = nullptr;
    };

    Side createSide(const QString& label, QGridLayout* layout, int column);
    void fill(const Side& side);
    QString serverOf(const Side& side) const;
    QString profileOf(const Side& side) const;
    void updateButtons();
    void onCopy();
    void onCreate();
    void onRename();
    void onDelete();
    /** Asks for a name; empty when the player has thought better of it. */
    QString askForName(const QString& title, const QString& proposal);
    void show(ClientSettingsProfileResult result, const QString& success);

    Side m_left;
    Side m_right;
    QPushButton* m_copy = nullptr;
    QPushButton* m_create = nullptr;
    QPushButton* m_rename = nullptr;
    QPushButton* m_delete = nullptr;
    QLabel* m_status = nullptr;
};
