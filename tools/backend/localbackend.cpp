#include "tools/backend/localbackend.h"

#include "tools/backend/webhost.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSaveFile>

namespace
{
/** Runs the action on the object's thread and waits for it. */
template <typename Action>
void runOn(QObject* object, const Action& action)
{
    QMetaObject::invokeMethod(object, action, Qt::BlockingQueuedConnection);
}

HttpResponse acceptReport(const HttpRequest& request)
{
    if (request.method != QLatin1String("POST"))
        return {405, "text/plain", "only POST", {}};
    const auto id = QJsonDocument::fromJson(request.body).object().value(QLatin1String("event_id"));
    return {200, "application/json", QJsonDocument(QJsonObject{{QStringLiteral("id"), id}}).toJson(), {}};
}
} // namespace

LocalBackend::LocalBackend(const QString& tree, const QString& stateFolder, const QString& pageFolder)
    : m_stateFolder(stateFolder),
      m_content(std::make_unique<HttpsServer>(m_authority.issueForLoopback(), serveFolder(tree))),
      m_web(std::make_unique<HttpsServer>(m_authority.issueForLoopback(), webHost(pageFolder))),
      m_reports(std::make_unique<HttpsServer>(m_authority.issueForLoopback(), acceptReport)),
      m_gateway(std::make_unique<Gateway>(m_authority.issueForLoopback()))
{
    m_content->moveToThread(&m_thread);
    m_web->moveToThread(&m_thread);
    m_reports->moveToThread(&m_thread);
    m_worker.moveToThread(&m_thread);
}

LocalBackend::~LocalBackend()
{
    if (m_thread.isRunning()) {
        // Sockets have to end on the thread that they live on.
        runOn(&m_worker, [this] {
            m_content.reset();
            m_web.reset();
            m_reports.reset();
        });
    }
    m_thread.quit();
    m_thread.wait();
}

bool LocalBackend::start(QString* error)
{
    m_thread.start();
    bool listening = false;
    runOn(&m_worker, [&] { listening = m_content->open() && m_web->open() && m_reports->open(); });
    if (!listening || !m_gateway->start()) {
        *error = QStringLiteral("No port could be opened: %1").arg(m_content->errorString());
        return false;
    }
    if (!QDir().mkpath(m_stateFolder) ||
        !writeFile(QStringLiteral("authority.pem"), m_authority.certificate()) || !writeDeployment()) {
        *error = QStringLiteral("Cannot write to %1").arg(m_stateFolder);
        return false;
    }
    return true;
}

QVector<QJsonObject> LocalBackend::exceptionReports() const
{
    QVector<QJsonObject> reports;
    const auto requests = m_reports->requests();
    for (const auto& logged : requests)
        reports << QJsonDocument::fromJson(logged.request.body).object();
    return reports;
}

void LocalBackend::refuse(HttpsServer& server)
{
    runOn(&m_worker, [&server] { server.refuse(); });
}

void LocalBackend::accept(HttpsServer& server)
{
    runOn(&m_worker, [&server] { server.open(); });
}

bool LocalBackend::writeDeployment(const QJsonObject& changes) const
{
    const auto content = QStringLiteral("127.0.0.1:%1").arg(m_content->port());
    const auto web = QStringLiteral("127.0.0.1:%1").arg(m_web->port());
    const auto reports = QStringLiteral("127.0.0.1:%1").arg(m_reports->port());
    const auto key = QString(32, QLatin1Char('0'));
    QJsonObject deployment{
        {QStringLiteral("binariesHost"), content},
        {QStringLiteral("resourcesHost"), content},
        {QStringLiteral("apiGatewayHost"), content},
        {QStringLiteral("launcherWebHost"), web},
        {QStringLiteral("testWebHost"), web},
        {QStringLiteral("commandHosts"), QJsonArray{web}},
        {QStringLiteral("logCollectionHost"), reports},
        {QStringLiteral("logCollectionToken"), QStringLiteral("00000000-0000-0000-0000-000000000000")},
        {QStringLiteral("eventGateway"), QStringLiteral("127.0.0.1:%1").arg(m_gateway->port())},
        {QStringLiteral("sentryDsn"), QStringLiteral("https://%1:%1@%2/55").arg(key, reports)},
        {QStringLiteral("typeUrlDomain"), QStringLiteral("velkor.example")},
        {QStringLiteral("gameServerDomainSuffix"), QStringLiteral(".servers.velkor.example")},
        {QStringLiteral("heronHost"), QStringLiteral("heron.servers.velkor.example")},
        {QStringLiteral("internalDomains"),
         QJsonArray{QStringLiteral("internal.velkor.example"), QStringLiteral("office.velkor.example")}},
        {QStringLiteral("extraCaCertificates"), QStringLiteral("authority.pem")},
    };
    for (auto change = changes.begin(); change != changes.end(); ++change)
        deployment.insert(change.key(), change.value());
    return writeFile(QStringLiteral("deployment.json"), QJsonDocument(deployment).toJson());
}

bool LocalBackend::writeFile(const QString& name, const QByteArray& bytes) const
{
    QSaveFile file(m_stateFolder + QLatin1Char('/') + name);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
}
