#pragma once

#include <QObject>

/** What the page reaches over the web channel, under the name "settings". */
class WebAPI : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** The rules for addresses that leave pop-ups for the system's browser are at this address. */
    Q_INVOKABLE void updateBrowserBreakoutFilterURL(const QString& url)
    {
        emit browserBreakoutFilterURLUpdated(url);
    }

signals:
    void browserBreakoutFilterURLUpdated(const QString& url);
};
