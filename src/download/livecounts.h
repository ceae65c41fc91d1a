#pragma once

/** Logs how many objects of the classes that make up an update are alive. A diagnostic aid. */
void logLiveCounts();
