#include "web/customwebpage.h"

#include "maintenance/diagnostics.h"
#include "settings/settings.h"
#include "telemetry/exceptionlogger.h"
#include "web/browserbreakoutfilter.h"
#include "web/sockethandler.h"

#include <QApplication>
#include <QDebug>
#include <QDesktopServices>
#include <QIcon>
#include <QWebEngineCertificateError>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace
{
/** Whenever the queue has grown by so many, a page that does not come keeps only the newest progress of each
 * server waiting. */
constexpr int longQueue = 1000;

/** The address as it may stand in a log: what a login puts behind it stays out. */
QString addressOf(const QUrl& url)
{
    return url.toDisplayString(QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo);
}
} // namespace

CustomWebPage::CustomWebPage(QWidget* parent)
    : QWebEnginePage(parent), m_policy(Settings::instance()->getDeployment().commandHosts)
{
    connect(this, &QWebEnginePage::urlChanged, this, &CustomWebPage::onUrlChanged);
    connect(this, &QWebEnginePage::loadStarted, this, &CustomWebPage::onLoadStarted);
    connect(this, &QWebEnginePage::loadFinished, this, &CustomWebPage::onLoadFinished);
    connect(this, &QWebEnginePage::renderProcessTerminated, this, &CustomWebPage::onRenderProcessTerminated);
    connectEvents();
}

CustomWebPage::~CustomWebPage()
{
    const auto popups = std::exchange(m_popups, {});
    qDeleteAll(popups);
    qDebug() << "CustomWebPage destructor done";
}

void CustomWebPage::executeJavaScript(const QString& script)
{
    if (m_javascriptLoaded) {
        qDebug().noquote() << script;
        runJavaScript(script);
        return;
    }
    qDebug().noquote() << "Queueing" << script;
    m_pendingScripts.enqueue(script);
    if (m_pendingScripts.size() % longQueue == 0)
        dropSupersededProgress();
}

void CustomWebPage::dropSupersededProgress()
{
    QSet<QString> seen;
    QQueue<QString> kept;
    for (auto script = m_pendingScripts.crbegin(); script != m_pendingScripts.crend(); ++script) {
        const auto server = progressTarget(*script);
        if (!server.isEmpty() && seen.contains(server))
            continue;
        seen.insert(server);
        kept.prepend(*script);
    }
    m_pendingScripts = kept;
}

void CustomWebPage::call(PageCall call, const QStringList& arguments)
{
    executeJavaScript(formatPageCall(call, arguments));
}

void CustomWebPage::onUrlChanged(const QUrl& url)
{
    addSecretsOf(url);
    qDebug().noquote() << "urlChanged" << url.toDisplayString();
}

void CustomWebPage::onLoadStarted()
{
    qDebug() << "loadStarted (clears Javascript loaded flag)";
    m_javascriptLoaded = false;
    m_hasForeignFrame = false;
    m_hasWarned = false;
}

void CustomWebPage::onLoadFinished(bool ok)
{
    addSecretsOf(requestedUrl());
    if (ok) {
        qDebug().noquote() << requestedUrl().toDisplayString() << "opened succesfully";
        return;
    }
    reportException("LoadFailed", QStringLiteral("Couldn't open %1").arg(addressOf(requestedUrl())),
                    "customwebpage", "onLoadFinished", __LINE__);
}

void CustomWebPage::onRenderProcessTerminated(RenderProcessTerminationStatus status, int exitCode)
{
    if (status == NormalTerminationStatus)
        return;
    m_javascriptLoaded = false;
    reportException(
        "RenderProcessTerminated",
        QStringLiteral("The render process has ended, status %1, exit code %2").arg(status).arg(exitCode),
        "customwebpage", "onRenderProcessTerminated", __LINE__);
    if (m_owner)
        emit windowCloseRequested();
}

// A frame of another host speaks through the same console as the page; once there is one, the script that
// speaks is looked at as well.
bool CustomWebPage::mayCommand(const QUrl& script)
{
    if (m_policy.mayCommand(url()) && (!m_hasForeignFrame || m_policy.mayCommand(script)))
        return true;
    if (!std::exchange(m_hasWarned, true))
        qWarning().noquote() << "Commands are refused from" << addressOf(url()) << "script"
                             << addressOf(script);
    return false;
}

void CustomWebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                             int lineNumber, const QString& sourceId)
{
    static const auto prefix = QStringLiteral("launcher:");
    if (message.startsWith(prefix)) {
        if (mayCommand(QUrl(sourceId)))
            (m_owner ? m_owner.data() : this)->handleCommand(message.mid(prefix.size()), this);
        return;
    }
    const auto source = addressOf(QUrl(sourceId));
    switch (level) {
    case InfoMessageLevel:
        qDebug().noquote() << "info:" << message << lineNumber << source;
        break;
    case WarningMessageLevel:
        qWarning().noquote() << "warning:" << message << lineNumber << source;
        break;
    case ErrorMessageLevel:
        qCritical().noquote() << "error:" << message << lineNumber << source;
        break;
    }
}

bool CustomWebPage::acceptNavigationRequest(const QUrl& url, NavigationType type, bool isMainFrame)
{
    Q_UNUSED(type)
    if (!isMainFrame && !m_policy.mayCommand(url))
        m_hasForeignFrame = true;
    const auto* filter = Settings::instance()->getBrowserBreakoutFilter();
    if (!m_breakoutFilterState || !filter || !filter->breakout(url.toString()))
        return true;
    QDesktopServices::openUrl(url);
    addSecretsOf(url);
    qDebug().noquote() << "Following page opened in system browser:" << url.toDisplayString();
    return false;
}

bool CustomWebPage::certificateError(const QWebEngineCertificateError& error)
{
    qWarning().noquote() << "certificateError" << addressOf(error.url()) << error.error()
                         << error.errorDescription();
    return Diagnostics::shouldIgnoreCertificateError(error.error(), error.url(), error.errorDescription());
}

QWebEnginePage* CustomWebPage::createWindow(WebWindowType type)
{
    Q_UNUSED(type)
    auto* view = new QWebEngineView;
    view->setAttribute(Qt::WA_DeleteOnClose);
    view->setWindowFlag(Qt::NoDropShadowWindowHint);
    view->setContextMenuPolicy(Qt::NoContextMenu);
    view->setWindowIcon(QApplication::windowIcon());
    QRect frame({}, Settings::instance()->getPopupWindowSize());
    if (const auto* opener = this->view())
        frame.moveCenter(opener->window()->geometry().center());
    view->setGeometry(frame);
    auto* page = new CustomWebPage(view);
    page->setOwner(this);
    page->setBreakoutFilterState(true);
    page->settings()->setAttribute(QWebEngineSettings::ShowScrollBars, false);
    page->setBackgroundColor(QApplication::palette().color(QPalette::Window));
    view->setPage(page);
    connect(page, &QWebEnginePage::titleChanged, view, &QWidget::setWindowTitle);
    m_popups.append(view);
    connect(page, &QWebEnginePage::windowCloseRequested, this, [this, view] { closePopup(view); });
    connect(view, &QObject::destroyed, this, [this, view] { m_popups.removeAll(view); });
    view->showNormal();
    return page;
}

void CustomWebPage::closePopup(QWebEngineView* view)
{
    if (m_popups.removeAll(view) > 0)
        view->close(); // which deletes it later
}
