#include "logging/loggerbase.h"

#include "logging/logmessage.h"

static constexpr int maxWithheldRepeats = 99;

LoggerBase::~LoggerBase() = default;

void LoggerBase::onLog(const QDateTime& time, int type, const QString& category, const QString& message)
{
    if (type == m_lastType && message == m_lastMessage && category == m_lastCategory) {
        ++m_repeatCount;
        m_lastTime = time;
        if (m_repeatCount <= maxWithheldRepeats)
            return;
    } else if (m_repeatCount > 0) {
        outputMessage(m_lastTime, m_lastTypeName, m_lastCategory, m_lastMessage, m_repeatCount);
        m_repeatCount = 0;
    }

    const auto typeName = loggingGetTypeStringFromType(type);
    outputMessage(time, typeName, category, message, m_repeatCount);
    m_repeatCount = 0;
    m_lastTime = time;
    m_lastType = type;
    m_lastTypeName = typeName;
    m_lastCategory = category;
    m_lastMessage = message;
}
