#pragma once

#include <QString>

#include <cstddef>

/**
 * The process-wide table of strings that indexes share, so that several large indexes fit into memory: equal
 * fields of all servers and builds are one buffer. It is never pruned; its strings live until the process
 * ends and cost no reference counting. Any thread.
 */
class StringTable
{
public:
    /**
     * Takes the table for many look-ups. Holding it locks the others out, so keep it for a few thousand
     * strings at most.
     */
    class Session;

    /** The stored copy of a string. */
    static QString intern(const QString& text);

    /** Number of different strings in the table. */
    static size_t size();
};

class StringTable::Session
{
public:
    Session();
    ~Session();
    Q_DISABLE_COPY_MOVE(Session)

    /** A field that is to be looked up: its bytes and their hash. */
    struct Field {
        const char* data = nullptr;
        size_t length = 0;
        size_t hash = 0;
    };
    static size_t hash(const char* data, size_t length);
    /** Announces a look-up that will come soon. */
    void prefetch(const Field& field) const;
    /** The stored string for bytes in the local 8-bit encoding. */
    QString intern(const Field& field);
};

/** The stored copy of a string that is equal to text. */
inline QString MakeSharedString(const QString& text) { return StringTable::intern(text); }
