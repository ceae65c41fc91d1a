// The part of MainWindow that opens the maintenance tools, and has the cache verified.

#include "maintenance/diagnosticsdialog.h"
#include "maintenance/migratesettingsgui.h"
#include "maintenance/verifiergui.h"
#include "servers/servermanager.h"
#include "settings/settings.h"
#include "shell/mainwindow.h"
#include "tasks/scheduler.h"

#include <QAbstractButton>
#include <QDateTime>
#include <QDebug>
#include <QMessageBox>
#include <QtConcurrent>

#include <cstdio>

namespace
{
constexpr int verifyAfterDays = 14;

QString migratedKey() { return QStringLiteral("LauncherHasMigratedSettings"); }
} // namespace

void MainWindow::showVerifyDialog()
{
    if (m_cacheInUse)
        return;
    VerifierGui dialog(VerifierGui::Behaviour::Manual, this);
    dialog.setMoveGuard([this] {
        const bool isBusy = m_refreshInProgress || Scheduler::instance()->hasBackgroundTask();
        return isBusy ? tr("An update is running: please wait until it has ended") : QString();
    });
    runVerifierDialog(&dialog);
}

void MainWindow::runVerifierDialog(VerifierGui* dialog)
{
    m_cacheInUse = true;
    dialog->exec();
    m_cacheInUse = false;
    if (std::exchange(m_refreshWanted, false))
        QTimer::singleShot(0, this, &MainWindow::refresh);
}

void MainWindow::verifyAutomatically()
{
    VerifierGui dialog(VerifierGui::Behaviour::Automatic, this);
    runVerifierDialog(&dialog);
    if (Settings::instance()->shouldVerifyAndPurgeAfterRefresh())
        std::puts(qPrintable(dialog.report().summary())); // for whoever runs it unattended
    std::fflush(stdout);
}

void MainWindow::runVerify()
{
    if (isProcessRunning()) {
        qDebug() << "Verify skipped with process(es) running";
        return;
    }
    if (std::exchange(m_lookedAtLastVerify, true))
        return;
    const auto last = VerifierGui::lastVerifyTime();
    qDebug().noquote() << "Last verify time:" << last.toString(Qt::ISODate);
    const bool isDue = !last.isValid() || last.daysTo(QDateTime::currentDateTime()) > verifyAfterDays;
    if (!isDue || Scheduler::instance()->hasBackgroundTask())
        return;
    qDebug() << "Automatically verifying and purging after refresh";
    verifyAutomatically();
}

void MainWindow::showMigrateSettingsDialog()
{
    auto* dialog = new MigrateSettingsGui(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

// Once, as soon as there is something to copy and somebody to ask; the cycle goes on behind the box.
void MainWindow::offerSettingsMigration()
{
    auto* settings = Settings::instance();
    const auto servers = settings->getServerList();
    const bool hasProfiles = std::any_of(servers.cbegin(), servers.cend(), [](const QString& server) {
        return getSettingsProfiles(server).size() > 1;
    });
    if (settings->store().value(migratedKey()).toBool() || servers.size() < 2 || !hasProfiles ||
        settings->shouldExitAfterRefresh())
        return;
    settings->store().setValue(migratedKey(), true);
    auto* box = new QMessageBox(QMessageBox::Question, tr("Client Settings"),
                                tr("You have settings profiles for the client. Do you want to copy them to "
                                   "another server?"),
                                QMessageBox::Yes | QMessageBox::No, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box->button(QMessageBox::Yes), &QAbstractButton::clicked, this,
            &MainWindow::showMigrateSettingsDialog);
    box->open();
}

void MainWindow::showDiagnoseNetworkDialog()
{
    auto* dialog = new DiagnosticsDialog(Diagnostics::usualPlan(), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

// Tells the player why a file could not be stored; the cycle goes on meanwhile.
void MainWindow::diagnoseDisk()
{
    auto* watcher = new QFutureWatcher<DiskDiagnosis>(this);
    connect(watcher, &QFutureWatcher<DiskDiagnosis>::finished, this, [this, watcher] {
        const auto text = watcher->result().describe().replace(QLatin1Char('\n'), QStringLiteral(". "));
        qWarning().noquote() << "Disk-write diagnosis:" << text;
        showFailure(QStringLiteral("%1. %2").arg(m_lastFailure, text), DiskWriteError);
        watcher->deleteLater();
    });
    watcher->setFuture(QtConcurrent::run(diagnoseDiskWrite, Settings::instance()->getCacheFolder()));
}
