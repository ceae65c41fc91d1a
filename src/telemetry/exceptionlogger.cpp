#include "telemetry/exceptionlogger.h"

#include "logging/messagehandler.h"
#include "settings/settings.h"

#include <QDateTime>
#include <QDebug>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSysInfo>
#include <QThread>
#include <QUuid>

namespace
{
constexpr int release = 1548102;
constexpr int toolkitVersion = 330496;
constexpr int maxBreadcrumbs = 100;
// A report is itself logged, and so becomes a breadcrumb of the next one: uncut, reports would double in size
// each time.
constexpr int maxBreadcrumbLength = 1024;

QJsonArray breadcrumbs()
{
    QJsonArray crumbs; // newest first, like the history
    const auto records = getLastLogMessages(maxBreadcrumbs);
    for (const auto& record : records) {
        crumbs.append(QJsonObject{
            {QStringLiteral("type"), QStringLiteral("default")},
            {QStringLiteral("timestamp"), static_cast<double>(record.time.toMSecsSinceEpoch()) / 1000.0},
            {QStringLiteral("category"), QStringLiteral("velkorlauncher")},
            {QStringLiteral("message"), record.message.left(maxBreadcrumbLength)},
            {QStringLiteral("level"), loggingGetTypeStringFromType(record.type)},
        });
    }
    return crumbs;
}

QJsonObject buildEvent(const QString& type, const QString& message, const QString& function,
                       const QString& file, int line)
{
    const QJsonObject tags{
        {QStringLiteral("osname"), QSysInfo::prettyProductName()},
        {QStringLiteral("osversion"), QSysInfo::productVersion()},
        {QStringLiteral("qt_version"), toolkitVersion},
    };
    const QJsonObject frame{
        {QStringLiteral("filename"), file},
        {QStringLiteral("function"), function},
        {QStringLiteral("lineno"), line},
    };
    const QJsonObject exception{
        {QStringLiteral("type"), type},
        {QStringLiteral("value"), message},
        {QStringLiteral("module"), function},
        {QStringLiteral("stacktrace"), QJsonObject{{QStringLiteral("frames"), QJsonArray{frame}}}},
    };
    return {
        {QStringLiteral("event_id"), QUuid::createUuid().toString(QUuid::Id128)},
        {QStringLiteral("release"), release},
        {QStringLiteral("tags"), tags},
        {QStringLiteral("breadcrumbs"), breadcrumbs()},
        {QStringLiteral("exception"), QJsonArray{exception}},
    };
}

QString afterFirst(QString* rest, const QString& separator)
{
    const int at = rest->indexOf(separator);
    auto head = rest->left(at);
    *rest = at < 0 ? QString() : rest->mid(at + separator.size());
    return head;
}
} // namespace

ExceptionLogger::ExceptionLogger(const QString& dsn, QObject* parent) : QObject(parent) { parseDsn(dsn); }

ExceptionLogger* ExceptionLogger::instance()
{
    static auto* logger = new ExceptionLogger(Settings::instance()->getDeployment().sentryDsn);
    return logger;
}

void ExceptionLogger::parseDsn(const QString& dsn)
{
    QString rest = dsn;
    afterFirst(&rest, QStringLiteral("https://"));
    m_key = afterFirst(&rest, QStringLiteral(":"));
    m_secret = afterFirst(&rest, QStringLiteral("@"));
    const int slash = rest.lastIndexOf(QLatin1Char('/'));
    m_host = rest.left(slash);
    m_project = rest.mid(slash + 1);
}

QString ExceptionLogger::getUrl() const
{
    return QStringLiteral("https://%1/api/%2/store/").arg(m_host, m_project);
}

QByteArray ExceptionLogger::authHeader() const
{
    const QStringList parts{
        QStringLiteral("Sentry sentry_version=7"),
        QStringLiteral("sentry_client=qt_cplusplus/1.0"),
        QStringLiteral("sentry_timestamp=%1").arg(QDateTime::currentMSecsSinceEpoch()),
        QStringLiteral("sentry_key=%1").arg(m_key),
        QStringLiteral("sentry_secret=%1").arg(m_secret),
    };
    return parts.join(QLatin1Char(',')).toUtf8();
}

void ExceptionLogger::logException(const QString& type, const QString& message, const QString& function,
                                   const QString& file, int line)
{
    const auto send = [=] { post(type, message, function, file, line); };
    if (QThread::currentThread() == thread())
        send();
    else
        QMetaObject::invokeMethod(this, send, Qt::QueuedConnection);
}

void ExceptionLogger::post(const QString& type, const QString& message, const QString& function,
                           const QString& file, int line)
{
    const auto where = QStringLiteral("in %1 %2:%3").arg(function, file).arg(line);
    qDebug().noquote() << "ExceptionLogger::logException" << type << message << where;

    auto* manager = new QNetworkAccessManager(this);
    connect(manager, &QNetworkAccessManager::finished, this, &ExceptionLogger::onPostFinished);
    QNetworkRequest request{QUrl(getUrl())};
    request.setHeader(QNetworkRequest::ContentTypeHeader, QStringLiteral("application/json"));
    request.setRawHeader("X-Sentry-Auth", authHeader());

    // Breadcrumbs were redacted when they were logged; the failure's own message has not been through the log
    // yet.
    const auto event = buildEvent(type, logRedactor().redact(message), function, file, line);
    const auto body = QJsonDocument(event).toJson(QJsonDocument::Compact);
    qCritical().noquote() << QString::fromUtf8(body) << type << message << where;

    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    const bool accessible = manager->networkAccessible() == QNetworkAccessManager::Accessible;
    QT_WARNING_POP
    if (accessible)
        manager->post(request, body);
    else
        manager->deleteLater();
}

void ExceptionLogger::abandonReports()
{
    qDeleteAll(findChildren<QNetworkAccessManager*>(QString(), Qt::FindDirectChildrenOnly));
}

void ExceptionLogger::onPostFinished(QNetworkReply* reply)
{
    qDebug().noquote() << "Response:" << QString::fromUtf8(reply->readAll());
    reply->manager()->deleteLater(); // with the reply, its child
}

void reportException(const char* type, const QString& message, const char* file, const char* function,
                     int line)
{
    ExceptionLogger::instance()->logException(QLatin1String(type), message, QLatin1String(function),
                                              QLatin1String(file), line);
}
