#include "shell/updatefailures.h"

#include "settings/settings.h"
#include "tasks/task.h"
#include "telemetry/exceptionlogger.h"

#include <QCoreApplication>
#include <QDebug>

void reportUpdateFailure(const QString& name, int code)
{
    switch (code) {
    case UnknownError:
        reportException("UnknownError", QStringLiteral("%1 update failed with an unknown error").arg(name),
                        "updatefailures", "reportUpdateFailure", __LINE__);
        break;
    case DownloadError:
        if (Settings::instance()->isOnline())
            reportException("DownloadError",
                            QStringLiteral("%1 update failed with a download error").arg(name),
                            "updatefailures", "reportUpdateFailure", __LINE__);
        break;
    case DiskWriteError:
        reportException("DiskWriteError",
                        QStringLiteral("%1 update failed with a disk write error").arg(name),
                        "updatefailures", "reportUpdateFailure", __LINE__);
        break;
    case ClientsRunningError:
        break;
    default:
        qWarning().noquote() << "Unhandled error for" << name << "with error:" << code;
    }
}

QString describeUpdateError(int code)
{
    const auto translate = [](const char* text) {
        return QCoreApplication::translate("updatefailures", text);
    };
    switch (code) {
    case DownloadError:
        return translate("the download failed");
    case DiskWriteError:
        return translate("a file could not be stored");
    case ClientsRunningError:
        return translate("a client is running");
    case SourceDoesNotExistError:
        return translate("a file is missing from the cache");
    case CopyError:
        return translate("a file could not be copied");
    default:
        return translate("unknown error, see the log for details");
    }
}
