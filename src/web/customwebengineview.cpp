#include "web/customwebengineview.h"

#include "settings/settings.h"

#include <QContextMenuEvent>
#include <QDebug>
#include <QFile>
#include <QWebEngineProfile>

CustomWebEngineView::CustomWebEngineView(QWidget* parent) : QWebEngineView(parent)
{
    clearLocalStorageForTestServers();
}

void CustomWebEngineView::contextMenuEvent(QContextMenuEvent* event) { event->ignore(); }

void CustomWebEngineView::clearLocalStorageForTestServers()
{
    const auto doneKey = QStringLiteral("LauncherHasClearedLocalStorageAfterSsoFailure");
    auto* settings = Settings::instance();
    if (settings->store().value(doneKey).toBool())
        return;
    qDebug() << "Clearing local storage for test servers";
    const auto host = QUrl(QStringLiteral("https://") + settings->getDeployment().testWebHost).host();
    const auto path = QStringLiteral("%1/Local Storage/https_%2_0.localstorage")
                          .arg(QWebEngineProfile::defaultProfile()->persistentStoragePath(), host);
    if (QFile::remove(path))
        qDebug() << "Deleted local storage";
    if (QFile::remove(path + QStringLiteral("-journal")))
        qDebug() << "Deleted local storage journal";
    settings->store().setValue(doneKey, true);
}
