#pragma once

#include <QByteArray>
#include <QString>

/** One record of the live log: what the launcher sends to a viewer, 512 bytes each on the wire. */
struct LogRecord {
    static constexpr int size = 512;

    /** The toolkit's numbers: 0 debug, 1 warning, 2 error, 3 fatal, 4 info. */
    int type = 0;
    /** The message goes on in the next record. */
    bool continues = false;
    qint64 msSinceEpoch = 0;
    quint32 processId = 0;
    quint32 repeatCount = 0;
    QString category;
    QString message;
};

/** A message as records: as many as it takes, each cut between two characters. continues is ignored. */
QByteArray encodeLogRecords(const LogRecord& record);

/** Reads one record. Returns false when these are not the bytes of one. */
bool decodeLogRecord(const QByteArray& bytes, LogRecord* record);
