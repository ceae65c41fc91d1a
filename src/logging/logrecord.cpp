#include "logging/logrecord.h"

#include <QtEndian>

#include <cstring>

namespace
{
constexpr char magic[] = {'V', 'L', 'O', 'G'};
constexpr quint16 supportedVersion = 1;
constexpr int maxType = 4;
constexpr char continuesFlag = 1;

// Where the fields are
constexpr int versionAt = 4;
constexpr int typeAt = 6;
constexpr int flagsAt = 7;
constexpr int timeAt = 8;
constexpr int processAt = 16;
constexpr int repeatAt = 20;
constexpr int categoryAt = 24;
constexpr int categorySize = 40;
constexpr int messageAt = 64;
constexpr int messageSize = LogRecord::size - messageAt;

/** The longest beginning of UTF-8 text from a position on that fits and ends between two characters. */
int fittingLength(const QByteArray& text, int from, int room)
{
    int length = qMin(room, text.size() - from);
    if (from + length == text.size())
        return length;
    while (length > 0 && (text[from + length] & 0xc0) == 0x80)
        --length;
    return length > 0 ? length : qMin(room, text.size() - from);
}

QString textAt(const QByteArray& bytes, int at, int room)
{
    const auto field = QByteArray::fromRawData(bytes.constData() + at, room);
    return QString::fromUtf8(field.constData(), static_cast<int>(qstrnlen(field.constData(), uint(room))));
}
} // namespace

QByteArray encodeLogRecords(const LogRecord& record)
{
    QByteArray head(LogRecord::size, '\0');
    std::memcpy(head.data(), magic, sizeof magic);
    qToLittleEndian(supportedVersion, head.data() + versionAt);
    head[typeAt] = static_cast<char>(record.type);
    qToLittleEndian(record.msSinceEpoch, head.data() + timeAt);
    qToLittleEndian(record.processId, head.data() + processAt);
    qToLittleEndian(record.repeatCount, head.data() + repeatAt);
    const auto category = record.category.toUtf8();
    std::memcpy(head.data() + categoryAt, category.constData(),
                static_cast<size_t>(fittingLength(category, 0, categorySize)));

    // A NUL would end the text for the reader.
    const auto message = record.message.toUtf8().replace('\0', ' ');
    QByteArray records;
    int at = 0;
    do {
        const int length = fittingLength(message, at, messageSize);
        auto bytes = head;
        std::memcpy(bytes.data() + messageAt, message.constData() + at, static_cast<size_t>(length));
        at += length;
        if (at < message.size())
            bytes[flagsAt] = continuesFlag;
        records += bytes;
    } while (at < message.size());
    return records;
}

bool decodeLogRecord(const QByteArray& bytes, LogRecord* record)
{
    if (bytes.size() != LogRecord::size || std::memcmp(bytes.constData(), magic, sizeof magic) != 0 ||
        qFromLittleEndian<quint16>(bytes.constData() + versionAt) != supportedVersion ||
        static_cast<uchar>(bytes[typeAt]) > maxType)
        return false;
    record->type = static_cast<uchar>(bytes[typeAt]);
    record->continues = (bytes[flagsAt] & continuesFlag) != 0;
    record->msSinceEpoch = qFromLittleEndian<qint64>(bytes.constData() + timeAt);
    record->processId = qFromLittleEndian<quint32>(bytes.constData() + processAt);
    record->repeatCount = qFromLittleEndian<quint32>(bytes.constData() + repeatAt);
    record->category = textAt(bytes, categoryAt, categorySize);
    record->message = textAt(bytes, messageAt, messageSize);
    return true;
}
