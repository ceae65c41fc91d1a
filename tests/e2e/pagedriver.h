#pragma once

#include <QJsonObject>
#include <QString>
#include <QWebSocket>

/** One page inside the real web engine of a running launcher, reached through the engine's port for
 * debuggers: looks at the page and acts in it as its player would. */
class PageDriver
{
public:
    /** port: QTWEBENGINE_REMOTE_DEBUGGING of the launcher. */
    explicit PageDriver(int port) : m_port(port) {}
    ~PageDriver();
    Q_DISABLE_COPY_MOVE(PageDriver)

    int port() const { return m_port; }
    /** Waits for a page whose address contains the text, and goes there. */
    bool attach(const QString& addressPart, int milliseconds = 30000);
    /** The addresses of all pages that are open. */
    QStringList addresses() const;

    /** What the expression evaluates to; promises are waited for. Invalid when it throws or there is no page.
     */
    QVariant evaluate(const QString& expression);
    /** Whether the expression becomes true, waiting for it for a while. */
    bool waitFor(const QString& expression, int milliseconds = 30000);
    /** Clicks the element that the selector finds. */
    bool click(const QString& selector);
    bool type(const QString& selector, const QString& text);

private:
    QJsonArray targets() const;
    QJsonObject request(const QString& method, const QJsonObject& parameters);

    const int m_port;
    std::unique_ptr<QWebSocket> m_socket;
    int m_lastId = 0;
    QJsonObject m_answer;
};

/** A port of 127.0.0.1 that was free a moment ago. */
int freePort();
