#pragma once

#include "maintenance/diskdiagnosis.h"
#include "maintenance/hostprobe.h"

#include <QFutureWatcher>
#include <QNetworkAccessManager>
#include <QProcess>
#include <QUrl>

#include <map>
#include <memory>

/**
 * Finds out what is wrong with the network or the disk: every host that the launcher needs, a download, the
 * route to the content, and writing to the cache. The result is a text that a support person can read,
 * without tokens and names of users. Main thread.
 */
class Diagnostics : public QObject
{
    Q_OBJECT

public:
    struct Plan {
        QStringList hosts;
        /** What is downloaded to measure the speed; empty for nothing. */
        QUrl download;
        /** Whose route is followed, if the system has a program for that; empty for nobody's. */
        QString routeTo;
        QString cacheFolder;
        std::chrono::milliseconds timeout = std::chrono::seconds(10);
        std::chrono::milliseconds slow = std::chrono::seconds(2);
    };
    /** The launcher's own hosts and folders. */
    static Plan usualPlan();
    /**
     * Whether a page is to be loaded although its certificate is wrong: at once where the settings say so,
     * else as the user answers. Waits for the answer.
     */
    static bool shouldIgnoreCertificateError(int code, const QUrl& url, const QString& description);

    explicit Diagnostics(QObject* parent = nullptr);
    ~Diagnostics() override;

    /** Starts all parts at once; finished() follows. */
    void start(const Plan& plan);
    bool isRunning() const { return m_pending > 0; }

    QVector<HostFinding> findings() const;
    /** What is known so far. */
    QString text() const;

signals:
    /** There is more to read. */
    void changed();
    void finished();

private:
    void probeHosts();
    void measureDownload();
    void followRoute();
    void partDone();

    Plan m_plan;
    int m_pending = 0;
    std::map<QString, HostFinding> m_hosts;
    QString m_download;
    QString m_route;
    QString m_disk;
    QNetworkAccessManager m_network;
    std::unique_ptr<QProcess> m_routeProgram;
    QFutureWatcher<DiskDiagnosis> m_diskWatcher;
};

/** The text without secrets, and without the name and the home folder of the user. */
QString withoutPersonalData(const QString& text);
