#include "web/webgui.h"

#include "download/downloader.h"
#include "servers/servermanager.h"
#include "servers/steam.h"
#include "settings/settings.h"
#include "tasks/scheduler.h"
#include "telemetry/eventlogger.h"
#include "web/browserbreakoutfilter.h"
#include "web/customwebengineview.h"
#include "web/customwebpage.h"
#include "web/webapi.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDebug>
#include <QFile>
#include <QJsonDocument>
#include <QMetaEnum>
#include <QNetworkReply>
#include <QUrlQuery>
#include <QVBoxLayout>
#include <QWebChannel>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

static void initResources() { Q_INIT_RESOURCE(web); }

namespace
{
constexpr int loadTimeoutMs = 3000;
constexpr int askTimeoutMs = 30000;
constexpr int retryAfterFailureMs = 1000;
constexpr int retryWithoutVersionMs = 3000;
/** A render process that dies this often in a row is given some rest. */
constexpr int quickRestarts = 3;
constexpr int restMs = 30000;

/** The page sees the colour scheme that the launcher has when its engine starts. Only the environment tells
 * the engine, and nobody else is to see that. */
CustomWebPage* newPage(QWidget* parent)
{
    const char* const variable = "QTWEBENGINE_CHROMIUM_FLAGS";
    const auto flags = qgetenv(variable);
    const auto palette = QApplication::palette();
    if (palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness())
        qputenv(variable, flags + " --blink-settings=preferredColorScheme=0");
    auto* page = new CustomWebPage(parent);
    if (flags.isEmpty())
        qunsetenv(variable);
    else
        qputenv(variable, flags);
    return page;
}

QByteArray errorPage()
{
    initResources();
    QFile file(QStringLiteral(":/errorpage/index.html"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
} // namespace

const QLoggingCategory& web()
{
    static const QLoggingCategory category("web");
    return category;
}

WebGui::WebGui(QWidget* parent)
    : QWidget(parent), m_api(new WebAPI(this)), m_channel(new QWebChannel(this)), m_page(newPage(this)),
      m_view(new CustomWebEngineView(this))
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    connect(m_api, &WebAPI::browserBreakoutFilterURLUpdated, this, [this](const QString& url) {
        auto* filter = Settings::instance()->getBrowserBreakoutFilter();
        if (filter && m_page && m_page->mayCommand(m_page->url()))
            filter->update(QUrl(url, QUrl::TolerantMode));
    });
    m_channel->registerObject(QStringLiteral("settings"), m_api);
    m_page->setWebChannel(m_channel);
    m_page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false); // there is our own
    m_page->setBackgroundColor(palette().color(QPalette::Window));
    m_view->setPage(m_page);
    layout->addWidget(m_view);
    setFocusProxy(m_view);

    m_loadTimeout.setSingleShot(true);
    m_retry.setSingleShot(true);
    connect(&m_loadTimeout, &QTimer::timeout, this, &WebGui::onLoadTimeout);
    connect(&m_retry, &QTimer::timeout, this, &WebGui::checkGuiVersion);
    connect(m_page, &QWebEnginePage::loadFinished, this, &WebGui::onLoadFinished);
    connect(
        m_page, &QWebEnginePage::renderProcessTerminated, this,
        [this](QWebEnginePage::RenderProcessTerminationStatus status) { onRenderProcessTerminated(status); });
    // Dialogs run event loops of their own, which the engine must not wait for.
    connect(m_page, &CustomWebPage::cacheDialogRequested, this, &WebGui::cacheDialogRequested,
            Qt::QueuedConnection);
    connect(m_page, &CustomWebPage::profilesDialogRequested, this, &WebGui::profilesDialogRequested,
            Qt::QueuedConnection);
    connect(m_page, &CustomWebPage::pauseRequested, this, &WebGui::pauseRequested);
    connect(m_page, &CustomWebPage::resumeRequested, this, &WebGui::resumeRequested);
    checkGuiVersion();
    logProfile();
}

WebGui::~WebGui()
{
    qCDebug(web) << "Destroying WebGui";
    delete m_view;
    delete m_page;
}

void WebGui::logProfile() const
{
    const auto* profile = QWebEngineProfile::defaultProfile();
    const auto policies = QMetaEnum::fromType<QWebEngineProfile::PersistentCookiesPolicy>();
    qCDebug(web).noquote() << "Web engine cache path:" << profile->cachePath();
    qCDebug(web).noquote() << "Web engine persistent storage path:" << profile->persistentStoragePath();
    qCDebug(web).noquote() << "Web engine persistent cookies policy:"
                           << policies.valueToKey(profile->persistentCookiesPolicy());
}

// The first question waits for its turn like all others. When it has failed, the player has no page: then
// the next one does not wait until a long download has ended, and goes a way of its own, since answers on the
// shared one are taken for whatever download is running.
void WebGui::checkGuiVersion()
{
    if (!m_page)
        return;
    m_loadState = LoadState::Checking;
    m_loadTimeout.start(loadTimeoutMs);
    const auto address = Settings::instance()->getUrlForGuiVersionInfo();
    qCDebug(web).noquote() << "Checking gui version at" << address;
    if (!std::exchange(m_isFirstCheck, false)) {
        askAgain(QUrl(address));
        return;
    }
    auto* downloader = new Downloader(QUrl(address), this);
    downloader->setProperty("name", QStringLiteral("Gui version info downloader"));
    connect(downloader, &Task::finished, this, &WebGui::onVersionInfoDownloadFinished);
    emit Scheduler::instance()->schedule(QStringLiteral("launcher"), downloader);
}

void WebGui::askAgain(const QUrl& address)
{
    QNetworkRequest request(address);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setTransferTimeout(askTimeoutMs);
    auto* reply = m_network.get(request);
    connect(reply, &QNetworkReply::finished, this, [this, reply] {
        reply->deleteLater();
        if (reply->error() == QNetworkReply::NoError)
            onVersionInfo(reply->readAll());
        else
            onVersionInfoFailed(reply->errorString());
    });
}

void WebGui::checkAgain(int milliseconds) { m_retry.start(milliseconds); }

void WebGui::onVersionInfoDownloadFinished(Task* task)
{
    task->deleteLater();
    const auto* downloader = qobject_cast<Downloader*>(task);
    if (task->isError() || !downloader)
        onVersionInfoFailed(task->getErrorString());
    else
        onVersionInfo(downloader->getContents());
}

void WebGui::onVersionInfoFailed(const QString& reason)
{
    const auto message =
        Settings::instance()->isOnline()
            ? tr("Couldn't get GUI version info") + QStringLiteral("<br><br>") + tr("See logs for details")
            : tr("Can't get GUI version info when offline");
    qCCritical(web).noquote() << "Version-info download task returned an error: " << reason;
    loadErrorPage(tr("Error"), message);
    checkAgain(retryAfterFailureMs);
}

void WebGui::onVersionInfo(const QByteArray& bytes)
{
    const auto info = QJsonDocument::fromJson(bytes).object();
    static const char* const members[] = {"release", "beta", "dev"};
    const int type = Settings::instance()->getVersionType();
    const auto version = info.value(QLatin1String(members[type == 1 || type == 2 ? type : 0])).toString();
    if (version.isEmpty()) {
        qCWarning(web) << "Couldn't establish gui version";
        loadErrorPage(tr("Error"), tr("Couldn't establish gui version"));
        m_loadState = LoadState::Failed;
        checkAgain(retryWithoutVersionMs);
        return;
    }
    qCDebug(web).noquote() << "Gui version is" << version;
    loadPage(version);
}

QUrl WebGui::pageAddress(const QString& guiVersion) const
{
    const auto* settings = Settings::instance();
    QUrl address(settings->getLandingPageUrl(guiVersion));
    QUrlQuery query;
    if (settings->startedFromUpdater()) {
        query.addQueryItem(QStringLiteral("updating"), QStringLiteral("true"));
        m_page->profile()->clearAllVisitedLinks();
    }
    const auto ticket = getSteamTicket();
    if (!ticket.isEmpty())
        query.addQueryItem(QStringLiteral("steam_ticket"), QString::fromLatin1(ticket.toHex()));
    if (!query.isEmpty())
        address.setQuery(query);
    if (!settings->getStartupServer().isEmpty())
        address.setFragment(settings->getStartupServer());
    return address;
}

void WebGui::loadPage(const QString& guiVersion)
{
    if (!m_page) // closed meanwhile
        return;
    const auto address = pageAddress(guiVersion);
    addSecretsOf(address);
    m_errorPageShown = false;
    m_loadTimeout.stop();
    qCDebug(web).noquote() << "Loading web gui from" << address.toDisplayString();
    m_page->setUrl(address);
    m_loadState = LoadState::AddressSet;
}

void WebGui::onLoadTimeout()
{
    if (m_loadState == LoadState::Checking && !m_firstLoadSignalled)
        loadErrorPage(tr("Checking GUI version..."), tr("Please wait"));
}

void WebGui::loadErrorPage(const QString& heading, const QString& message)
{
    if (!m_page)
        return;
    m_errorHeading = heading;
    m_errorMessage = message;
    if (!m_errorPageShown || !m_firstLoadSignalled) {
        m_errorPageShown = true;
        m_page->setHtml(QString::fromUtf8(errorPage()), errorPageUrl());
        return;
    }
    m_page->runJavaScript(formatPageCall(PageCall::SetHeading, {heading}));
    m_page->runJavaScript(formatPageCall(PageCall::SetMessage, {message}));
}

void WebGui::onLoadFinished(bool ok)
{
    if (!m_page)
        return;
    if (m_errorPageShown) {
        m_page->runJavaScript(formatPageCall(PageCall::SetHeadingAtLoad, {m_errorHeading}));
        m_page->runJavaScript(formatPageCall(PageCall::SetMessageAtLoad, {m_errorMessage}));
    } else if (!ok && m_loadState == LoadState::AddressSet) {
        loadErrorPage(tr("Error"),
                      tr("Couldn't load the page") + QStringLiteral("<br><br>") + tr("See logs for details"));
        checkAgain(retryWithoutVersionMs);
    }
    if (!std::exchange(m_firstLoadSignalled, true))
        emit loadFinished(ok);
}

// What was shown is gone with its process.
void WebGui::onRenderProcessTerminated(int status)
{
    if (!m_page || status == QWebEnginePage::NormalTerminationStatus)
        return;
    qCWarning(web) << "The process of the page has ended, it is started again";
    ++m_terminations;
    QTimer::singleShot(restMs, this, [this] { --m_terminations; });
    m_errorPageShown = false;
    if (m_terminations <= quickRestarts) {
        QTimer::singleShot(0, this, &WebGui::reload);
        return;
    }
    loadErrorPage(tr("Error"), tr("The page has ended unexpectedly several times. It is loaded again soon."));
    checkAgain(restMs);
}

void WebGui::reload()
{
    if (!m_page)
        return;
    if (m_page->url() == errorPageUrl()) // a text of ours, which cannot be fetched again
        loadErrorPage(m_errorHeading, m_errorMessage);
    else
        m_page->triggerAction(QWebEnginePage::Reload);
}

bool WebGui::isPageReady() const { return m_page && m_page->isJavascriptLoaded(); }

void WebGui::setStatusMessage(const QString& text)
{
    if (!m_page)
        return;
    const auto* settings = Settings::instance();
    const auto* server = settings->getServer(settings->getMainServerName());
    m_page->setProgress(settings->getMainServerName(), server && server->isReady() ? 1.0F : 0.0F, text);
}

void WebGui::showErrorMessage(const QString& title, const QString& message, int code)
{
    if (m_page)
        m_page->showErrorMessage(title, message, code);
}

void WebGui::processStarted(ServerManager* server, AttachedProcess* process)
{
    if (m_page)
        m_page->processStarted(server, process);
}

QByteArray WebGui::getSteamTicket()
{
    auto ticket = Steam::instance()->sessionTicket();
    EventLogger::instance()->logJson({{QStringLiteral("type"), QStringLiteral("steam")},
                                      {QStringLiteral("steamTicket"), !ticket.isEmpty()}});
    return ticket;
}

void WebGui::closeEvent(QCloseEvent* event)
{
    qCDebug(web) << "Closing WebGui";
    delete m_view;
    delete m_page;
    event->accept();
}
