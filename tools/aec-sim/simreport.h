// Reports of a simulator run: the per-frame CSV and terminal table, the progress bar and the metrics summary.
#ifndef AECORE_TOOLS_AECSIM_SIMREPORT_H
#define AECORE_TOOLS_AECSIM_SIMREPORT_H

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "csimloop.h"
#include "simmetrics.h"

// One line per frame with the host settings in force; the event text is quoted.
bool WriteFramesCsv(const std::string& path, const SimRunData& run, std::string* pError);

// The readable per-frame table.
void PrintFrameTable(FILE* pFile, const SimRunData& run);

// Whether to draw a progress bar: long runs only, never with --quiet, and only on a terminal.
bool WantsProgressBar(uint32_t frames, bool quiet);
// Redraws the bar in place; the last frame ends the line.
void PrintProgress(FILE* pFile, uint32_t done, uint32_t total);

// The metrics summary: one row per event, then the run-wide figures.
void PrintMetrics(FILE* pFile, const std::string& title, const SimMetrics& metrics);

// The answers to the timeline's still-capture queries.
void PrintSnapshots(FILE* pFile, const std::vector<SimSnapshotResult>& snapshots);

#endif // AECORE_TOOLS_AECSIM_SIMREPORT_H
