#pragma once

#include "index/index.h"

/** What is known of several indexes together. */
struct CombinedIndex {
    /** How many of the indexes that should be in it could not be obtained. */
    int failureCount = 0;
    IndexPtr index;
};

/**
 * All files of one server: binaries, those of the build that is installed, and resources. Waits up to three
 * seconds for an index that is not there yet; not for the main thread.
 */
CombinedIndex getCombinedIndexForServer(const QString& serverKey);

/** All files of the Wine runtime; nothing where none was ever installed. Any thread. */
CombinedIndex getCombinedIndexForWine();

/** All files of the launchers whose indexes are in the cache: this one's, and one that is being installed.
 * Any thread. */
CombinedIndex getCombinedIndexForLauncher();

/**
 * Adds next to accumulated. Of two rows with the same name the first is the one that is found by name, yet
 * the content of both is there. Any thread.
 */
void combineIndices(CombinedIndex& accumulated, const CombinedIndex& next);
