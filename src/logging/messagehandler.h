#pragma once

#include "logging/loggerbase.h"
#include "logging/logmessage.h"
#include "logging/redactor.h"

#include <QLinkedList>
#include <QVector>

/**
 * Makes every message of the toolkit's message functions, from any thread, a log record: secrets are
 * redacted, the record enters the history and goes to all sinks. The sinks are not owned and have to live
 * until the process ends. Call once, right after the application object exists.
 */
void installLogMessageHandler(const QVector<LoggerBase*>& sinks);

/** Hands what other threads have logged to the sinks at once. Main thread; for the end of the process. */
void flushLogMessages();

/** The newest records of the history, newest first; at most count. Any thread. */
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED
QLinkedList<LogMessage> getLastLogMessages(int count);
QT_WARNING_POP

/** The secrets that no record shows. */
Redactor& logRedactor();
