// Quality metrics of a closed-loop run: settling, overshoot, target crossings, luma error, anti-flicker, lock, manual.
#include "simmetrics.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace
{

// Frames averaged for a settled luma: enough to smooth noise, few enough to stay in the settled tail.
constexpr size_t   kSettledTailFrames = 3;
constexpr uint64_t kFlickerToleranceNs = 1000;

// The frames from one set of simultaneous events up to the next set that changes anything.
struct Segment
{
    size_t      begin = 0;
    size_t      end   = 0;
    std::string label;
    bool        converging = false;
    bool        start      = false;
    bool        evChange   = false;
};

std::vector<Segment> SplitIntoSegments(const SimRunData& run)
{
    const size_t         frames = run.records.size();
    std::vector<Segment> segments;
    if (0 == frames)
    {
        return segments;
    }
    for (const SimEvent& event : run.events)
    {
        if (event.frame >= frames)
        {
            continue;
        }
        const bool snapshotOnly = (SimEventKind::Snapshot == event.kind);
        if (segments.empty() || (segments.back().begin != event.frame))
        {
            if (snapshotOnly)
            {
                // A still query changes nothing in the stream, so it does not cut the response being measured.
                continue;
            }
            Segment segment;
            segment.begin = event.frame;
            segments.push_back(segment);
        }
        Segment& segment = segments.back();
        segment.label += (segment.label.empty() ? "" : ", ") + event.Label();
        segment.converging = segment.converging || IsConvergingEvent(event, run.contexts[event.frame]);
        segment.evChange   = segment.evChange || (SimEventKind::EVCompensation == event.kind);
    }
    if (segments.empty() || (0 != segments.front().begin))
    {
        Segment start;
        start.label      = "start";
        start.converging = !run.contexts[0].locked && (AECAlgoModeAuto == run.contexts[0].manualMode);
        segments.insert(segments.begin(), start);
    }
    // Requests of frame 0 are part of the set-up: the first stretch converges from the start exposure.
    segments.front().start = true;
    for (size_t i = 0; i < segments.size(); i++)
    {
        segments[i].end = ((i + 1) < segments.size()) ? segments[i + 1].begin : frames;
    }
    return segments;
}

double SettledLuma(const std::vector<SimFrameRecord>& records, const Segment& segment)
{
    const size_t first = segment.end - std::min(kSettledTailFrames, segment.end - segment.begin);
    double       sum   = 0.0;
    for (size_t i = first; i < segment.end; i++)
    {
        sum += records[i].frameLuma;
    }
    return sum / static_cast<double>(segment.end - first);
}

int Sign(double value)
{
    return (value > 0.0) ? 1 : -1;
}

} // namespace

double LumaErrorEV(const SimFrameRecord& record)
{
    if ((record.targetLuma <= 0.0F) || (record.frameLuma <= 0.0F))
    {
        return 0.0;
    }
    return std::log2(static_cast<double>(record.frameLuma) / static_cast<double>(record.targetLuma));
}

bool IsConvergingEvent(const SimEvent& event, const SimFrameContext& context)
{
    if (context.locked || (AECAlgoModeAuto != context.manualMode))
    {
        return false;
    }
    return (SimEventKind::Snapshot != event.kind) && ((SimEventKind::AELock != event.kind) || !event.on);
}

SimEventMetrics MeasureResponse(const std::vector<SimFrameRecord>& records, size_t begin, size_t end,
                                double settleToleranceEV, double crossingBandEV)
{
    SimEventMetrics metrics;
    metrics.frame      = (begin < records.size()) ? records[begin].frame : 0;
    metrics.converging = true;
    end                = std::min(end, records.size());
    if (begin >= end)
    {
        return metrics;
    }
    // Settled from the first frame after which the error stays inside the tolerance to the end.
    size_t settle = end;
    while ((settle > begin) && (std::fabs(LumaErrorEV(records[settle - 1])) <= settleToleranceEV))
    {
        settle--;
    }
    metrics.settleFrames = (settle < end) ? static_cast<int32_t>(settle - begin) : -1;

    // Overshoot and crossings are judged against the target the response ends at, so that a target that moves
    // for a frame or two (a face appearing, a metering switch) does not count as luma going past it.
    const size_t tail        = end - std::min(kSettledTailFrames, end - begin);
    double       finalTarget = 0.0;
    for (size_t i = tail; i < end; i++)
    {
        finalTarget += records[i].targetLuma;
    }
    finalTarget /= static_cast<double>(end - tail);
    auto errorToFinal = [&records, finalTarget](size_t i) {
        return ((finalTarget > 0.0) && (records[i].frameLuma > 0.0F))
                   ? std::log2(static_cast<double>(records[i].frameLuma) / finalTarget)
                   : 0.0;
    };
    // The approach comes from the side of the first error outside the band; errors inside it are noise.
    int firstSide = 0;
    int side      = 0;
    for (size_t i = begin; i < end; i++)
    {
        const double error = errorToFinal(i);
        if (std::fabs(error) <= crossingBandEV)
        {
            continue;
        }
        if (0 == side)
        {
            firstSide = Sign(error);
        }
        else if (Sign(error) != side)
        {
            metrics.crossings++;
        }
        side = Sign(error);
    }
    for (size_t i = begin; (i < end) && (0 != firstSide); i++)
    {
        metrics.overshootEV = std::max(metrics.overshootEV, -firstSide * errorToFinal(i));
    }
    return metrics;
}

void CheckAntiFlicker(const SimRunData& run, SimMetrics* pMetrics)
{
    for (size_t i = 0; i < run.records.size(); i++)
    {
        // The frame shows the exposure chosen pipelineDelay frames before, under the mode in force then; the
        // first frames show the start exposure, queried with the settings of frame 0.
        const size_t   chosenAt = (i >= run.pipelineDelay) ? (i - run.pipelineDelay) : 0;
        const uint32_t hz       = run.contexts[chosenAt].flickerHz;
        if (0 == hz)
        {
            continue;
        }
        const double period = 1e9 / (2.0 * hz);
        const double time   = static_cast<double>(run.records[i].appliedTime);
        if (time < (period - kFlickerToleranceNs))
        {
            continue;
        }
        pMetrics->flickerChecked++;
        const double offGrid = std::fabs(time - (std::round(time / period) * period));
        pMetrics->flickerViolations += (offGrid > kFlickerToleranceNs) ? 1 : 0;
    }
}

void CheckLock(const SimRunData& run, SimMetrics* pMetrics)
{
    const SimFrameRecord* pFirst = nullptr;
    for (size_t i = 0; i < run.records.size(); i++)
    {
        if (!run.contexts[i].locked)
        {
            pFirst = nullptr;
            continue;
        }
        const SimFrameRecord& record = run.records[i];
        if (nullptr == pFirst)
        {
            pFirst = &record;
        }
        pMetrics->lockedFrames++;
        const bool sameGain = std::fabs(record.chosenGain - pFirst->chosenGain) <= (1e-4F * pFirst->chosenGain);
        pMetrics->lockViolations += ((record.chosenTime == pFirst->chosenTime) && sameGain) ? 0 : 1;
    }
}

void CheckManual(const SimRunData& run, const SimExpectations& expect, SimMetrics* pMetrics)
{
    for (size_t i = 0; i < run.records.size(); i++)
    {
        const SimFrameContext& context = run.contexts[i];
        const SimFrameRecord&  record  = run.records[i];
        const AECAlgoModeType  mode    = context.manualMode;
        if (AECAlgoModeAuto == mode)
        {
            continue;
        }
        pMetrics->manualFrames++;
        bool honoured = true;
        if ((AECAlgoModeManualExpTime == mode) || (AECAlgoModeManualFull == mode))
        {
            const uint64_t difference = (record.chosenTime > context.manualTime) ? (record.chosenTime - context.manualTime)
                                                                                 : (context.manualTime - record.chosenTime);
            honoured = honoured && (difference <= expect.manualTimeToleranceNs);
        }
        if (((AECAlgoModeManualISO == mode) || (AECAlgoModeManualFull == mode)) && (0 != context.manualISO))
        {
            const double ratio = static_cast<double>(context.reportedISO) / static_cast<double>(context.manualISO);
            honoured           = honoured && (std::fabs(ratio - 1.0) <= expect.manualISOTolerance);
        }
        if (((AECAlgoModeManualGain == mode) || (AECAlgoModeManualFull == mode)) && (context.manualGain > 0.0F))
        {
            honoured = honoured && (std::fabs(record.chosenGain / context.manualGain - 1.0F) <= 1e-3F);
        }
        pMetrics->manualViolations += honoured ? 0 : 1;
    }
}

void CheckEVCompensation(const SimRunData& run, SimMetrics* pMetrics)
{
    const std::vector<Segment> segments = SplitIntoSegments(run);
    for (size_t s = 0; s < segments.size(); s++)
    {
        const Segment& segment = segments[s];
        const double   ev      = run.contexts[segment.end - 1].evCompensation;
        if (!segment.evChange || (0.0 == ev))
        {
            continue;
        }
        // The reference is the latest earlier stretch at EV 0 under the same light.
        const double sceneEV = run.records[segment.end - 1].sceneEV;
        for (size_t r = s; r-- > 0;)
        {
            const Segment& reference = segments[r];
            if ((0.0F == run.contexts[reference.end - 1].evCompensation) &&
                (sceneEV == run.records[reference.end - 1].sceneEV))
            {
                const double ratio = SettledLuma(run.records, segment) / SettledLuma(run.records, reference);
                pMetrics->hasEVCompensation   = true;
                pMetrics->evCompensationError = std::max(pMetrics->evCompensationError,
                                                         std::fabs(ratio / std::exp2(ev) - 1.0));
                break;
            }
        }
    }
}

SimMetrics ComputeMetrics(const SimRunData& run, const SimExpectations& expect)
{
    SimMetrics metrics;
    if (run.records.empty() || (run.contexts.size() != run.records.size()))
    {
        return metrics;
    }
    for (const Segment& segment : SplitIntoSegments(run))
    {
        SimEventMetrics event;
        if (segment.converging)
        {
            event = MeasureResponse(run.records, segment.begin, segment.end, expect.settleToleranceEV,
                                    expect.crossingBandEV);
        }
        event.frame      = run.records[segment.begin].frame;
        event.label      = segment.label;
        event.converging = segment.converging;
        event.start      = segment.start;
        metrics.events.push_back(event);
    }
    const SimFrameRecord& last = run.records.back();
    metrics.hasTarget          = last.targetLuma > 0.0F;
    metrics.finalLumaError     = metrics.hasTarget ? std::fabs(last.frameLuma / last.targetLuma - 1.0) : 0.0;
    CheckAntiFlicker(run, &metrics);
    CheckLock(run, &metrics);
    CheckManual(run, expect, &metrics);
    CheckEVCompensation(run, &metrics);

    metrics.minTime = metrics.maxTime = run.records.front().appliedTime;
    metrics.minGain = metrics.maxGain = run.records.front().appliedGain;
    for (const SimFrameRecord& record : run.records)
    {
        metrics.minTime = std::min(metrics.minTime, record.appliedTime);
        metrics.maxTime = std::max(metrics.maxTime, record.appliedTime);
        metrics.minGain = std::min(metrics.minGain, record.appliedGain);
        metrics.maxGain = std::max(metrics.maxGain, record.appliedGain);
    }
    return metrics;
}

std::vector<std::string> CheckExpectations(const SimMetrics& metrics, const SimExpectations& expect)
{
    std::vector<std::string> failures;
    char                     line[256];
    for (const SimEventMetrics& event : metrics.events)
    {
        if (!event.converging || event.start)
        {
            continue;
        }
        if (expect.maxSettleFrames && ((event.settleFrames < 0) || (event.settleFrames > *expect.maxSettleFrames)))
        {
            if (event.settleFrames < 0)
            {
                std::snprintf(line, sizeof(line), "'%s' at frame %u: never settled (limit %d frames)",
                              event.label.c_str(), event.frame, *expect.maxSettleFrames);
            }
            else
            {
                std::snprintf(line, sizeof(line), "'%s' at frame %u: settled after %d frames (limit %d)",
                              event.label.c_str(), event.frame, event.settleFrames, *expect.maxSettleFrames);
            }
            failures.emplace_back(line);
        }
        if (expect.maxCrossings && (static_cast<int32_t>(event.crossings) > *expect.maxCrossings))
        {
            std::snprintf(line, sizeof(line), "'%s' at frame %u: %u target crossings (limit %d)", event.label.c_str(),
                          event.frame, event.crossings, *expect.maxCrossings);
            failures.emplace_back(line);
        }
        if (expect.maxOvershootEV && (event.overshootEV > *expect.maxOvershootEV))
        {
            std::snprintf(line, sizeof(line), "'%s' at frame %u: overshoot %.3f EV (limit %.3f)", event.label.c_str(),
                          event.frame, event.overshootEV, *expect.maxOvershootEV);
            failures.emplace_back(line);
        }
    }
    if (expect.maxFinalLumaError)
    {
        if (!metrics.hasTarget)
        {
            failures.emplace_back("final luma error: the library's target is unknown");
        }
        else if (metrics.finalLumaError > *expect.maxFinalLumaError)
        {
            std::snprintf(line, sizeof(line), "final luma error %.1f %% (limit %.1f %%)", metrics.finalLumaError * 100.0,
                          *expect.maxFinalLumaError * 100.0);
            failures.emplace_back(line);
        }
    }
    if (expect.evCompensationTolerance)
    {
        if (!metrics.hasEVCompensation)
        {
            failures.emplace_back("EV compensation: no compensated stretch with an EV 0 reference under the same light");
        }
        else if (metrics.evCompensationError > *expect.evCompensationTolerance)
        {
            std::snprintf(line, sizeof(line), "EV compensation: settled luma off 2^EV by %.1f %% (limit %.1f %%)",
                          metrics.evCompensationError * 100.0, *expect.evCompensationTolerance * 100.0);
            failures.emplace_back(line);
        }
    }
    if (expect.lockHoldsExposure && ((0 == metrics.lockedFrames) || (0 != metrics.lockViolations)))
    {
        std::snprintf(line, sizeof(line), "AE lock: %u of %u locked frames changed the exposure",
                      metrics.lockViolations, metrics.lockedFrames);
        failures.emplace_back(line);
    }
    if (expect.antiFlicker && ((0 == metrics.flickerChecked) || (0 != metrics.flickerViolations)))
    {
        std::snprintf(line, sizeof(line),
                      "anti-flicker: %u of %u exposure times of a flicker period or more are off its multiples",
                      metrics.flickerViolations, metrics.flickerChecked);
        failures.emplace_back(line);
    }
    if (expect.manualHonoured && ((0 == metrics.manualFrames) || (0 != metrics.manualViolations)))
    {
        std::snprintf(line, sizeof(line), "manual: %u of %u manual frames not as requested", metrics.manualViolations,
                      metrics.manualFrames);
        failures.emplace_back(line);
    }
    return failures;
}
