#pragma once

#include <QByteArray>

/**
 * Makes the patch that turns an old file into a new one: a list of records, each of bytes that differ little
 * from a part of the old file and bytes that are new, compressed. The suffix array of the old file takes four
 * times its size in memory. Null when memory does not
 * suffice, and for files of 1 GB and more.
 */
QByteArray makePatch(const QByteArray& oldContent, const QByteArray& newContent);
