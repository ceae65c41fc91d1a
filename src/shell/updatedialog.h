#pragma once

#include "index/index.h"

#include <QDialog>
#include <QPointer>
#include <QTimer>

class QLabel;
class QProgressBar;
class QPushButton;
class Task;

/**
 * Replaces the launcher by another version: fetches that version's index and files into the cache, asks, and
 * starts the updater. Accepted once the updater runs and the launcher has to end; rejected when the player,
 * or nobody, wants it or when it fails. Nothing waits for an answer for ever. Main thread.
 */
class UpdateDialog : public QDialog
{
    Q_OBJECT

public:
    enum UpdateStatus { UpdateInitiated = 0 };

    /** Starts at once. Where needsElevation(), it only says that there is a new version. */
    explicit UpdateDialog(const QString& version, QWidget* parent = nullptr);
    ~UpdateDialog() override;

    /** Whether this installation is not for the launcher to change: the system's package manager has made it,
     * or its folder cannot be written. */
    static bool needsElevation();
    /** Whether the version may be part of file names and addresses. */
    static bool isUsableVersion(const QString& version);

private slots:
    // The update, in the order in which it runs
    void downloadBinaryIndex();
    void onIndexDownloadFinished(Task* task);
    void downloadFromIndex();
    void onProgressUpdate(float fraction, const QString& message);
    void onDownloadFinished(Task* task);
    void performAutoUpdate();

    void onOk();
    void onSecond();

private:
    enum class Step { Downloading, Asking, Failed, Telling };

    void setUpWindow();
    void setStep(Step step, const QString& text);
    void showText();
    bool saveIndex(const QByteArray& bytes) const;
    void removeOldIndexes() const;
    QString indexPath(const QString& version) const;
    void logUpdate(UpdateStatus status) const;

    const QString m_version;
    const QString m_cacheFolder;
    IndexPtr m_index;
    QPointer<Task> m_task;
    Step m_step = Step::Downloading;
    QString m_text;
    int m_secondsLeft = 0;
    QTimer m_timeout;   // single-shot, for the answer that does not come
    QTimer m_countdown; // shows what is left of it
    QLabel* m_label = nullptr;
    QProgressBar* m_progress = nullptr;
    QPushButton* m_ok = nullptr;
    QPushButton* m_cancel = nullptr;
};
