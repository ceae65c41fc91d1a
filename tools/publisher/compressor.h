#pragma once

#include <QByteArray>

/** Content in the toolkit's compressed form: its length in 4 bytes, most significant first, then zlib data.
 * level: 1 (fast) to 12 (small). Any thread. */
QByteArray compressed(const QByteArray& content, int level);
