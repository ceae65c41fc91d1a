#include "logging/logmessage.h"

QString loggingGetTypeStringFromType(int type)
{
    static constexpr const char* names[] = {"debug", "warning", "error", "fatal", "info"};
    return type >= 0 && type < 5 ? QLatin1String(names[type]) : QString();
}
