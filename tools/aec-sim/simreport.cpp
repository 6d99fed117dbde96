// Reports of a simulator run: the per-frame CSV and terminal table, the progress bar and the metrics summary.
#include "simreport.h"

#include <unistd.h>

#include <algorithm>
#include <cmath>

namespace
{

// Runs shorter than this finish before a bar would be worth watching.
constexpr uint32_t kProgressMinFrames = 150;
constexpr int      kProgressWidth     = 40;

const char* ManualModeName(AECAlgoModeType mode)
{
    switch (mode)
    {
    case AECAlgoModeAuto:
        return "auto";
    case AECAlgoModeManualISO:
        return "iso";
    case AECAlgoModeManualGain:
        return "gain";
    case AECAlgoModeManualExpTime:
        return "exposure-time";
    case AECAlgoModeManualFull:
        return "full";
    default:
        return "other";
    }
}

std::string CsvQuoted(const std::string& text)
{
    std::string quoted = "\"";
    for (char c : text)
    {
        quoted += (c == '"') ? std::string("\"\"") : std::string(1, c);
    }
    return quoted + "\"";
}

} // namespace

bool WriteFramesCsv(const std::string& path, const SimRunData& run, std::string* pError)
{
    FILE* pFile = std::fopen(path.c_str(), "w");
    if (nullptr == pFile)
    {
        *pError = "cannot write " + path;
        return false;
    }
    std::fprintf(pFile, "frame,scene_ev,applied_time_ns,applied_gain,chosen_time_ns,chosen_gain,chosen_sensitivity,"
                        "frame_luma,target_luma,luma_error_ev,lux_index,settled,fps,antibanding_hz,locked,"
                        "ev_compensation,manual_mode,reported_iso,event\n");
    for (size_t i = 0; i < run.records.size(); i++)
    {
        const SimFrameRecord&  r = run.records[i];
        const SimFrameContext& c = run.contexts[i];
        std::fprintf(pFile, "%u,%.3f,%llu,%.4f,%llu,%.4f,%.1f,%.3f,%.3f,%.4f,%.2f,%d,%.2f,%u,%d,%.2f,%s,%u,%s\n", r.frame,
                     r.sceneEV, static_cast<unsigned long long>(r.appliedTime), static_cast<double>(r.appliedGain),
                     static_cast<unsigned long long>(r.chosenTime), static_cast<double>(r.chosenGain),
                     static_cast<double>(r.chosenSensitivity), static_cast<double>(r.frameLuma),
                     static_cast<double>(r.targetLuma), LumaErrorEV(r), static_cast<double>(r.luxIndex),
                     r.settled ? 1 : 0, static_cast<double>(r.fps), c.flickerHz, c.locked ? 1 : 0,
                     static_cast<double>(c.evCompensation), ManualModeName(c.manualMode), c.reportedISO,
                     CsvQuoted(r.event).c_str());
    }
    bool ok = (0 == std::ferror(pFile));
    ok      = (0 == std::fclose(pFile)) && ok;
    if (!ok)
    {
        *pError = "write error on " + path;
    }
    return ok;
}

void PrintFrameTable(FILE* pFile, const SimRunData& run)
{
    std::fprintf(pFile, "%5s %7s %10s %7s %10s %7s %7s %7s %7s %7s %3s %6s  %s\n", "frame", "sceneEV", "applied_ms",
                 "gain", "chosen_ms", "gain", "luma", "target", "err_EV", "lux_idx", "stl", "fps", "event");
    for (const SimFrameRecord& r : run.records)
    {
        std::fprintf(pFile, "%5u %+7.2f %10.3f %7.3f %10.3f %7.3f %7.2f %7.2f %+7.3f %7.1f %3s %6.2f  %s\n", r.frame,
                     r.sceneEV, static_cast<double>(r.appliedTime) / 1e6, static_cast<double>(r.appliedGain),
                     static_cast<double>(r.chosenTime) / 1e6, static_cast<double>(r.chosenGain),
                     static_cast<double>(r.frameLuma), static_cast<double>(r.targetLuma), LumaErrorEV(r),
                     static_cast<double>(r.luxIndex), r.settled ? "yes" : "-", static_cast<double>(r.fps),
                     r.event.c_str());
    }
}

bool WantsProgressBar(uint32_t frames, bool quiet)
{
    return !quiet && (frames >= kProgressMinFrames) && (1 == isatty(fileno(stderr)));
}

void PrintProgress(FILE* pFile, uint32_t done, uint32_t total)
{
    const uint32_t safeTotal = std::max(total, 1U);
    const int      filled    = static_cast<int>((static_cast<uint64_t>(done) * kProgressWidth) / safeTotal);
    std::fprintf(pFile, "\r[%.*s%*s] %u/%u frames", filled, "########################################",
                 kProgressWidth - filled, "", done, total);
    if (done >= total)
    {
        std::fputc('\n', pFile);
    }
    std::fflush(pFile);
}

void PrintMetrics(FILE* pFile, const std::string& title, const SimMetrics& metrics)
{
    std::fprintf(pFile, "\nMetrics: %s\n", title.c_str());
    std::fprintf(pFile, "%6s  %-34s %8s %11s %9s\n", "frame", "event", "settle", "overshoot", "crossings");
    for (const SimEventMetrics& event : metrics.events)
    {
        if (!event.converging)
        {
            std::fprintf(pFile, "%6u  %-34s %8s %11s %9s\n", event.frame, event.label.c_str(), "-", "-", "-");
            continue;
        }
        char settle[16];
        std::snprintf(settle, sizeof(settle), (event.settleFrames < 0) ? "never" : "%d", event.settleFrames);
        std::fprintf(pFile, "%6u  %-34s %8s %8.3f EV %9u\n", event.frame, event.label.c_str(), settle,
                     event.overshootEV, event.crossings);
    }
    if (metrics.hasTarget)
    {
        std::fprintf(pFile, "final luma error vs the library's target: %.2f %%\n", metrics.finalLumaError * 100.0);
    }
    else
    {
        std::fprintf(pFile, "final luma error vs the library's target: unknown (no target)\n");
    }
    if (metrics.flickerChecked > 0)
    {
        std::fprintf(pFile, "anti-flicker: %u of %u times of a period or more off its multiples (%s)\n",
                     metrics.flickerViolations, metrics.flickerChecked,
                     (0 == metrics.flickerViolations) ? "compliant" : "NOT compliant");
    }
    if (metrics.lockedFrames > 0)
    {
        std::fprintf(pFile, "AE lock: %u locked frames, %u with a changed exposure\n", metrics.lockedFrames,
                     metrics.lockViolations);
    }
    if (metrics.hasEVCompensation)
    {
        std::fprintf(pFile, "EV compensation: settled luma off 2^EV by at most %.2f %%\n",
                     metrics.evCompensationError * 100.0);
    }
    if (metrics.manualFrames > 0)
    {
        std::fprintf(pFile, "manual: %u manual frames, %u not as requested\n", metrics.manualFrames,
                     metrics.manualViolations);
    }
    std::fprintf(pFile, "exposure time used: %.3f .. %.3f ms; gain used: %.3f .. %.3f\n",
                 static_cast<double>(metrics.minTime) / 1e6, static_cast<double>(metrics.maxTime) / 1e6,
                 static_cast<double>(metrics.minGain), static_cast<double>(metrics.maxGain));
}

void PrintSnapshots(FILE* pFile, const std::vector<SimSnapshotResult>& snapshots)
{
    for (const SimSnapshotResult& snapshot : snapshots)
    {
        std::fprintf(pFile, "%s at frame %u: result %d, %.3f ms, gain %.3f, ISO %u\n", snapshot.label.c_str(),
                     snapshot.frame, snapshot.result, static_cast<double>(snapshot.exposureTime) / 1e6,
                     static_cast<double>(snapshot.gain), snapshot.iso);
    }
}
