// Tests of aec-sim's scenario parser, run metrics, expectation checks and reports, on hand-made records.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "csimscenario.h"
#include "simmetrics.h"
#include "simreport.h"

namespace
{

// Records whose luma follows the given list against a fixed target of 50, at 10 ms and gain 1.
SimRunData MakeRun(const std::vector<float>& lumas, float target = 50.0F)
{
    SimRunData run;
    for (size_t i = 0; i < lumas.size(); i++)
    {
        SimFrameRecord record;
        record.frame       = static_cast<uint32_t>(i);
        record.frameLuma   = lumas[i];
        record.targetLuma  = target;
        record.appliedTime = record.chosenTime = 10000000;
        record.appliedGain = record.chosenGain = 1.0F;
        run.records.push_back(record);
    }
    run.contexts.assign(lumas.size(), SimFrameContext{});
    return run;
}

SimEvent MakeEvent(uint32_t frame, SimEventKind kind)
{
    SimEvent event;
    event.frame = frame;
    event.kind  = kind;
    return event;
}

bool Parse(const std::string& text, CSimScenario* pScenario, std::string* pError)
{
    return pScenario->Parse(text, "/base", pError);
}

} // namespace

// ---- Scenario parser ----

TEST(SimScenario, ParsesSceneSensorEventsAndExpectations)
{
    const std::string text = R"({
        "name": "case", "frames": 100, "sensor": "../sensors/a.json", "seed": 7,
        "scene": {"type": "hdr", "path": "maps/x.exr", "luminance": 30, "fieldOfView": 0.5, "mainsHz": 60},
        "lightSteps": [{"frame": 50, "ev": -2}, {"frame": 10, "ev": 4}],
        "events": [
            {"frame": 20, "evCompensation": 1.5},
            {"frame": 5, "antibanding": "50hz"},
            {"frame": 30, "manual": {"mode": "exposure-time", "timeUs": 8000.5}},
            {"frame": 40, "touchROI": [0.25, 0.25, 0.5, 0.5]},
            {"frame": 41, "touchROI": null},
            {"frame": 60, "fpsRange": [15, 30]},
            {"frame": 70, "snapshot": "lls"}
        ],
        "thumbnails": [3, 9],
        "expect": {"maxSettleFrames": 8, "maxCrossings": 1, "evCompensationTolerance": 0.1,
                   "antiFlicker": true, "settleToleranceEV": 0.2, "manualTimeToleranceUs": 2}
    })";
    CSimScenario scenario;
    std::string  error;
    ASSERT_TRUE(Parse(text, &scenario, &error)) << error;
    EXPECT_EQ("case", scenario.Name());
    EXPECT_EQ(100U, scenario.Frames());
    EXPECT_EQ(7U, scenario.Seed());
    EXPECT_EQ("/base/../sensors/a.json", scenario.SensorPath());
    EXPECT_EQ("hdr", scenario.Scene().type);
    EXPECT_EQ("/base/maps/x.exr", scenario.Scene().path);
    EXPECT_FLOAT_EQ(30.0F, scenario.Scene().luminance);
    EXPECT_FLOAT_EQ(0.5F, scenario.Scene().fieldOfView);
    EXPECT_EQ(60U, scenario.Scene().mainsHz);
    EXPECT_EQ((std::vector<uint32_t>{3, 9}), scenario.ThumbnailFrames());

    const std::vector<SimEvent>& events = scenario.Events();
    ASSERT_EQ(9U, events.size());
    // Sorted by frame.
    for (size_t i = 1; i < events.size(); i++)
    {
        EXPECT_LE(events[i - 1].frame, events[i].frame);
    }
    EXPECT_EQ(SimEventKind::Antibanding, events[0].kind);
    EXPECT_EQ(StatisticsAntibanding50Hz, events[0].antibanding);
    EXPECT_EQ(SimEventKind::LightStep, events[1].kind);
    EXPECT_FLOAT_EQ(4.0F, events[1].ev);
    EXPECT_EQ(SimEventKind::EVCompensation, events[2].kind);
    EXPECT_FLOAT_EQ(1.5F, events[2].ev);
    EXPECT_EQ(SimEventKind::Manual, events[3].kind);
    EXPECT_EQ(AECAlgoModeManualExpTime, events[3].manualMode);
    EXPECT_EQ(8000500U, events[3].manualTime);
    EXPECT_TRUE(events[4].on);
    EXPECT_FLOAT_EQ(0.25F, events[4].roi.left);
    EXPECT_FALSE(events[5].on);
    EXPECT_FLOAT_EQ(15.0F, events[7].minFPS);
    EXPECT_FLOAT_EQ(30.0F, events[7].maxFPS);
    EXPECT_EQ(AECAlgoSnapshotLLS, events[8].snapshot);

    const SimExpectations& expect = scenario.Expect();
    EXPECT_EQ(8, expect.maxSettleFrames.value_or(-1));
    EXPECT_EQ(1, expect.maxCrossings.value_or(-1));
    EXPECT_FALSE(expect.maxOvershootEV.has_value());
    EXPECT_DOUBLE_EQ(0.1, expect.evCompensationTolerance.value_or(0.0));
    EXPECT_TRUE(expect.antiFlicker);
    EXPECT_FALSE(expect.lockHoldsExposure);
    EXPECT_DOUBLE_EQ(0.2, expect.settleToleranceEV);
    EXPECT_EQ(2000U, expect.manualTimeToleranceNs);
}

TEST(SimScenario, OneEventObjectMayCarrySeveralRequests)
{
    CSimScenario scenario;
    std::string  error;
    ASSERT_TRUE(Parse(R"({"frames": 10, "events": [{"frame": 2, "aeLock": true, "faces": true}]})", &scenario, &error))
        << error;
    ASSERT_EQ(2U, scenario.Events().size());
    EXPECT_EQ(SimEventKind::AELock, scenario.Events()[0].kind);
    EXPECT_EQ(SimEventKind::Faces, scenario.Events()[1].kind);
    EXPECT_EQ("AE lock", scenario.Events()[0].Label());
    EXPECT_EQ("faces", scenario.Events()[1].Label());
}

TEST(SimScenario, LabelsNameTheRequest)
{
    SimEvent light = MakeEvent(0, SimEventKind::LightStep);
    light.ev       = 4.0F;
    EXPECT_EQ("light +4EV", light.Label());
    SimEvent ev = MakeEvent(0, SimEventKind::EVCompensation);
    ev.ev       = -2.0F;
    EXPECT_EQ("EV comp -2EV", ev.Label());
    SimEvent band    = MakeEvent(0, SimEventKind::Antibanding);
    band.antibanding = StatisticsAntibanding60Hz;
    EXPECT_EQ("antibanding 60Hz", band.Label());
    SimEvent manual   = MakeEvent(0, SimEventKind::Manual);
    manual.manualMode = AECAlgoModeManualISO;
    manual.manualISO  = 400;
    EXPECT_EQ("manual ISO 400", manual.Label());
}

TEST(SimScenario, BrightnessAddsTheLightStepsDueByAFrame)
{
    CSimScenario scenario;
    std::string  error;
    ASSERT_TRUE(Parse(R"({"frames": 100, "lightSteps": [{"frame": 10, "ev": 2}, {"frame": 20, "ev": -3}]})",
                      &scenario, &error))
        << error;
    EXPECT_FLOAT_EQ(1.0F, scenario.BrightnessAt(9));
    EXPECT_FLOAT_EQ(4.0F, scenario.BrightnessAt(10));
    EXPECT_FLOAT_EQ(4.0F, scenario.BrightnessAt(19));
    EXPECT_FLOAT_EQ(0.5F, scenario.BrightnessAt(20));
}

TEST(SimScenario, PanFollowsKeysOrSweepsTheRun)
{
    CSimScenario keyed;
    std::string  error;
    ASSERT_TRUE(Parse(R"({"frames": 100, "pans": [{"frame": 60, "position": 0.8}, {"frame": 20, "position": 0.4}]})",
                      &keyed, &error))
        << error;
    EXPECT_FLOAT_EQ(0.4F, keyed.PanAt(0));
    EXPECT_FLOAT_EQ(0.4F, keyed.PanAt(20));
    EXPECT_FLOAT_EQ(0.6F, keyed.PanAt(40));
    EXPECT_FLOAT_EQ(0.8F, keyed.PanAt(99));

    CSimScenario sweep;
    ASSERT_TRUE(Parse(R"({"frames": 11, "scene": {"panStart": 0.0, "panEnd": 1.0}})", &sweep, &error)) << error;
    EXPECT_FLOAT_EQ(0.0F, sweep.PanAt(0));
    EXPECT_FLOAT_EQ(0.5F, sweep.PanAt(5));
    EXPECT_FLOAT_EQ(1.0F, sweep.PanAt(10));
}

TEST(SimScenario, RejectsWhatItCannotRun)
{
    const char* const bad[] = {
        "not json",
        R"({"frames": 0})",
        R"({"frames": 10, "events": [{"frame": 10, "aeLock": true}]})",
        R"({"frames": 10, "events": [{"frame": 1}]})",
        R"({"frames": 10, "events": [{"aeLock": true}]})",
        R"({"frames": 10, "events": [{"frame": 1, "antibanding": "100hz"}]})",
        R"({"frames": 10, "events": [{"frame": 1, "touchROI": [0.8, 0.8, 0.5, 0.5]}]})",
        R"({"frames": 10, "events": [{"frame": 1, "fpsRange": [30, 15]}]})",
        R"({"frames": 10, "events": [{"frame": 1, "manual": {"mode": "shutter"}}]})",
        R"({"frames": 10, "events": [{"frame": 1, "snapshot": "hdr"}]})",
        R"({"frames": 10, "expect": {"maxSettleFrame": 8}})",
        R"({"frames": "10"})",
        R"({"frames": 10, "lightSteps": [{"frame": 1}]})",
    };
    for (const char* pText : bad)
    {
        CSimScenario scenario;
        std::string  error;
        EXPECT_FALSE(Parse(pText, &scenario, &error)) << pText;
        EXPECT_FALSE(error.empty()) << pText;
    }
}

TEST(SimScenario, EveryShippedScenarioLoads)
{
    const std::filesystem::path folder = std::filesystem::path(AECSIM_SOURCE_DIR) / "sim" / "scenarios";
    size_t                      count  = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
    {
        if (entry.path().extension() != ".json")
        {
            continue;
        }
        CSimScenario scenario;
        std::string  error;
        EXPECT_TRUE(scenario.Load(entry.path().string(), &error)) << error;
        EXPECT_EQ(entry.path().stem().string(), scenario.Name());
        EXPECT_TRUE(std::filesystem::exists(scenario.SensorPath())) << scenario.SensorPath();
        count++;
    }
    EXPECT_GE(count, 8U);
}

// ---- Metrics ----

TEST(SimMetrics, LumaErrorIsInStopsAndZeroWithoutTarget)
{
    SimFrameRecord record;
    record.frameLuma  = 100.0F;
    record.targetLuma = 50.0F;
    EXPECT_DOUBLE_EQ(1.0, LumaErrorEV(record));
    record.frameLuma = 25.0F;
    EXPECT_DOUBLE_EQ(-1.0, LumaErrorEV(record));
    record.targetLuma = 0.0F;
    EXPECT_DOUBLE_EQ(0.0, LumaErrorEV(record));
}

TEST(SimMetrics, ResponseCountsSettleFramesOvershootAndCrossings)
{
    // From 4x too bright down past the target (0.5 EV under), then back within tolerance.
    const SimRunData run = MakeRun({200.0F, 200.0F, 100.0F, 35.3553F, 45.0F, 50.0F, 50.0F, 50.0F});
    const SimEventMetrics m = MeasureResponse(run.records, 0, run.records.size(), 0.15, 0.05);
    EXPECT_EQ(5, m.settleFrames); // 45 is 0.152 EV under: frame 5 is the first that stays within 0.15 EV
    EXPECT_NEAR(0.5, m.overshootEV, 1e-4);
    EXPECT_EQ(1U, m.crossings);
}

TEST(SimMetrics, ResponseThatEndsOutsideToleranceNeverSettles)
{
    const SimRunData      run = MakeRun({20.0F, 30.0F, 40.0F, 42.0F});
    const SimEventMetrics m   = MeasureResponse(run.records, 0, run.records.size(), 0.15, 0.05);
    EXPECT_EQ(-1, m.settleFrames);
    EXPECT_DOUBLE_EQ(0.0, m.overshootEV);
    EXPECT_EQ(0U, m.crossings);
}

TEST(SimMetrics, NoiseInsideTheBandIsNoCrossing)
{
    const SimRunData      run = MakeRun({25.0F, 51.0F, 49.0F, 51.0F, 49.0F, 50.0F});
    const SimEventMetrics m   = MeasureResponse(run.records, 0, run.records.size(), 0.15, 0.05);
    EXPECT_EQ(0U, m.crossings);
    EXPECT_EQ(1, m.settleFrames);
    EXPECT_LT(m.overshootEV, 0.05);
}

TEST(SimMetrics, ATargetThatMovesForAFrameIsNoOvershoot)
{
    SimRunData run            = MakeRun({25.0F, 35.0F, 45.0F, 50.0F, 50.0F, 50.0F});
    run.records[1].targetLuma = 200.0F;
    const SimEventMetrics m   = MeasureResponse(run.records, 0, run.records.size(), 0.15, 0.05);
    EXPECT_DOUBLE_EQ(0.0, m.overshootEV);
    EXPECT_EQ(0U, m.crossings);
    EXPECT_EQ(3, m.settleFrames);
}

TEST(SimMetrics, AntiFlickerAcceptsOnlyWholePeriodsAboveOnePeriod)
{
    SimRunData run = MakeRun(std::vector<float>(6, 50.0F));
    run.pipelineDelay = 1;
    const uint64_t times[] = {15000000, 5000000, 10000000, 20000500, 15000000, 30001500};
    for (size_t i = 0; i < run.records.size(); i++)
    {
        run.records[i].appliedTime = times[i];
        run.contexts[i].flickerHz  = 50;
    }
    // The mode set at frame 0 governs the start exposure too; 5 ms lies below one 10 ms period.
    SimMetrics metrics;
    CheckAntiFlicker(run, &metrics);
    EXPECT_EQ(5U, metrics.flickerChecked);
    EXPECT_EQ(3U, metrics.flickerViolations); // 15 ms twice and 30.0015 ms

    // An exposure chosen before the mode was set is not held against it.
    run.contexts[0].flickerHz = 0;
    run.contexts[1].flickerHz = 0;
    SimMetrics later;
    CheckAntiFlicker(run, &later);
    EXPECT_EQ(3U, later.flickerChecked);
    EXPECT_EQ(2U, later.flickerViolations);
}

TEST(SimMetrics, AntiFlicker60HzUsesItsOwnPeriod)
{
    SimRunData     run     = MakeRun(std::vector<float>(3, 50.0F));
    const uint64_t times[] = {8333333, 16666666, 10000000};
    for (size_t i = 0; i < run.records.size(); i++)
    {
        run.records[i].appliedTime = times[i];
        run.contexts[i].flickerHz  = 60;
    }
    SimMetrics metrics;
    CheckAntiFlicker(run, &metrics);
    EXPECT_EQ(3U, metrics.flickerChecked);
    EXPECT_EQ(1U, metrics.flickerViolations);
}

TEST(SimMetrics, LockHoldsTheFirstLockedExposure)
{
    SimRunData run = MakeRun(std::vector<float>(6, 50.0F));
    for (size_t i = 1; i < 5; i++)
    {
        run.contexts[i].locked = true;
    }
    run.records[0].chosenTime = 5000000; // before the lock: free to differ
    SimMetrics held;
    CheckLock(run, &held);
    EXPECT_EQ(4U, held.lockedFrames);
    EXPECT_EQ(0U, held.lockViolations);

    run.records[3].chosenGain = 1.5F;
    SimMetrics moved;
    CheckLock(run, &moved);
    EXPECT_EQ(1U, moved.lockViolations);
}

TEST(SimMetrics, ManualChecksTimeIsoAndGain)
{
    SimRunData run = MakeRun(std::vector<float>(4, 50.0F));
    run.contexts[0].manualMode = AECAlgoModeManualExpTime;
    run.contexts[0].manualTime = 10000000;
    run.contexts[1].manualMode = AECAlgoModeManualExpTime;
    run.contexts[1].manualTime = 10002000; // 2 us off the chosen 10 ms
    run.contexts[2].manualMode = AECAlgoModeManualISO;
    run.contexts[2].manualISO  = 400;
    run.contexts[2].reportedISO = 412; // 3 %
    run.contexts[3].manualMode = AECAlgoModeManualGain;
    run.contexts[3].manualGain = 2.0F;
    SimExpectations expect;
    SimMetrics      metrics;
    CheckManual(run, expect, &metrics);
    EXPECT_EQ(4U, metrics.manualFrames);
    EXPECT_EQ(2U, metrics.manualViolations); // the 2 us time and the gain of 1.0
}

TEST(SimMetrics, EVCompensationComparesWithTheSettledLumaAtEVZero)
{
    SimRunData run = MakeRun({50, 50, 50, 100, 100, 100, 30, 30, 30});
    run.events.push_back(MakeEvent(3, SimEventKind::EVCompensation));
    run.events.back().ev = 1.0F;
    run.events.push_back(MakeEvent(6, SimEventKind::EVCompensation));
    run.events.back().ev = -1.0F;
    for (size_t i = 3; i < 6; i++)
    {
        run.contexts[i].evCompensation = 1.0F;
    }
    for (size_t i = 6; i < 9; i++)
    {
        run.contexts[i].evCompensation = -1.0F;
    }
    SimMetrics metrics;
    CheckEVCompensation(run, &metrics);
    EXPECT_TRUE(metrics.hasEVCompensation);
    EXPECT_NEAR(0.2, metrics.evCompensationError, 1e-9); // 30 against 25 at -1 EV; +1 EV is exact
}

TEST(SimMetrics, EVCompensationNeedsAReferenceUnderTheSameLight)
{
    SimRunData run = MakeRun({50, 50, 100, 100});
    run.events.push_back(MakeEvent(2, SimEventKind::EVCompensation));
    run.events.back().ev = 1.0F;
    run.contexts[2].evCompensation = run.contexts[3].evCompensation = 1.0F;
    run.records[2].sceneEV = run.records[3].sceneEV = 1.0;
    SimMetrics metrics;
    CheckEVCompensation(run, &metrics);
    EXPECT_FALSE(metrics.hasEVCompensation);
}

TEST(SimMetrics, SegmentsSkipStillQueriesAndLockedEvents)
{
    SimRunData run = MakeRun({200, 100, 50, 50, 50, 50, 50, 50});
    run.events.push_back(MakeEvent(1, SimEventKind::Snapshot));
    run.events.push_back(MakeEvent(4, SimEventKind::AELock));
    run.events.back().on = true;
    for (size_t i = 4; i < 8; i++)
    {
        run.contexts[i].locked = true;
    }
    run.events.push_back(MakeEvent(6, SimEventKind::LightStep));
    run.events.back().ev = 1.0F;
    SimExpectations expect;
    const SimMetrics metrics = ComputeMetrics(run, expect);
    ASSERT_EQ(3U, metrics.events.size());
    EXPECT_EQ("start", metrics.events[0].label);
    EXPECT_TRUE(metrics.events[0].start);
    EXPECT_EQ(2, metrics.events[0].settleFrames);
    EXPECT_EQ("AE lock", metrics.events[1].label);
    EXPECT_FALSE(metrics.events[1].converging);
    EXPECT_EQ("light +1EV", metrics.events[2].label);
    EXPECT_FALSE(metrics.events[2].converging); // while locked
    EXPECT_EQ(4U, metrics.lockedFrames);
    EXPECT_EQ(10000000U, metrics.minTime);
    EXPECT_FLOAT_EQ(1.0F, metrics.maxGain);
}

TEST(SimMetrics, ExpectationsReportEachMiss)
{
    SimRunData run = MakeRun({50, 50, 200, 200, 200, 200, 200, 100});
    run.events.push_back(MakeEvent(2, SimEventKind::LightStep));
    run.events.back().ev = 2.0F;
    SimExpectations expect;
    expect.maxSettleFrames   = 3;
    expect.maxFinalLumaError = 0.1;
    expect.antiFlicker       = true;
    expect.lockHoldsExposure = true;
    const SimMetrics               metrics  = ComputeMetrics(run, expect);
    const std::vector<std::string> failures = CheckExpectations(metrics, expect);
    ASSERT_EQ(4U, failures.size());
    EXPECT_NE(std::string::npos, failures[0].find("never settled"));
    EXPECT_NE(std::string::npos, failures[1].find("final luma error 100.0 %"));
    EXPECT_NE(std::string::npos, failures[2].find("AE lock"));
    EXPECT_NE(std::string::npos, failures[3].find("anti-flicker: 0 of 0"));
}

TEST(SimMetrics, ExpectationsMetGiveNoFailures)
{
    SimRunData run = MakeRun({50, 50, 200, 100, 50, 50, 50, 50});
    run.events.push_back(MakeEvent(2, SimEventKind::LightStep));
    run.events.back().ev = 2.0F;
    SimExpectations expect;
    expect.maxSettleFrames   = 3;
    expect.maxCrossings      = 0;
    expect.maxOvershootEV    = 0.1;
    expect.maxFinalLumaError = 0.01;
    EXPECT_TRUE(CheckExpectations(ComputeMetrics(run, expect), expect).empty());
}

// ---- Reports ----

TEST(SimReport, CsvHasAHeaderAndOneQuotedLinePerFrame)
{
    SimRunData run          = MakeRun({40.0F, 50.0F});
    run.records[1].event    = "AE lock, light +1EV";
    run.contexts[1].locked  = true;
    const std::string path  = (std::filesystem::temp_directory_path() / "aecsim_run_test_frames.csv").string();
    std::string       error;
    ASSERT_TRUE(WriteFramesCsv(path, run, &error)) << error;
    std::ifstream            file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
    {
        lines.push_back(line);
    }
    std::filesystem::remove(path);
    ASSERT_EQ(3U, lines.size());
    EXPECT_EQ(0U, lines[0].find("frame,scene_ev,applied_time_ns"));
    EXPECT_EQ(0U, lines[1].find("0,0.000,10000000,1.0000"));
    EXPECT_NE(std::string::npos, lines[2].find(",1,0.00,auto,0,\"AE lock, light +1EV\""));
}

TEST(SimReport, CsvFailsOnAnUnwritablePath)
{
    std::string error;
    EXPECT_FALSE(WriteFramesCsv("/nonexistent-folder/frames.csv", MakeRun({50.0F}), &error));
    EXPECT_FALSE(error.empty());
}

TEST(SimReport, ProgressBarFillsAndEndsTheLine)
{
    FILE* pFile = std::tmpfile();
    ASSERT_NE(nullptr, pFile);
    PrintProgress(pFile, 5, 10);
    PrintProgress(pFile, 10, 10);
    std::rewind(pFile);
    char        buffer[512] = {};
    const size_t read       = std::fread(buffer, 1, sizeof(buffer) - 1, pFile);
    std::fclose(pFile);
    const std::string text(buffer, read);
    EXPECT_NE(std::string::npos, text.find("\r[" + std::string(20, '#') + std::string(20, ' ') + "] 5/10 frames"));
    EXPECT_NE(std::string::npos, text.find("\r[" + std::string(40, '#') + "] 10/10 frames\n"));
}

TEST(SimReport, NoProgressBarWhenQuietOrShort)
{
    EXPECT_FALSE(WantsProgressBar(10000, true));
    EXPECT_FALSE(WantsProgressBar(10, false));
}
