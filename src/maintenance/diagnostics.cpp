#include "maintenance/diagnostics.h"

#include "logging/formatmemory.h"
#include "logging/messagehandler.h"
#include "maintenance/connectionchecker.h"
#include "servers/servermanager.h"
#include "settings/settings.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QMessageBox>
#include <QNetworkReply>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QSysInfo>
#include <QTimer>
#include <QtConcurrent>

namespace
{
constexpr qint64 largestTestFile = 16 << 20;
constexpr int shortestName = 3;

/** A file of the game that is large enough to tell a speed. */
QUrl testFile()
{
    const auto* settings = Settings::instance();
    const auto* server = settings->getServer(settings->getMainServerName());
    const auto index = server ? server->getIndex() : IndexPtr();
    IndexEntryPtr best;
    if (index) {
        for (const auto& row : index->entries()) {
            if (row->name.startsWith(QLatin1String("app:")) && row->size <= largestTestFile &&
                (!best || row->size > best->size))
                best = row;
        }
    }
    return best ? QUrl(settings->getBaseUrlForBinaries() + best->cachedName) : QUrl();
}
} // namespace

QString withoutPersonalData(const QString& text)
{
    auto clean = logRedactor().redact(text);
    clean.replace(QDir::homePath(), QStringLiteral("~"));
    const auto user = qEnvironmentVariable("USER");
    // A very short name is a part of other words.
    if (user.size() >= shortestName && user != QLatin1String("root"))
        clean.replace(QRegularExpression(QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(user))),
                      QStringLiteral("[user]"));
    return clean;
}

bool Diagnostics::shouldIgnoreCertificateError(int code, const QUrl& url, const QString& description)
{
    if (Settings::instance()->getIgnoreCertErrors()) {
        qDebug() << "Certificate error" << code << "ignored by request";
        return true;
    }
    QMessageBox box(
        QMessageBox::Warning, tr("Certificate error"),
        tr("A certificate error has occurred:\n\n%1\n\n%2\n").arg(url.toDisplayString(), description),
        QMessageBox::Ignore);
    box.setDefaultButton(QMessageBox::Cancel);
    return box.exec() == QMessageBox::Ignore;
}

Diagnostics::Plan Diagnostics::usualPlan()
{
    const auto* settings = Settings::instance();
    Plan plan;
    plan.hosts = serviceHosts(settings->getDeployment());
    plan.download = testFile();
    plan.routeTo = QUrl(settings->getBaseUrlForBinaries()).host();
    plan.cacheFolder = settings->getCacheFolder();
    return plan;
}

Diagnostics::Diagnostics(QObject* parent) : QObject(parent)
{
    connect(&m_diskWatcher, &QFutureWatcher<DiskDiagnosis>::finished, this, [this] {
        m_disk = m_diskWatcher.result().describe();
        partDone();
    });
}

Diagnostics::~Diagnostics()
{
    if (m_routeProgram)
        m_routeProgram->disconnect(this);
    m_diskWatcher.waitForFinished();
}

void Diagnostics::start(const Plan& plan)
{
    m_plan = plan;
    m_hosts.clear();
    m_download.clear();
    m_route.clear();
    m_disk.clear();
    m_pending = 1;
    qDebug().noquote() << "Diagnosing" << plan.hosts.join(QStringLiteral(", "));
    probeHosts();
    measureDownload();
    followRoute();
    m_diskWatcher.setFuture(QtConcurrent::run(diagnoseDiskWrite, plan.cacheFolder));
}

void Diagnostics::probeHosts()
{
    for (const auto& host : qAsConst(m_plan.hosts)) {
        ++m_pending;
        auto* probe = new HostProbe(host, m_plan.timeout, m_plan.slow, this);
        connect(probe, &HostProbe::finished, this, [this, probe](const HostFinding& finding) {
            m_hosts[finding.host] = finding;
            probe->deleteLater();
            partDone();
        });
        probe->start();
    }
}

void Diagnostics::measureDownload()
{
    if (m_plan.download.isEmpty())
        return;
    ++m_pending;
    QNetworkRequest request(m_plan.download);
    request.setTransferTimeout(static_cast<int>(m_plan.timeout.count()));
    auto* reply = m_network.get(request);
    auto clock = std::make_shared<QElapsedTimer>();
    auto bytes = std::make_shared<qint64>(0);
    clock->start();
    connect(reply, &QNetworkReply::readyRead, this, [reply, bytes] { *bytes += reply->readAll().size(); });
    connect(reply, &QNetworkReply::finished, this, [this, reply, clock, bytes] {
        reply->deleteLater();
        const double seconds = qMax(0.001, static_cast<double>(clock->elapsed()) / 1000);
        if (reply->error() == QNetworkReply::NoError)
            m_download = tr("%1 in %2 s, %3/s")
                             .arg(formatMemory(*bytes))
                             .arg(seconds, 0, 'f', 2)
                             .arg(formatMemory(static_cast<qint64>(static_cast<double>(*bytes) / seconds)));
        else
            m_download = tr("Failed after %1: %2").arg(formatMemory(*bytes), reply->errorString());
        partDone();
    });
}

void Diagnostics::followRoute()
{
    auto program = QStandardPaths::findExecutable(QStringLiteral("tracepath"));
    if (program.isEmpty())
        program = QStandardPaths::findExecutable(QStringLiteral("traceroute"));
    if (program.isEmpty() || m_plan.routeTo.isEmpty())
        return;
    ++m_pending;
    m_routeProgram = std::make_unique<QProcess>();
    auto* process = m_routeProgram.get();
    process->setProcessChannelMode(QProcess::MergedChannels);
    const auto end = [this, process] {
        m_route = QString::fromLocal8Bit(process->readAll()).trimmed();
        process->disconnect(this);
        partDone();
    };
    connect(process, QOverload<int, QProcess::ExitStatus>::of(&QProcess::finished), this, end);
    connect(process, &QProcess::errorOccurred, this, [process, end] {
        if (process->error() == QProcess::FailedToStart)
            end();
    });
    QTimer::singleShot(2 * m_plan.timeout, process, &QProcess::kill);
    process->start(program,
                   {QStringLiteral("-n"), QStringLiteral("-m"), QStringLiteral("20"), m_plan.routeTo});
}

void Diagnostics::partDone()
{
    --m_pending;
    emit changed();
    if (m_pending == 0)
        emit finished();
}

QVector<HostFinding> Diagnostics::findings() const
{
    QVector<HostFinding> all;
    for (const auto& host : m_plan.hosts) {
        const auto found = m_hosts.find(host);
        if (found != m_hosts.end())
            all << found->second;
    }
    return all;
}

QString Diagnostics::text() const
{
    const auto* settings = Settings::instance();
    QStringList parts;
    parts << tr("Velkor Launcher %1, %2, %3\n%4")
                 .arg(settings->getVersion(), QSysInfo::prettyProductName(), QSysInfo::kernelVersion(),
                      QDateTime::currentDateTimeUtc().toString(Qt::ISODate));
    const auto found = findings();
    for (const auto& finding : found)
        parts << finding.describe();
    const QPair<QString, QString> sections[] = {
        {tr("Download"), m_download}, {tr("Cache"), m_disk}, {tr("Route"), m_route}};
    for (const auto& [title, content] : sections) {
        if (!content.isEmpty())
            parts << QStringLiteral("%1: %2").arg(title, content);
    }
    return withoutPersonalData(parts.join(QStringLiteral("\n\n")));
}
