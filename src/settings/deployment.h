#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <optional>

/**
 * Host names and keys of one installation of the service, read from JSON.
 *
 * A host is "host" or "host:port" and stands in URLs as it is. Every member is checked when it is read: a
 * value that was obtained from parse() or load() is complete.
 */
struct Deployment {
    QString binariesHost;
    QString resourcesHost;
    QString apiGatewayHost;
    QString launcherWebHost;
    QString testWebHost;
    QString logCollectionHost;
    QString logCollectionToken;
    QString eventGateway;
    QString sentryDsn;
    QString typeUrlDomain;
    QString gameServerDomainSuffix;
    QString heronHost;
    QStringList internalDomains;
    std::optional<QStringList> commandHosts;
    /** Absolute path of a PEM file with further authorities to trust; empty for none. */
    QString extraCaCertificates;
    /** Multiplies the delays of the refresh cycle and of its retries. 1 unless an override file says
     * otherwise. */
    double delayScale = 1.0;

    enum class Origin { CompiledIn, OverrideFile };

    /**
     * Reads a deployment from JSON text. Returns none and puts one line for a person into error when the text
     * is not a JSON object, a key is missing or of the wrong type. Relative paths are taken relative to
     * baseFolder.
     */
    static std::optional<Deployment> parse(const QByteArray& json, const QString& baseFolder, Origin origin,
                                           QString* error);

    /**
     * The deployment of this build: the compiled-in one, or, in builds with the override, the file that the
     * environment variable VELKOR_DEPLOYMENT_FILE names. Errors as in parse().
     */
    static std::optional<Deployment> load(QString* error);

    /** The given delay of the refresh cycle as this deployment wants it, in milliseconds. */
    int scaledDelay(int milliseconds) const { return static_cast<int>(milliseconds * delayScale); }

    /**
     * Adds the extra authorities to the process's default TLS configuration, beside the system's own. Returns
     * false and explains in error when the file holds no certificate.
     */
    bool trustExtraCertificates(QString* error) const;
};
