#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <atomic>

/**
 * The MD5 of many files, eight at a time in the lanes of the processor's vector unit where it has one (AVX2),
 * else one after the other. Uses the calling thread only; call it on several threads for more speed.
 *
 * The result at a position is the lower-case hexadecimal MD5 of the file at that position, or empty when the
 * file cannot be read. Once stop is set, files that have not been finished stay empty.
 */
QVector<QByteArray> md5OfFiles(const QVector<QString>& paths, const std::atomic<bool>* stop = nullptr);

/** The same for content in memory. */
QVector<QByteArray> md5OfMany(const QVector<QByteArray>& messages);

/** md5OfFiles(), never with vectors: what the fast way is compared with. */
QVector<QByteArray> md5OfFilesPlain(const QVector<QString>& paths, const std::atomic<bool>* stop = nullptr);
