#pragma once

/**
 * Where an updater was interrupted while it replaced this launcher's files, this process becomes the updater,
 * which finishes or undoes that and starts the launcher again. Returns where there is nothing to do. Call it
 * first of all.
 */
void finishInterruptedUpdate();
