#pragma once

#include <QWebEngineView>

/** The view of the web interface: without a context menu. */
class CustomWebEngineView : public QWebEngineView
{
    Q_OBJECT

public:
    explicit CustomWebEngineView(QWidget* parent = nullptr);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    /** Once in the life of an installation: removes what logins to test servers have left behind. */
    static void clearLocalStorageForTestServers();
};
