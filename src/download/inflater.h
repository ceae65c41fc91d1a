#pragma once

#include <QByteArray>

#include <memory>

struct libdeflate_decompressor;

/**
 * Inflates blocks in the toolkit's compressed form: the length of the content in 4 bytes, most significant
 * first, then zlib data. For one thread at a time.
 */
class Inflater
{
public:
    Inflater();
    ~Inflater();
    Q_DISABLE_COPY_MOVE(Inflater)

    /** The length that the block announces; -1 when the block is too short to have one. */
    static qint64 announcedLength(const char* block, size_t size);

    /**
     * The content, which has exactly the announced length; a null array when the block is damaged. Memory for
     * the content is taken only when so few bytes can hold so much.
     */
    QByteArray inflate(const char* block, size_t size);

private:
    struct Free {
        void operator()(libdeflate_decompressor* decompressor) const;
    };
    const std::unique_ptr<libdeflate_decompressor, Free> m_decompressor;
};
