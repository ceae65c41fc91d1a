#pragma once

#include <QObject>
#include <QString>

class QNetworkAccessManager;
class QNetworkReply;

/**
 * Reports unexpected failures to the service's collector: one JSON event with the failure, the last log
 * records and a few tags. Reports are sent and forgotten; nothing waits for them, nothing is sent again.
 *
 * logException() may be called from any thread; all else happens on the main thread.
 */
class ExceptionLogger : public QObject
{
    Q_OBJECT

public:
    /** dsn: "https://<public key>:<secret key>@<host>/<project>". */
    explicit ExceptionLogger(const QString& dsn, QObject* parent = nullptr);

    /** The one reporter of the process. It is made on first use, on the main thread, from the deployment. */
    static ExceptionLogger* instance();

    /**
     * Sends one report. type is a short word such as "OpenFailed"; function, file (base name) and line are
     * the caller's. Without a network only the log has it.
     */
    void logException(const QString& type, const QString& message, const QString& function,
                      const QString& file, int line);

    QString getUrl() const;

    /** Drops the reports that are still being sent. For the end of the process: no thread may be left in
     * them. */
    void abandonReports();

private:
    void parseDsn(const QString& dsn);
    void post(const QString& type, const QString& message, const QString& function, const QString& file,
              int line);
    QByteArray authHeader() const;
    void onPostFinished(QNetworkReply* reply);

    QString m_key;
    QString m_secret;
    QString m_host;
    QString m_project;
};

/** Sends one report by the process's reporter. */
void reportException(const char* type, const QString& message, const char* file, const char* function,
                     int line);
