#include "download/inflater.h"

#include <QtEndian>

#include <libdeflate.h>
#include <limits>

namespace
{
constexpr size_t prefixSize = 4;
// A match of deflate takes at least two bits and stands for at most 258 bytes.
constexpr qint64 maxRatio = 1032;
constexpr qint64 maxLength = std::numeric_limits<int>::max() - 64;
} // namespace

void Inflater::Free::operator()(libdeflate_decompressor* decompressor) const
{
    libdeflate_free_decompressor(decompressor);
}

Inflater::Inflater() : m_decompressor(libdeflate_alloc_decompressor()) { Q_CHECK_PTR(m_decompressor.get()); }

Inflater::~Inflater() = default;

qint64 Inflater::announcedLength(const char* block, size_t size)
{
    return size < prefixSize ? -1 : qint64(qFromBigEndian<quint32>(block));
}

bool Inflater::isPlausible(const char* block, size_t size)
{
    const qint64 length = announcedLength(block, size);
    return length >= 0 && length <= maxLength && length <= maxRatio * qint64(size);
}

bool Inflater::inflateTo(char* to, const char* block, size_t size)
{
    const auto length = announcedLength(block, size);
    if (length == 0 && size == prefixSize) // how the toolkit writes nothing at all
        return true;
    return length >= 0 &&
           libdeflate_zlib_decompress(m_decompressor.get(), block + prefixSize, size - prefixSize, to,
                                      static_cast<size_t>(length), nullptr) == LIBDEFLATE_SUCCESS;
}

QByteArray Inflater::inflate(const char* block, size_t size)
{
    if (!isPlausible(block, size))
        return {};
    QByteArray content(static_cast<int>(announcedLength(block, size)), Qt::Uninitialized);
    return inflateTo(content.data(), block, size) ? content : QByteArray();
}
