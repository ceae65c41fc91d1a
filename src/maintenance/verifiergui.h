#pragma once

#include "maintenance/cachemover.h"
#include "maintenance/verifier.h"

#include <QDateTime>
#include <QDialog>

class QCheckBox;
class QLabel;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

/** The dialog in which a player checks the cache, removes what nothing needs, or moves it elsewhere. */
class VerifierGui : public QDialog
{
    Q_OBJECT

public:
    /** Automatic: verifies and purges at once, and closes by itself. */
    enum class Behaviour { Manual, Automatic };

    explicit VerifierGui(Behaviour behaviour = Behaviour::Manual, QWidget* parent = nullptr);
    ~VerifierGui() override;

    /** When the last complete verification has ended; invalid before the first. */
    static QDateTime lastVerifyTime();
    /** guard tells, for people, why the cache must not be moved just now; empty when it may. */
    void setMoveGuard(const std::function<QString()>& guard) { m_moveGuard = guard; }
    /** What was found; of use once a verification has ended. */
    const VerifyReport& report() const { return m_report; }
    void startVerification(Verifier::Mode mode);
    void startMove(const QString& folder);

public slots:
    /** Ends what is running before it closes. */
    void reject() override;

private:
    QWidget* createButtons();
    void onVerify();
    void onMove();
    void onProgress(float fraction, const QString& text);
    void onVerified(const VerifyReport& report);
    void onMoved(CacheMover::Outcome outcome, const QString& error);
    void showState(bool busy);
    void showFolder();
    void showReport();
    static CombinedIndex gatherKnownFiles(const QStringList& servers);

    const Behaviour m_behaviour;
    Verifier* const m_verifier;
    CacheMover* const m_mover;
    std::function<QString()> m_moveGuard;
    VerifyReport m_report;
    bool m_busy = false;
    QLabel* m_folder = nullptr;
    QCheckBox* m_purge = nullptr;
    QPushButton* m_verify = nullptr;
    QPushButton* m_move = nullptr;
    QPushButton* m_close = nullptr;
    QProgressBar* m_progress = nullptr;
    QLabel* m_status = nullptr;
    QPlainTextEdit* m_results = nullptr;
};
