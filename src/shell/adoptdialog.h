#pragma once

#include <QDialog>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;

/** Asks for a folder with game files that are there already, so that they need not be downloaded. */
class AdoptDialog : public QDialog
{
    Q_OBJECT

public:
    /** folder: what was chosen before; cache: the launcher's own folder, which is no choice. */
    AdoptDialog(const QString& folder, const QString& cache, QWidget* parent = nullptr);

    /** Absolute and clean. */
    QString folder() const;
    bool linkFiles() const;

private:
    void browse();
    void check();
    /** Why the folder cannot be used, for people. */
    QString problem() const;

    const QString m_cache;
    QLineEdit* m_folder = nullptr;
    QCheckBox* m_link = nullptr;
    QLabel* m_problem = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};
