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

    /** Whether the block can hold as much as it announces, so that taking memory for that is not in vain. */
    static bool isPlausible(const char* block, size_t size);

    /** Writes exactly the announced length to a place that has so much room. Returns false when the block is
     * damaged. */
    bool inflateTo(char* to, const char* block, size_t size);
    /** The content; a null array when the block is damaged. */
    QByteArray inflate(const char* block, size_t size);

private:
    struct Free {
        void operator()(libdeflate_decompressor* decompressor) const;
    };
    const std::unique_ptr<libdeflate_decompressor, Free> m_decompressor;
};
