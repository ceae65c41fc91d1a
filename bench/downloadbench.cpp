#include "bench/contest.h"
#include "download/downloadfromindextask.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/temporaryhome.h"
#include "tools/backend/certificates.h"
#include "tools/publisher/contentstore.h"

#include <QEventLoop>
#include <QProcess>
#include <QTcpServer>
#include <QThread>

#include <sys/resource.h>

namespace
{
/** A real nginx with HTTP/2 over TLS on a free port, serving a folder. */
class Nginx
{
public:
    explicit Nginx(const QString& folder)
    {
        const CertificateAuthority authority;
        const auto identity = authority.issueForLoopback();
        writeSample(m_state.filePath(QStringLiteral("authority.pem")), authority.certificate());
        writeSample(m_state.filePath(QStringLiteral("server.pem")), identity.certificate);
        writeSample(m_state.filePath(QStringLiteral("server.key")), identity.key);
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost);
        m_port = probe.serverPort();
        probe.close();
        const auto configuration =
            QStringLiteral(
                "pid %1/pid; error_log %1/error.log; daemon off; worker_processes 2; user root;\n"
                "events { worker_connections 512; }\n"
                "http { access_log off; client_body_temp_path %1/t1; proxy_temp_path %1/t2; "
                "fastcgi_temp_path %1/t3; "
                "uwsgi_temp_path %1/t4; scgi_temp_path %1/t5; sendfile on; keepalive_requests 100000;\n"
                "server { listen 127.0.0.1:%2 ssl http2; ssl_certificate %1/server.pem; ssl_certificate_key "
                "%1/server.key; "
                "root %3; } }\n")
                .arg(m_state.path())
                .arg(m_port)
                .arg(folder);
        writeSample(m_state.filePath(QStringLiteral("nginx.conf")), configuration.toUtf8());
        m_process.start(QStringLiteral("/usr/sbin/nginx"),
                        {QStringLiteral("-c"), m_state.filePath(QStringLiteral("nginx.conf"))});
        if (!m_process.waitForStarted())
            qFatal("nginx cannot be started");
        QThread::msleep(500);
    }
    ~Nginx()
    {
        m_process.terminate();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Nginx)

    QString baseUrl() const { return QStringLiteral("https://127.0.0.1:%1/").arg(m_port); }
    QString authority() const { return m_state.filePath(QStringLiteral("authority.pem")); }

private:
    QTemporaryDir m_state;
    QProcess m_process;
    int m_port = 0;
};

struct Files {
    QString name;
    IndexPtr index;
};

Files makeFiles(const QString& tree, const QString& name, int count, int bytes)
{
    Files files{name, IndexPtr::create()};
    ContentStore store(tree);
    QString error;
    for (int i = 0; i < count; ++i) {
        const auto content = store.addBytes(sampleBytes(i + bytes, bytes), &error);
        if (!content)
            qFatal("%s", qPrintable(error));
        files.index->append(IndexEntryPtr(new IndexEntry(QStringLiteral("app:/%1").arg(i),
                                                         content->cachedName, content->md5, content->size)));
    }
    return files;
}

double downloadOurs(const Files& files, const QString& baseUrl)
{
    const QTemporaryDir cache;
    DownloadFromIndexTask task(QStringLiteral("benchmark"), files.index, baseUrl, cache.path());
    return timed([&] {
        QEventLoop loop;
        QObject::connect(&task, &Task::finished, &loop, &QEventLoop::quit);
        task.go();
        loop.exec();
        if (task.isError())
            qFatal("The download failed");
    });
}

double downloadWithAria(const Files& files, const Nginx& server)
{
    const QTemporaryDir folder;
    QByteArray list;
    for (const auto& entry : files.index->entries()) {
        list += (server.baseUrl() + entry->cachedName).toUtf8() + "\n  out=" + entry->cachedName.toUtf8() +
                "\n  checksum=md5=" + entry->checksum.toUtf8() + "\n";
    }
    writeSample(folder.filePath(QStringLiteral("list")), list);
    return timedProgram(QStringLiteral("aria2c"),
                        {QStringLiteral("-j10"), QStringLiteral("-q"),
                         QStringLiteral("--ca-certificate=") + server.authority(), QStringLiteral("-i"),
                         QStringLiteral("list"), QStringLiteral("--file-allocation=none")},
                        folder.path());
}

double downloadWithCurl(const Files& files, const Nginx& server)
{
    const QTemporaryDir folder;
    QByteArray list;
    for (const auto& entry : files.index->entries())
        list += "url = \"" + (server.baseUrl() + entry->cachedName).toUtf8() + "\"\noutput = \"" +
                entry->cachedName.toUtf8() + "\"\n";
    writeSample(folder.filePath(QStringLiteral("list")), list);
    return timedProgram(QStringLiteral("curl"),
                        {QStringLiteral("-s"), QStringLiteral("--create-dirs"), QStringLiteral("--cacert"),
                         server.authority(), QStringLiteral("--parallel"), QStringLiteral("--parallel-max"),
                         QStringLiteral("10"), QStringLiteral("-K"), QStringLiteral("list")},
                        folder.path());
}
} // namespace

QVector<ContestResult> benchDownload()
{
    const QTemporaryDir folder;
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ReadOther | QFile::ExeOther);
    const auto tree = folder.filePath(QStringLiteral("tree"));
    const QVector<Files> sets{makeFiles(tree, QStringLiteral("5,000 files of 20 KB"), 5000, 20000),
                              makeFiles(tree, QStringLiteral("40 files of 50 MB"), 40, 50000000)};
    const Nginx server(tree);
    auto deployment = sampleDeployment();
    deployment.extraCaCertificates = server.authority();
    QString error;
    if (!deployment.trustExtraCertificates(&error))
        qFatal("%s", qPrintable(error));
    Settings::useDeployment(deployment);

    QVector<ContestResult> results;
    for (const auto& files : sets) {
        const auto work = QStringLiteral("download %1, checked and renamed").arg(files.name);
        const auto ours = [&] { return downloadOurs(files, server.baseUrl()); };
        results << ContestResult{work, QStringLiteral("aria2c -j10 with checksums"),
                                 contest(ours, [&] { return downloadWithAria(files, server); }),
                                 QStringLiteral("2.5")};
        results << ContestResult{work, QStringLiteral("curl --parallel, nothing checked"),
                                 contest(ours, [&] { return downloadWithCurl(files, server); }),
                                 QStringLiteral("1")};
    }
    return results;
}
