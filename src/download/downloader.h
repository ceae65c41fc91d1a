#pragma once

#include "logging/livecount.h"
#include "tasks/task.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QPointer>
#include <QSslError>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

/**
 * Fetches one URL into memory.
 *
 * Error codes: 1 unknown or transport error, 2 not found (404), 9 access denied (401). The error string is
 * the network layer's text. Nothing is tried twice. The body comes as fast as RateLimiter lets it. Main
 * thread; all objects share one network access manager.
 */
class Downloader : public Task, public LiveCount<Downloader>
{
    Q_OBJECT

public:
    explicit Downloader(const QUrl& url, QObject* parent = nullptr);
    /** Ends a request that is still running. */
    ~Downloader() override;

    /** Bytes to expect where the server does not say; 0 is unknown. For progress only. */
    void setExpectedSize(quint64 bytes) { m_expectedSize = bytes; }
    void setProgressMessage(const QString& text) { m_progressMessage = text; }

    void go() override;
    void issueRequest();
    // A single download runs to its end.
    void cancel() override {}
    void pause() override {}
    void resume() override {}

    QString activity() const override;
    void askAgain() override;

    /** The body; empty after a failure. */
    QByteArray getContents() const { return m_contents; }
    static QNetworkAccessManager* getManager();
    /** Ends the manager and its thread. For the end of the process: the TLS library must not end under a
     * transfer. */
    static void endManager();

signals:
    /** fraction: 0 to 1. */
    void progressUpdate(float fraction, const QString& message);

private slots:
    void getFinished(QNetworkReply* reply);
    void onDownloadProgress(qint64 received, qint64 total);
    void onSslErrors(QNetworkReply* reply, const QList<QSslError>& errors);

private:
    void read();
    void abandonReply();
    void fail(QNetworkReply* reply);
    static QNetworkAccessManager*& sharedManager();

    const QUrl m_url;
    QPointer<QNetworkReply> m_reply;
    QElapsedTimer m_sinceProgress;
    bool m_ended = false; // all of the body has arrived, and some of it may have to be read
    QByteArray m_contents;
    quint64 m_expectedSize = 0;
    QString m_progressMessage;
};

/** The texts of the errors, separated by ", ". */
QString describeSslErrors(const QList<QSslError>& errors);
