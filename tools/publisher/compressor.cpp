#include "tools/publisher/compressor.h"

#include <QtEndian>

#include <libdeflate.h>
#include <memory>

QByteArray compressed(const QByteArray& content, int level)
{
    constexpr int lengthSize = 4;
    const std::unique_ptr<libdeflate_compressor, decltype(&libdeflate_free_compressor)> compressor(
        libdeflate_alloc_compressor(level), &libdeflate_free_compressor);
    Q_CHECK_PTR(compressor.get());
    const auto size = static_cast<size_t>(content.size());
    const auto bound = libdeflate_zlib_compress_bound(compressor.get(), size);
    QByteArray block(lengthSize + static_cast<int>(bound), Qt::Uninitialized);
    qToBigEndian(static_cast<quint32>(size), block.data());
    const auto used = libdeflate_zlib_compress(compressor.get(), content.constData(), size,
                                               block.data() + lengthSize, bound);
    block.truncate(lengthSize + static_cast<int>(used));
    return block;
}
