// The closed loop: the library (through dlopen) chooses exposures, the simulated sensor films the scene with them.
#include "csimloop.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include "simrender.h"

namespace
{

// The one camera the simulator drives.
constexpr UINT32 kCameraId = 0;

// The simulated lens has a fixed aperture, so exposure is time x gain; the library's f-number (the table's nominal
// 1.0 without an iris) is not applied, and the table's sensitivity correction cancels in every ratio here.
double Sensitivity(uint64_t time, float gain)
{
    return static_cast<double>(time) * gain;
}

SimExposure ToSimExposure(const AECAlgoExposureData& data)
{
    SimExposure exposure;
    exposure.exposureTime = data.exposureTime;
    exposure.gain         = data.linearGain;
    return exposure;
}

uint32_t FlickerHz(StatisticsAntibanding mode)
{
    switch (mode)
    {
    case StatisticsAntibanding50Hz:
    case StatisticsAntibandingAuto_50HZ:
        return 50;
    case StatisticsAntibanding60Hz:
    case StatisticsAntibandingAuto_60HZ:
        return 60;
    default:
        return 0;
    }
}

} // namespace

CSimLoop::CSimLoop(const CSimScenario& scenario, const SimLoopOptions& options)
    : m_scenario(scenario), m_options(options)
{
}

void CSimLoop::SetParam(AECAlgoSetParamType type, const void* pData, uint32_t size, const std::string& what)
{
    const KDKResult result = m_harness.SetParam(m_pAlgo, type, pData, size);
    if (VelaResultSuccess != result)
    {
        m_pOutput->warnings.push_back(what + ": set parameter " + std::to_string(static_cast<int>(type)) +
                                      " refused with result " + std::to_string(result));
    }
}

bool CSimLoop::Configure(std::string* pError)
{
    m_harness.SetTuningFile(m_options.tuningPath, HostTuningLoad::Buffer);
    if (!m_harness.Load(m_options.libraryPath, pError))
    {
        return false;
    }
    KDKResult result = m_harness.Create(kCameraId, &m_pAlgo);
    if ((VelaResultSuccess != result) || (nullptr == m_pAlgo))
    {
        *pError = "create failed with result " + std::to_string(result);
        return false;
    }
    // The host's usual order: camera, sensor, pipeline delay, tuning (the store over the parameter file and the
    // mode selectors; without a store the library's fake tuning), mode.
    const StatsCameraInfo   cameraInfo = {StatsAlgoRoleDefault, kCameraId};
    const StatsSensorInfo   sensorInfo = MakeSensorInfo(m_options.sensor);
    const UINT8             delay      = static_cast<UINT8>(m_options.sensor.pipelineDelay);
    const StatsTuningData   tuning     = m_harness.Tuning().Data();
    const AECAlgoOperationModeType mode = AECAlgoOperationModeStreaming;
    SetParam(AECAlgoSetParamCameraInfo, &cameraInfo, sizeof(cameraInfo), "camera info");
    SetParam(AECAlgoSetParamSensorInfo, &sensorInfo, sizeof(sensorInfo), "sensor info");
    SetParam(AECAlgoSetParamPipelineDelay, &delay, sizeof(delay), "pipeline delay");
    SetParam(AECAlgoSetParamSorentaData, &tuning, sizeof(tuning), "tuning");
    SetParam(AECAlgoSetParamOperationMode, &mode, sizeof(mode), "operation mode");

    // Exposure compensation goes over the interface in the library's own steps per EV.
    AECAlgoEVCapabilities capabilities = {};
    AECAlgoGetParamOutput output       = {&capabilities, sizeof(capabilities), 0, AECAlgoGetParamOutputEVCapabilities};
    AECAlgoGetParam       query        = {};
    query.type                         = AECAlgoGetParamEVCapabilities;
    query.outputList                   = {&output, 1};
    result                             = m_pAlgo->AECGetParam(m_pAlgo, &query);
    if ((VelaResultSuccess == result) && (capabilities.stepsPerEV > 0))
    {
        m_evStepsPerEV = capabilities.stepsPerEV;
    }
    else
    {
        m_pOutput->warnings.push_back("EV capabilities unavailable (result " + std::to_string(result) +
                                      "): compensation sent as whole EV");
    }
    return true;
}

void CSimLoop::ApplyEvent(const SimEvent& event, uint32_t frame)
{
    const std::string what = event.Label() + " at frame " + std::to_string(frame);
    switch (event.kind)
    {
    case SimEventKind::LightStep:
    case SimEventKind::Snapshot:
        break;
    case SimEventKind::EVCompensation:
    {
        const INT32 steps = static_cast<INT32>(std::lround(event.ev * static_cast<float>(m_evStepsPerEV)));
        m_context.evCompensation = static_cast<float>(steps) / static_cast<float>(m_evStepsPerEV);
        SetParam(AECAlgoSetParamExposureCompensation, &steps, sizeof(steps), what);
        break;
    }
    case SimEventKind::AELock:
    {
        const AECAlgoLockType lock = event.on ? AECAlgoLockOn : AECAlgoLockOFF;
        m_context.locked           = event.on;
        SetParam(AECAlgoSetParamAECLock, &lock, sizeof(lock), what);
        break;
    }
    case SimEventKind::FPSRange:
    {
        const AECAlgoFPSRange range = {event.maxFPS, event.minFPS};
        SetParam(AECAlgoSetParamFPSRange, &range, sizeof(range), what);
        break;
    }
    case SimEventKind::Antibanding:
    {
        const StatisticsAntibanding mode = event.antibanding;
        m_context.flickerHz              = FlickerHz(mode);
        SetParam(AECAlgoSetParamFlickerCompensation, &mode, sizeof(mode), what);
        break;
    }
    case SimEventKind::TouchROI:
    {
        m_touchROIs.clear();
        if (event.on)
        {
            m_touchROIs.push_back({event.roi.left, event.roi.top, event.roi.width, event.roi.height, 1.0F});
        }
        const AECAlgoROIList list = {m_touchROIs.data(), static_cast<UINT32>(m_touchROIs.size())};
        SetParam(AECAlgoSetParamTouchROI, &list, sizeof(list), what);
        break;
    }
    case SimEventKind::Faces:
    {
        // Faces go in sensor pixels, as a face detector on the full frame reports them.
        UnstabilizedROIInformation faces = {};
        faces.requestID                  = frame + 1ULL;
        const float width                = static_cast<float>(m_options.sensor.width);
        const float height               = static_cast<float>(m_options.sensor.height);
        for (const SimRect& face : (event.on ? m_faces : std::vector<SimRect>()))
        {
            if (faces.roiCount >= AECORE_MAX_FACE_ROIS)
            {
                break;
            }
            StatsROIData& roi = faces.roi[faces.roiCount];
            roi.roiID         = faces.roiCount + 1;
            roi.rect          = {static_cast<UINT32>(face.left * width), static_cast<UINT32>(face.top * height),
                                 static_cast<UINT32>(face.width * width), static_cast<UINT32>(face.height * height)};
            roi.weight        = 1;
            faces.roiCount++;
        }
        if (event.on && (0 == faces.roiCount))
        {
            m_pOutput->warnings.push_back(what + ": the scene has no faces");
        }
        SetParam(AECAlgoSetParamUnstabilizedFaceROI, &faces, sizeof(faces), what);
        break;
    }
    case SimEventKind::Manual:
    {
        AECAlgoManualSetting manual = {};
        manual.manualMode           = event.manualMode;
        manual.ISOValue             = event.manualISO;
        manual.exposureTime         = event.manualTime;
        manual.gain                 = event.manualGain;
        m_context.manualMode        = event.manualMode;
        m_context.manualTime        = event.manualTime;
        m_context.manualISO         = event.manualISO;
        m_context.manualGain        = event.manualGain;
        SetParam(AECAlgoSetParamManualSetting, &manual, sizeof(manual), what);
        break;
    }
    }
}

void CSimLoop::ApplyEvents(uint32_t frame, std::vector<const SimEvent*>* pSnapshots)
{
    for (const SimEvent& event : m_scenario.Events())
    {
        if (event.frame != frame)
        {
            continue;
        }
        if (SimEventKind::Snapshot == event.kind)
        {
            pSnapshots->push_back(&event);
        }
        ApplyEvent(event, frame);
    }
}

void CSimLoop::FollowStatsConfig(CStatsGenerator* pStats)
{
    StatsBayerGridBayerExposureConfig config = {};
    AECAlgoGetParamOutput output = {&config, sizeof(config), 0, AECAlgoGetParamOutputBGStatsConfig};
    AECAlgoGetParam       query  = {};
    query.type                   = AECAlgoGetParamBGStatsConfig;
    query.outputList             = {&output, 1};
    if ((VelaResultSuccess != m_pAlgo->AECGetParam(m_pAlgo, &query)) || (0 == config.outputBitDepth))
    {
        return;
    }
    if (!m_gridMismatchReported && ((config.horizontalRegionCount != m_options.sensor.gridColumns) ||
                                    (config.verticalRegionCount != m_options.sensor.gridRows)))
    {
        // The simulated pipeline's grid is fixed by the sensor file; say so once rather than on every frame.
        m_gridMismatchReported = true;
        m_pOutput->warnings.push_back("the library asks for a " + std::to_string(config.horizontalRegionCount) +
                                      " x " + std::to_string(config.verticalRegionCount) +
                                      " grid; the sensor file's grid is kept");
    }
    // The thresholds are stated at the statistics' output depth; the generator compares raw codes.
    const uint32_t bitDepth = m_options.sensor.bitDepth;
    const uint32_t maxCode  = (1U << bitDepth) - 1U;
    uint32_t       thresholds[4];
    for (uint32_t c = 0; c < 4; c++)
    {
        const double scaled = std::ldexp(static_cast<double>(config.channelGainThreshold[c]),
                                         static_cast<int>(bitDepth) - static_cast<int>(config.outputBitDepth));
        thresholds[c]       = static_cast<uint32_t>(std::min(scaled, static_cast<double>(maxCode)));
    }
    pStats->SetSaturationThresholds(thresholds);
}

void CSimLoop::QuerySnapshot(const SimEvent& event, uint32_t frame)
{
    AECAlgoSnapshotConfig config = {};
    config.snapshotType          = event.snapshot;
    HostFrameResult result       = {};
    SimSnapshotResult snapshot;
    snapshot.frame  = frame;
    snapshot.label  = event.Label();
    snapshot.result = m_harness.QuerySnapshotExposure(m_pAlgo, config, &result);
    const AECAlgoExposureData& data = result.exposures[AECAlgoExposureSafe].exposureData;
    snapshot.exposureTime           = data.exposureTime;
    snapshot.gain                   = data.linearGain;
    snapshot.iso                    = result.frameControl.ISOValue;
    m_pOutput->snapshots.push_back(snapshot);
}

bool CSimLoop::WantsThumbnail(uint32_t frame, const std::string& events) const
{
    const std::vector<uint32_t>& frames = m_scenario.ThumbnailFrames();
    return !events.empty() || (0 == frame) || ((frame + 1) == m_scenario.Frames()) ||
           (std::find(frames.begin(), frames.end(), frame) != frames.end());
}

SimFrameRecord CSimLoop::RecordFrame(uint32_t f, float brightness, const SimExposure& applied,
                                     const HostFrameResult& frame, SimExposure* pNext)
{
    SimFrameRecord record;
    record.frame       = f;
    record.sceneEV     = std::log2(static_cast<double>(brightness));
    record.appliedTime = applied.exposureTime;
    record.appliedGain = applied.gain;
    if (VelaResultSuccess != frame.result)
    {
        // A refused frame leaves the sensor on its exposure; the record keeps no library values.
        m_pOutput->failedFrames++;
        m_pOutput->warnings.push_back("frame " + std::to_string(f) + " failed with result " +
                                      std::to_string(frame.result));
        record.chosenTime     = applied.exposureTime;
        record.chosenGain     = applied.gain;
        m_context.reportedISO = 0;
        return record;
    }
    const AECAlgoExposureData& safe = frame.exposures[AECAlgoExposureSafe].exposureData;
    *pNext                   = ToSimExposure(safe);
    record.chosenTime        = safe.exposureTime;
    record.chosenGain        = safe.linearGain;
    record.chosenSensitivity = safe.sensitivity;
    record.frameLuma         = frame.frameInfo.frameLuma;
    record.luxIndex          = frame.frameControl.luxIndex;
    record.settled           = (0 != frame.frameInfo.aecSettled);
    // The library reports how far its choice lies from its target exposure (deltaEVFromTarget, stops); luma grows
    // with sensitivity, so the target luma is this frame's luma carried from the applied exposure to the chosen one
    // and on to the target.
    const double appliedSensitivity = Sensitivity(applied.exposureTime, applied.gain);
    const double chosenSensitivity  = Sensitivity(safe.exposureTime, safe.linearGain);
    if (appliedSensitivity > 0.0)
    {
        record.targetLuma = static_cast<float>(record.frameLuma * chosenSensitivity / appliedSensitivity *
                                               std::exp2(-static_cast<double>(safe.deltaEVFromTarget)));
    }
    m_context.reportedISO = frame.frameControl.ISOValue;
    return record;
}

bool CSimLoop::Run(SimRunOutput* pOutput, std::string* pError)
{
    *pOutput                 = SimRunOutput{};
    m_pOutput                = pOutput;
    m_context                = SimFrameContext{};
    m_gridMismatchReported   = false;
    const SimSensorDesc& desc = m_options.sensor;
    // A frame cannot show an exposure chosen from its own statistics: the shortest real delay is one frame.
    const uint32_t delay       = std::max<uint32_t>(desc.pipelineDelay, 1U);
    pOutput->run.pipelineDelay = delay;
    pOutput->run.events        = m_scenario.Events();

    std::unique_ptr<ISimScene> pScene = CreateScene(m_scenario.Scene(), desc.simWidth, desc.simHeight, pError);
    if (nullptr == pScene)
    {
        return false;
    }
    m_faces = pScene->Faces();
    if (!Configure(pError))
    {
        return false;
    }

    // Frame 0's requests come before the start query, as a host sets up a session before streaming.
    std::vector<const SimEvent*> snapshots;
    ApplyEvents(0, &snapshots);
    HostFrameResult frame  = {};
    KDKResult       result = m_harness.QueryStartExposure(m_pAlgo, &frame);
    if (VelaResultSuccess != result)
    {
        *pError = "start exposure query failed with result " + std::to_string(result);
        m_harness.Destroy(m_pAlgo, kCameraId, true);
        return false;
    }
    // chosen.front() is what the sensor applies to the frame in hand: pipelineDelay frames old.
    std::deque<SimExposure> chosen(delay, ToSimExposure(frame.exposures[AECAlgoExposureSafe].exposureData));

    CSimSensor      sensor(desc, m_scenario.Seed());
    CStatsGenerator stats(desc);
    const SimFlicker flicker     = pScene->Flicker();
    const uint64_t  shortestFrame = desc.frameLines * desc.lineTimeNs;
    uint64_t        frameStartNs  = 0;
    SimImage        image;
    SimRawFrame     raw;
    float           renderedPan = -1.0F;
    float           renderedBrightness = -1.0F;
    const uint32_t  frames      = m_scenario.Frames();
    for (uint32_t f = 0; f < frames; f++)
    {
        if (0 != f)
        {
            ApplyEvents(f, &snapshots);
        }
        const float pan        = m_scenario.PanAt(f);
        const float brightness = m_scenario.BrightnessAt(f);
        if ((pan != renderedPan) || (brightness != renderedBrightness))
        {
            pScene->Render(pan, brightness, &image);
            renderedPan        = pan;
            renderedBrightness = brightness;
        }
        const SimExposure applied = chosen.front();
        sensor.Capture(image, flicker, applied, frameStartNs, &raw);
        FollowStatsConfig(&stats);
        stats.Generate(raw);

        m_harness.ClearCoreLog();
        m_harness.PrepareFrame(f + 1ULL, stats.Grid(), stats.Hist(), &frame);
        m_harness.RunPreparedFrame(m_pAlgo, &frame);

        SimExposure    next   = applied;
        SimFrameRecord record = RecordFrame(f, brightness, applied, frame, &next);
        const uint64_t duration = std::max(shortestFrame, applied.exposureTime);
        record.fps              = (duration > 0) ? static_cast<float>(1e9 / static_cast<double>(duration)) : 0.0F;
        frameStartNs += duration;

        for (const SimEvent& event : m_scenario.Events())
        {
            if (event.frame == f)
            {
                record.event += (record.event.empty() ? "" : ", ") + event.Label();
            }
        }
        for (const SimEvent* pEvent : snapshots)
        {
            QuerySnapshot(*pEvent, f);
        }
        snapshots.clear();
        if (WantsThumbnail(f, record.event))
        {
            const std::string label = "#" + std::to_string(f) + (record.event.empty() ? "" : " " + record.event);
            pOutput->thumbnails.push_back(MakeThumbnail(raw, f, m_options.thumbnailWidth, label));
        }
        pOutput->run.records.push_back(record);
        pOutput->run.contexts.push_back(m_context);

        chosen.pop_front();
        chosen.push_back(next);
        if (m_options.progress)
        {
            m_options.progress(f + 1, frames);
        }
    }
    m_harness.Destroy(m_pAlgo, kCameraId, true);
    m_pAlgo = nullptr;
    return true;
}
