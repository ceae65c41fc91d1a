#include "settings/deployment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSslCertificate>
#include <QSslConfiguration>

static void initResources() { Q_INIT_RESOURCE(settings); }

namespace
{
struct TextRow {
    const char* key;
    QString Deployment::*member;
};

constexpr TextRow requiredTexts[] = {
    {"binariesHost", &Deployment::binariesHost},
    {"resourcesHost", &Deployment::resourcesHost},
    {"apiGatewayHost", &Deployment::apiGatewayHost},
    {"launcherWebHost", &Deployment::launcherWebHost},
    {"testWebHost", &Deployment::testWebHost},
    {"logCollectionHost", &Deployment::logCollectionHost},
    {"logCollectionToken", &Deployment::logCollectionToken},
    {"eventGateway", &Deployment::eventGateway},
    {"sentryDsn", &Deployment::sentryDsn},
    {"typeUrlDomain", &Deployment::typeUrlDomain},
    {"gameServerDomainSuffix", &Deployment::gameServerDomainSuffix},
    {"heronHost", &Deployment::heronHost},
};

std::optional<QStringList> toStringList(const QJsonValue& value)
{
    if (!value.isArray())
        return std::nullopt;
    QStringList texts;
    for (const auto& item : value.toArray()) {
        if (!item.isString())
            return std::nullopt;
        texts << item.toString();
    }
    return texts;
}
} // namespace

std::optional<Deployment> Deployment::parse(const QByteArray& json, const QString& baseFolder, Origin origin,
                                            QString* error)
{
    const auto fail = [error](const QString& text) {
        *error = text;
        return std::nullopt;
    };
    QJsonParseError parseError;
    const auto document = QJsonDocument::fromJson(json, &parseError);
    if (!document.isObject()) {
        return fail(parseError.error == QJsonParseError::NoError
                        ? QStringLiteral("not a JSON object")
                        : QStringLiteral("not valid JSON: %1").arg(parseError.errorString()));
    }

    const auto object = document.object();
    Deployment deployment;
    for (const auto& row : requiredTexts) {
        const auto value = object.value(QLatin1String(row.key));
        if (!value.isString() || value.toString().isEmpty())
            return fail(QStringLiteral("\"%1\" must be a non-empty string").arg(QLatin1String(row.key)));
        deployment.*row.member = value.toString();
    }
    const auto domains = toStringList(object.value(QLatin1String("internalDomains")));
    if (!domains || domains->size() != 2)
        return fail(QStringLiteral("\"internalDomains\" must be an array of two strings"));
    deployment.internalDomains = *domains;

    if (object.contains(QLatin1String("commandHosts"))) {
        deployment.commandHosts = toStringList(object.value(QLatin1String("commandHosts")));
        if (!deployment.commandHosts)
            return fail(QStringLiteral("\"commandHosts\" must be an array of strings"));
    }
    if (object.contains(QLatin1String("extraCaCertificates"))) {
        const auto path = object.value(QLatin1String("extraCaCertificates")).toString();
        if (path.isEmpty())
            return fail(QStringLiteral("\"extraCaCertificates\" must be a path"));
        deployment.extraCaCertificates = QDir(baseFolder).absoluteFilePath(path);
    }
    if (origin == Origin::OverrideFile && object.contains(QLatin1String("delayScale"))) {
        deployment.delayScale = object.value(QLatin1String("delayScale")).toDouble(-1.0);
        if (!(deployment.delayScale >= 0.0 && deployment.delayScale <= 1000.0))
            return fail(QStringLiteral("\"delayScale\" must be a number from 0 to 1000"));
    }
    return deployment;
}

std::optional<Deployment> Deployment::load(QString* error)
{
    initResources();
    QString path = QStringLiteral(":/deployment.json");
    auto origin = Origin::CompiledIn;
#ifdef VELKOR_DEPLOYMENT_OVERRIDE
    if (qEnvironmentVariableIsSet("VELKOR_DEPLOYMENT_FILE")) {
        path = qEnvironmentVariable("VELKOR_DEPLOYMENT_FILE");
        origin = Origin::OverrideFile;
    }
#endif
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = QStringLiteral("Cannot read deployment file %1: %2").arg(path, file.errorString());
        return std::nullopt;
    }
    auto deployment = parse(file.readAll(), QFileInfo(path).absolutePath(), origin, error);
    if (!deployment)
        *error = QStringLiteral("Invalid deployment file %1: %2").arg(path, *error);
    return deployment;
}

bool Deployment::trustExtraCertificates(QString* error) const
{
    if (extraCaCertificates.isEmpty())
        return true;
    const auto extra = QSslCertificate::fromPath(extraCaCertificates);
    if (extra.isEmpty()) {
        *error = QStringLiteral("No certificate could be read from %1").arg(extraCaCertificates);
        return false;
    }
    // An explicit list turns the loading of system certificates on demand off, so they have to be part of it.
    auto configuration = QSslConfiguration::defaultConfiguration();
    configuration.setCaCertificates(QSslConfiguration::systemCaCertificates() + extra);
    QSslConfiguration::setDefaultConfiguration(configuration);
    return true;
}
