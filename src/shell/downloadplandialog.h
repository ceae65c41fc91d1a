#pragma once

#include "download/downloadplan.h"

#include <QDialog>
#include <QTimer>

class QLabel;

/**
 * Shows what a long download will fetch and what room it needs, and asks whether to begin. Where there is
 * enough room it is accepted by itself after a while, and where there is not it is rejected: nobody has to
 * answer.
 */
class DownloadPlanDialog : public QDialog
{
    Q_OBJECT

public:
    /** server: its name for people; folder: the cache; patience: how long to wait for an answer. */
    DownloadPlanDialog(const QString& server, const DownloadPlan& plan, const QString& folder,
                       std::chrono::milliseconds patience, QWidget* parent = nullptr);

public slots:
    void reject() override;

signals:
    /** The player wants to download later; rejected() follows. */
    void postponed();

protected:
    /** A window that is closed is no answer. */
    void closeEvent(QCloseEvent* event) override;

private:
    void onTick();
    void showTimeLeft();

    const bool m_isShortOfRoom;
    bool m_isClosing = false;
    QLabel* m_timeLeft = nullptr;
    QTimer m_timer;
    int m_ticksLeft = 30;
};
