#include "maintenance/verifier.h"

#include "logging/formatmemory.h"
#include "maintenance/verification.h"

#include <QDebug>
#include <QDir>
#include <QThread>
#include <QtConcurrent>

namespace
{
constexpr int progressIntervalMs = 125;
} // namespace

QString VerifyReport::summary() const
{
    const auto translate = [](const char* text) { return QCoreApplication::translate("Verifier", text); };
    QStringList lines;
    lines << translate("Files checked: %1 (%2) in %3 s")
                 .arg(checkedFiles)
                 .arg(formatMemory(checkedBytes))
                 .arg(seconds, 0, 'f', 1);
    lines << translate("Damaged: %1").arg(damaged.size());
    lines << translate("Not downloaded: %1").arg(missingFiles);
    lines << translate("Not needed by anything: %1 (%2)").arg(extra.size()).arg(formatMemory(extraBytes));
    if (purgedFiles > 0)
        lines << translate("Removed of these: %1 (%2)").arg(purgedFiles).arg(formatMemory(purgedBytes));
    if (!purgeRefusal.isEmpty())
        lines << translate("None of these was removed: %1").arg(purgeRefusal);
    if (cancelled)
        lines << translate("Cancelled before the end");
    return lines.join(QLatin1Char('\n'));
}

Verifier::Verifier(QObject* parent) : QObject(parent)
{
    m_pool.setMaxThreadCount(QThread::idealThreadCount() + 1); // and one that waits for the others
    m_progressTimer.setInterval(progressIntervalMs);
    connect(&m_progressTimer, &QTimer::timeout, this, &Verifier::reportProgress);
    connect(&m_watcher, &QFutureWatcher<VerifyReport>::finished, this, &Verifier::onFinished);
}

Verifier::~Verifier()
{
    m_stop = true;
    m_watcher.waitForFinished();
}

void Verifier::start(const QString& cacheFolder, const KnownFiles& known, Mode mode)
{
    Q_ASSERT(!isRunning());
    qDebug().noquote() << "Verifying" << cacheFolder;
    m_stop = false;
    m_filesDone = 0;
    m_bytesDone = 0;
    m_filesTotal = 0;
    m_bytesTotal = 0;
    m_bytesShown = 0;
    m_meter = TransferMeter();
    m_clock.start();
    m_meter.start(0);
    m_progressTimer.start();
    m_watcher.setFuture(QtConcurrent::run(&m_pool, [this, cacheFolder, known, mode] {
        Verification verification(
            cacheFolder, {&m_stop, &m_filesTotal, &m_bytesTotal, &m_filesDone, &m_bytesDone}, &m_pool);
        return verification.run(known, mode == Mode::VerifyAndPurge);
    }));
}

void Verifier::reportProgress()
{
    const qint64 bytes = m_bytesDone;
    const qint64 total = m_bytesTotal;
    m_meter.add(bytes - m_bytesShown);
    m_bytesShown = bytes;
    m_meter.update(m_clock.elapsed(), total - bytes);
    if (m_filesTotal == 0) {
        emit progressUpdate(0, tr("Looking at the cache"));
        return;
    }
    const double fraction = total > 0 ? static_cast<double>(bytes) / static_cast<double>(total) : 1;
    emit progressUpdate(static_cast<float>(fraction), tr("%1 of %2 files (%3 of %4), %5")
                                                          .arg(m_filesDone)
                                                          .arg(m_filesTotal)
                                                          .arg(formatMemory(bytes), formatMemory(total))
                                                          .arg(m_meter.text()));
}

void Verifier::onFinished()
{
    m_progressTimer.stop();
    auto report = m_watcher.result();
    report.cancelled = m_stop;
    report.seconds = static_cast<double>(m_clock.elapsed()) / 1000;
    for (const auto& finding : qAsConst(report.damaged))
        qWarning().noquote() << finding.path << finding.problem << (finding.removed ? "and was removed" : "");
    for (const auto& line : report.summary().split(QLatin1Char('\n')))
        qInfo().noquote() << "Verification:" << line;
    emit finished(report);
}
