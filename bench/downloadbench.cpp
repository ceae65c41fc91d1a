#include "bench/contest.h"
#include "download/downloadfromindextask.h"
#include "download/ratelimiter.h"
#include "settings/settings.h"
#include "tests/testkit/sample.h"
#include "tests/testkit/temporaryhome.h"
#include "tools/backend/certificates.h"
#include "tools/publisher/contentstore.h"

#include <QEventLoop>
#include <QProcess>
#include <QTcpServer>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <numeric>
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
/** Lets the web server, which may run as somebody else, into the folder. */
void openToOthers(const QTemporaryDir& folder)
{
    QFile::setPermissions(folder.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                             QFile::ReadOther | QFile::ExeOther);
}

void useServer(const Nginx& server)
{
    auto deployment = sampleDeployment();
    deployment.extraCaCertificates = server.authority();
    QString error;
    if (!deployment.trustExtraCertificates(&error))
        qFatal("%s", qPrintable(error));
    Settings::useDeployment(deployment);
}

/** All bytes that this process has read so far, from the network and from files. */
qint64 bytesRead()
{
    QFile io(QStringLiteral("/proc/self/io"));
    return io.open(QIODevice::ReadOnly) ? io.readLine().mid(7).trimmed().toLongLong() : 0;
}

/** What was read in each of so many seconds of a download. */
QVector<double> secondsOf(const Files& files, const QString& baseUrl, int count)
{
    const QTemporaryDir cache;
    DownloadFromIndexTask task(QStringLiteral("benchmark"), files.index, baseUrl, cache.path());
    QVector<double> seconds;
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QElapsedTimer clock;
    qint64 before = bytesRead();
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        const auto now = bytesRead();
        seconds << static_cast<double>(now - std::exchange(before, now)) * 1000 /
                       static_cast<double>(clock.restart());
        if (seconds.size() > count) // the first one is that of the connection
            loop.quit();
    });
    QObject::connect(&task, &Task::finished, [] { qFatal("There is too little to download"); });
    task.go();
    clock.start();
    timer.start(1000);
    loop.exec();
    seconds.removeFirst();

    return seconds;
}
} // namespace

QVector<ContestResult> benchLimit()
{
    constexpr double megabyte = 1024 * 1024;
    const QTemporaryDir folder;
    openToOthers(folder);
    const auto files = makeFiles(folder.path(), QStringLiteral("files"), 16, 50000000);
    const Nginx server(folder.path());
    useServer(server);
    QVector<ContestResult> results;
    for (const int limit : {1, 5, 20}) {
        RateLimiter::instance()->setLimit(static_cast<qint64>(limit * megabyte));
        const auto seconds = secondsOf(files, server.baseUrl(), 30);
        const double mean = std::accumulate(seconds.cbegin(), seconds.cend(), 0.0) / seconds.size();
        const double fastest = *std::max_element(seconds.cbegin(), seconds.cend());
        const auto work = QStringLiteral("limit of %1 MB/s: %2").arg(limit);
        results << ContestResult{work.arg(QStringLiteral("mean of 30 s")), QStringLiteral("the limit"),
                                 mean / megabyte / limit, QStringLiteral("0.95 to 1.05")};
        results << ContestResult{work.arg(QStringLiteral("fastest second")), QStringLiteral("the limit"),
                                 fastest / megabyte / limit, QStringLiteral("at most 1.2")};
    }
    RateLimiter::instance()->setLimit(0);
    return results;
}

QVector<ContestResult> benchDownload()
{
    const QTemporaryDir folder;
    openToOthers(folder);
    const auto tree = folder.filePath(QStringLiteral("tree"));
    const QVector<Files> sets{makeFiles(tree, QStringLiteral("5,000 files of 20 KB"), 5000, 20000),
                              makeFiles(tree, QStringLiteral("40 files of 50 MB"), 40, 50000000)};
    const Nginx server(tree);
    useServer(server);
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
