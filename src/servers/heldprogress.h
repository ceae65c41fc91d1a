#pragma once

#include <QString>

/** How far an update is, and what is said about it: while downloads are held, the reason takes the place of
 * the text. */
struct HeldProgress {
    /** 0 to 1 over the whole update. */
    float fraction = 0;
    QString text;
    QString heldBecause;

    const QString& shownText() const { return heldBecause.isEmpty() ? text : heldBecause; }
};
