#pragma once

#include "tools/backend/gateway.h"
#include "tools/backend/httpsserver.h"

#include <QJsonObject>
#include <QThread>

/**
 * The service on this machine: a content server and a web host over HTTPS, a collector of exception reports,
 * and a gateway for telemetry, each on a free port of 127.0.0.1 and with certificates of an authority made on
 * the spot. It works on a thread of its own.
 */
class LocalBackend
{
public:
    /** tree: the published content; stateFolder: where certificates and the deployment file go; pageFolder:
     * what the web host serves. */
    LocalBackend(const QString& tree, const QString& stateFolder, const QString& pageFolder);
    ~LocalBackend();
    Q_DISABLE_COPY_MOVE(LocalBackend)

    /** Returns false and explains in error when a port or a file cannot be had. */
    bool start(QString* error);

    HttpsServer& content() { return *m_content; }
    HttpsServer& web() { return *m_web; }
    HttpsServer& reports() { return *m_reports; }
    Gateway& gateway() { return *m_gateway; }
    const CertificateAuthority& authority() const { return m_authority; }
    /** The exception reports that have arrived, oldest first. */
    QVector<QJsonObject> exceptionReports() const;

    /** One of the servers is not there any more, and is there again on the same port. */
    void refuse(HttpsServer& server);
    void accept(HttpsServer& server);

    /** A deployment file for a launcher that is to use this backend. */
    QString authorityFile() const { return m_stateFolder + QStringLiteral("/authority.pem"); }
    QString deploymentFile() const { return m_stateFolder + QStringLiteral("/deployment.json"); }
    /** Members that replace those of the deployment file, which is written anew. */
    bool writeDeployment(const QJsonObject& changes = {}) const;

private:
    bool writeFile(const QString& name, const QByteArray& bytes) const;

    const QString m_stateFolder;
    const CertificateAuthority m_authority;
    QThread m_thread;
    class Worker : public QObject
    {
    };
    Worker m_worker; // runs actions on that thread
    std::unique_ptr<HttpsServer> m_content;
    std::unique_ptr<HttpsServer> m_web;
    std::unique_ptr<HttpsServer> m_reports;
    std::unique_ptr<Gateway> m_gateway;
};
