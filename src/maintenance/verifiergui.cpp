#include "maintenance/verifiergui.h"

#include "servers/prefixusers.h"
#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QCheckBox>
#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFileDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace
{
constexpr int shownLines = 2000;

QString lastVerifyKey() { return QStringLiteral("LauncherLastVerifyTime"); }
} // namespace

VerifierGui::VerifierGui(Behaviour behaviour, QWidget* parent)
    : QDialog(parent), m_behaviour(behaviour), m_verifier(new Verifier(this)),
      m_mover(new CacheMover(Settings::instance(), this))
{
    setWindowTitle(tr("Shared Cache"));
    m_folder = new QLabel(this);
    m_folder->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_folder->setWordWrap(true);
    m_purge = new QCheckBox(tr("&Remove files that nothing needs"), this);
    m_purge->setToolTip(tr("Files of builds and servers that are not kept up to date any more"));
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 1000);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Progress"));
    m_status = new QLabel(
        tr("Verifying reads every file and compares it with what the game's makers have published."), this);
    m_status->setObjectName(QStringLiteral("note"));
    m_status->setWordWrap(true);
    m_results = new QPlainTextEdit(this);
    m_results->setReadOnly(true);
    m_results->setTabChangesFocus(true);
    m_results->setAccessibleName(tr("Results"));
    m_results->setPlaceholderText(tr("What is found is listed here."));

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(m_folder);
    layout->addWidget(m_status);
    layout->addWidget(m_progress);
    layout->addWidget(m_results, 1);
    layout->addWidget(m_purge);
    layout->addWidget(createButtons());
    resize(640, 460);
    showFolder();

    connect(m_verifier, &Verifier::progressUpdate, this, &VerifierGui::onProgress);
    connect(m_verifier, &Verifier::finished, this, &VerifierGui::onVerified);
    connect(m_mover, &CacheMover::progressUpdate, this, &VerifierGui::onProgress);
    connect(m_mover, &CacheMover::finished, this, &VerifierGui::onMoved);
    if (m_behaviour == Behaviour::Automatic)
        QTimer::singleShot(0, this, [this] { startVerification(Verifier::Mode::VerifyAndPurge); });
}

VerifierGui::~VerifierGui() = default;

QDateTime VerifierGui::lastVerifyTime()
{
    return Settings::instance()->store().value(lastVerifyKey()).toDateTime();
}

QWidget* VerifierGui::createButtons()
{
    auto* row = new QWidget(this);
    m_verify = new QPushButton(tr("&Verify"), row);
    m_verify->setDefault(true);
    m_move = new QPushButton(tr("&Move..."), row);
    m_move->setToolTip(tr("Moves the cache to another folder, such as one on a larger disk"));
    m_move->setAutoDefault(false);
    m_close = new QPushButton(tr("&Close"), row);
    m_close->setAutoDefault(false);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_move);
    layout->addStretch();
    layout->addWidget(m_verify);
    layout->addWidget(m_close);
    connect(m_verify, &QPushButton::clicked, this, &VerifierGui::onVerify);
    connect(m_move, &QPushButton::clicked, this, &VerifierGui::onMove);
    connect(m_close, &QPushButton::clicked, this, &VerifierGui::reject);
    return row;
}

void VerifierGui::showFolder()
{
    m_folder->setText(
        tr("The cache is in %1").arg(QDir::toNativeSeparators(Settings::instance()->getCacheFolder())));
}

void VerifierGui::showState(bool busy)
{
    m_busy = busy;
    m_verify->setEnabled(!busy);
    m_move->setEnabled(!busy);
    m_purge->setEnabled(!busy);
    m_close->setText(busy ? tr("&Cancel") : tr("&Close"));
    if (busy)
        m_close->setFocus();
}

void VerifierGui::onVerify()
{
    startVerification(m_purge->isChecked() ? Verifier::Mode::VerifyAndPurge : Verifier::Mode::Verify);
}

void VerifierGui::startVerification(Verifier::Mode mode)
{
    m_results->clear();
    showState(true);
    onProgress(0, tr("Reading the indexes"));
    auto* settings = Settings::instance();
    auto servers = settings->getServerList();
    // In a run that skips test servers, what they have downloaded is wanted all the same.
    const auto stored = settings->getStoredTestServers();
    for (const auto& key : stored) {
        const auto* server = settings->getServer(key);
        if (!servers.contains(key) && server && server->getIndex())
            servers << key;
    }
    m_verifier->start(
        settings->getCacheFolder(), [servers] { return gatherKnownFiles(servers); }, mode);
}

// Worker thread.
CombinedIndex VerifierGui::gatherKnownFiles(const QStringList& servers)
{
    auto known = getCombinedIndexForWine();
    combineIndices(known, getCombinedIndexForLauncher());
    for (const auto& server : servers)
        combineIndices(known, getCombinedIndexForServer(server));
    return known;
}

void VerifierGui::onProgress(float fraction, const QString& text)
{
    m_progress->setValue(static_cast<int>(fraction * 1000));
    m_status->setText(text);
}

void VerifierGui::onVerified(const VerifyReport& report)
{
    m_report = report;
    showState(false);
    showReport();
    auto* settings = Settings::instance();
    if (!report.cancelled) {
        m_progress->setValue(m_progress->maximum());
        settings->store().setValue(lastVerifyKey(), QDateTime::currentDateTime());
    }
    if (!report.damaged.isEmpty())
        settings->resetLastKnownBuildForAllServers(); // so that the next refresh fetches what is gone now
    if (m_behaviour == Behaviour::Automatic)
        accept();
    else if (!report.damaged.isEmpty())
        emit settings->startRefreshCycle();
}

void VerifierGui::showReport()
{
    auto lines = m_report.summary().split(QLatin1Char('\n'));
    m_status->setText(m_report.damaged.isEmpty()
                          ? tr("All files that were checked are as they should be.")
                          : tr("Damaged files were found. The next refresh fetches them again."));
    lines << QString();
    for (const auto& finding : qAsConst(m_report.damaged))
        lines << QStringLiteral("%1 %2").arg(finding.path, finding.problem);
    for (const auto& path : qAsConst(m_report.extra))
        lines << tr("%1 is not needed").arg(path);
    if (lines.size() > shownLines) {
        const int more = lines.size() - shownLines;
        lines = lines.mid(0, shownLines);
        lines << tr("and %1 more").arg(more);
    }
    m_results->setPlainText(lines.join(QLatin1Char('\n')).trimmed());
}

void VerifierGui::onMove()
{
    const auto folder = QFileDialog::getExistingDirectory(this, tr("Where should the cache go?"),
                                                          Settings::instance()->getCacheFolder());
    if (!folder.isEmpty())
        startMove(folder);
}

void VerifierGui::startMove(const QString& folder)
{
    auto objection = m_moveGuard ? m_moveGuard() : QString();
    if (isAnyClientRunning())
        objection = tr("The cache cannot be moved while clients are running");
    if (objection.isEmpty())
        objection = m_mover->objection(folder);
    if (!objection.isEmpty()) {
        m_status->setText(objection);
        return;
    }
    showState(true);
    onProgress(0, tr("Moving the cache"));
    m_mover->start(folder);
}

void VerifierGui::onMoved(CacheMover::Outcome outcome, const QString& error)
{
    showState(false);
    showFolder();
    switch (outcome) {
    case CacheMover::Outcome::Moved:
        m_progress->setValue(m_progress->maximum());
        m_status->setText(tr("The cache has been moved."));
        break;
    case CacheMover::Outcome::Cancelled:
        m_progress->setValue(0);
        m_status->setText(tr("The cache is where it was."));
        break;
    case CacheMover::Outcome::Failed:
        m_progress->setValue(0);
        m_status->setText(tr("The cache is where it was: %1").arg(error));
        break;
    }
}

void VerifierGui::reject()
{
    if (!m_busy) {
        QDialog::reject();
        return;
    }
    m_verifier->cancel();
    m_mover->cancel();
    m_status->setText(tr("Cancelling..."));
}
