// Reads simulator scenarios (JSON): scene, sensor, light steps, pans, host events and the regression thresholds.
#include "csimscenario.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>

#include <nlohmann/json.hpp>

namespace
{

using Json = nlohmann::json;

// The parser runs without exceptions: every member is type-checked before it is read.
bool ReadNumber(const Json& object, const char* pKey, double* pValue, std::string* pError)
{
    auto it = object.find(pKey);
    if (it == object.end())
    {
        return true;
    }
    if (!it->is_number())
    {
        *pError = std::string("'") + pKey + "' must be a number";
        return false;
    }
    *pValue = it->get<double>();
    return true;
}

bool ReadFloat(const Json& object, const char* pKey, float* pValue, std::string* pError)
{
    double value = *pValue;
    bool   ok    = ReadNumber(object, pKey, &value, pError);
    *pValue      = static_cast<float>(value);
    return ok;
}

bool ReadUnsigned(const Json& object, const char* pKey, uint32_t* pValue, std::string* pError)
{
    double value = *pValue;
    if (!ReadNumber(object, pKey, &value, pError))
    {
        return false;
    }
    if ((value < 0.0) || (value > 4294967295.0) || (value != std::floor(value)))
    {
        *pError = std::string("'") + pKey + "' must be a whole number >= 0";
        return false;
    }
    *pValue = static_cast<uint32_t>(value);
    return true;
}

bool ReadString(const Json& object, const char* pKey, std::string* pValue, std::string* pError)
{
    auto it = object.find(pKey);
    if (it == object.end())
    {
        return true;
    }
    if (!it->is_string())
    {
        *pError = std::string("'") + pKey + "' must be a string";
        return false;
    }
    *pValue = it->get<std::string>();
    return true;
}

bool ReadBool(const Json& object, const char* pKey, bool* pValue, std::string* pError)
{
    auto it = object.find(pKey);
    if (it == object.end())
    {
        return true;
    }
    if (!it->is_boolean())
    {
        *pError = std::string("'") + pKey + "' must be true or false";
        return false;
    }
    *pValue = it->get<bool>();
    return true;
}

// A rectangle as [left, top, width, height] in fractions of the frame.
bool ReadRect(const Json& value, SimRect* pRect, std::string* pError)
{
    if (!value.is_array() || (4 != value.size()) ||
        !std::all_of(value.begin(), value.end(), [](const Json& v) { return v.is_number(); }))
    {
        *pError = "a rectangle is [left, top, width, height] in fractions of the frame";
        return false;
    }
    *pRect = {value[0].get<float>(), value[1].get<float>(), value[2].get<float>(), value[3].get<float>()};
    if ((pRect->left < 0.0F) || (pRect->top < 0.0F) || (pRect->width <= 0.0F) || (pRect->height <= 0.0F) ||
        ((pRect->left + pRect->width) > 1.0F) || ((pRect->top + pRect->height) > 1.0F))
    {
        *pError = "a rectangle must lie inside the frame";
        return false;
    }
    return true;
}

bool ReadScene(const Json& scene, SimSceneSpec* pSpec, std::string* pError)
{
    if (!scene.is_object())
    {
        *pError = "'scene' must be an object";
        return false;
    }
    return ReadString(scene, "type", &pSpec->type, pError) && ReadString(scene, "path", &pSpec->path, pError) &&
           ReadFloat(scene, "luminance", &pSpec->luminance, pError) &&
           ReadFloat(scene, "panStart", &pSpec->panStart, pError) &&
           ReadFloat(scene, "panEnd", &pSpec->panEnd, pError) &&
           ReadFloat(scene, "fieldOfView", &pSpec->fieldOfView, pError) &&
           ReadUnsigned(scene, "mainsHz", &pSpec->mainsHz, pError);
}

bool ParseAntibanding(const std::string& text, StatisticsAntibanding* pMode)
{
    static const struct
    {
        const char*           pName;
        StatisticsAntibanding mode;
    } s_modes[] = {{"off", StatisticsAntibandingOff},   {"50hz", StatisticsAntibanding50Hz},
                   {"60hz", StatisticsAntibanding60Hz}, {"auto", StatisticsAntibandingAuto},
                   {"auto-50hz", StatisticsAntibandingAuto_50HZ}, {"auto-60hz", StatisticsAntibandingAuto_60HZ}};
    for (const auto& entry : s_modes)
    {
        if (text == entry.pName)
        {
            *pMode = entry.mode;
            return true;
        }
    }
    return false;
}

bool ParseSnapshot(const std::string& text, AECAlgoSnapshotType* pType)
{
    static const struct
    {
        const char*         pName;
        AECAlgoSnapshotType type;
    } s_types[] = {{"normal", AECAlgoSnapshotNormal}, {"flash", AECAlgoSnapshotFlash}, {"lls", AECAlgoSnapshotLLS},
                   {"zll", AECAlgoSnapshotZLL}};
    for (const auto& entry : s_types)
    {
        if (text == entry.pName)
        {
            *pType = entry.type;
            return true;
        }
    }
    return false;
}

bool ParseManualMode(const std::string& text, AECAlgoModeType* pMode)
{
    static const struct
    {
        const char*     pName;
        AECAlgoModeType mode;
    } s_modes[] = {{"auto", AECAlgoModeAuto}, {"iso", AECAlgoModeManualISO}, {"gain", AECAlgoModeManualGain},
                   {"exposure-time", AECAlgoModeManualExpTime}, {"full", AECAlgoModeManualFull}};
    for (const auto& entry : s_modes)
    {
        if (text == entry.pName)
        {
            *pMode = entry.mode;
            return true;
        }
    }
    return false;
}

bool ReadManual(const Json& value, SimEvent* pEvent, std::string* pError)
{
    std::string mode = "auto";
    double      timeUs = 0.0;
    if (!value.is_object() || !ReadString(value, "mode", &mode, pError) ||
        !ReadNumber(value, "timeUs", &timeUs, pError) || !ReadUnsigned(value, "iso", &pEvent->manualISO, pError) ||
        !ReadFloat(value, "gain", &pEvent->manualGain, pError))
    {
        if (pError->empty())
        {
            *pError = "'manual' must be an object {mode, timeUs, iso, gain}";
        }
        return false;
    }
    if (!ParseManualMode(mode, &pEvent->manualMode))
    {
        *pError = "manual mode '" + mode + "' is not auto, iso, gain, exposure-time or full";
        return false;
    }
    if (timeUs < 0.0)
    {
        *pError = "'timeUs' must not be negative";
        return false;
    }
    pEvent->manualTime = static_cast<uint64_t>(std::llround(timeUs * 1000.0));
    return true;
}

// One event object may carry several requests; each becomes its own event, in a fixed order.
bool ReadEvent(const Json& object, std::vector<SimEvent>* pEvents, std::string* pError)
{
    SimEvent base;
    if (!object.is_object() || !object.contains("frame") || !ReadUnsigned(object, "frame", &base.frame, pError))
    {
        if (pError->empty())
        {
            *pError = "every event needs a 'frame'";
        }
        return false;
    }
    const size_t before = pEvents->size();
    if (object.contains("evCompensation"))
    {
        SimEvent event = base;
        event.kind     = SimEventKind::EVCompensation;
        if (!ReadFloat(object, "evCompensation", &event.ev, pError))
        {
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("aeLock"))
    {
        SimEvent event = base;
        event.kind     = SimEventKind::AELock;
        if (!ReadBool(object, "aeLock", &event.on, pError))
        {
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("fpsRange"))
    {
        const Json& range = object["fpsRange"];
        if (!range.is_array() || (2 != range.size()) || !range[0].is_number() || !range[1].is_number() ||
            (range[0].get<float>() <= 0.0F) || (range[0].get<float>() > range[1].get<float>()))
        {
            *pError = "'fpsRange' is [min, max] with 0 < min <= max";
            return false;
        }
        SimEvent event = base;
        event.kind     = SimEventKind::FPSRange;
        event.minFPS   = range[0].get<float>();
        event.maxFPS   = range[1].get<float>();
        pEvents->push_back(event);
    }
    if (object.contains("antibanding"))
    {
        SimEvent    event = base;
        std::string mode;
        event.kind = SimEventKind::Antibanding;
        if (!ReadString(object, "antibanding", &mode, pError))
        {
            return false;
        }
        if (!ParseAntibanding(mode, &event.antibanding))
        {
            *pError = "antibanding '" + mode + "' is not off, 50hz, 60hz, auto, auto-50hz or auto-60hz";
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("touchROI"))
    {
        SimEvent event = base;
        event.kind     = SimEventKind::TouchROI;
        event.on       = !object["touchROI"].is_null();
        if (event.on && !ReadRect(object["touchROI"], &event.roi, pError))
        {
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("faces"))
    {
        SimEvent event = base;
        event.kind     = SimEventKind::Faces;
        if (!ReadBool(object, "faces", &event.on, pError))
        {
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("manual"))
    {
        SimEvent event = base;
        event.kind     = SimEventKind::Manual;
        if (!ReadManual(object["manual"], &event, pError))
        {
            return false;
        }
        pEvents->push_back(event);
    }
    if (object.contains("snapshot"))
    {
        SimEvent    event = base;
        std::string type;
        event.kind = SimEventKind::Snapshot;
        if (!ReadString(object, "snapshot", &type, pError))
        {
            return false;
        }
        if (!ParseSnapshot(type, &event.snapshot))
        {
            *pError = "snapshot '" + type + "' is not normal, flash, lls or zll";
            return false;
        }
        pEvents->push_back(event);
    }
    if (pEvents->size() == before)
    {
        *pError = "an event at frame " + std::to_string(base.frame) + " requests nothing";
        return false;
    }
    return true;
}

bool ReadExpectations(const Json& object, SimExpectations* pExpect, std::string* pError)
{
    if (!object.is_object())
    {
        *pError = "'expect' must be an object";
        return false;
    }
    static const char* const s_known[] = {"maxSettleFrames", "maxCrossings", "maxOvershootEV", "maxFinalLumaError",
                                          "evCompensationTolerance", "lockHoldsExposure", "antiFlicker",
                                          "manualHonoured", "settleToleranceEV", "crossingBandEV",
                                          "manualTimeToleranceUs", "manualISOTolerance"};
    for (auto it = object.begin(); it != object.end(); ++it)
    {
        if (std::none_of(std::begin(s_known), std::end(s_known), [&](const char* p) { return it.key() == p; }))
        {
            // A misspelt threshold would silently go unchecked.
            *pError = "unknown expectation '" + it.key() + "'";
            return false;
        }
    }
    double value = 0.0;
    const struct
    {
        const char*            pKey;
        std::optional<double>* pTarget;
    } doubles[] = {{"maxOvershootEV", &pExpect->maxOvershootEV},
                   {"maxFinalLumaError", &pExpect->maxFinalLumaError},
                   {"evCompensationTolerance", &pExpect->evCompensationTolerance}};
    for (const auto& entry : doubles)
    {
        if (object.contains(entry.pKey))
        {
            if (!ReadNumber(object, entry.pKey, &value, pError))
            {
                return false;
            }
            *entry.pTarget = value;
        }
    }
    const struct
    {
        const char*             pKey;
        std::optional<int32_t>* pTarget;
    } counts[] = {{"maxSettleFrames", &pExpect->maxSettleFrames}, {"maxCrossings", &pExpect->maxCrossings}};
    for (const auto& entry : counts)
    {
        uint32_t count = 0;
        if (object.contains(entry.pKey))
        {
            if (!ReadUnsigned(object, entry.pKey, &count, pError))
            {
                return false;
            }
            *entry.pTarget = static_cast<int32_t>(count);
        }
    }
    double timeToleranceUs = static_cast<double>(pExpect->manualTimeToleranceNs) / 1000.0;
    if (!ReadBool(object, "lockHoldsExposure", &pExpect->lockHoldsExposure, pError) ||
        !ReadBool(object, "antiFlicker", &pExpect->antiFlicker, pError) ||
        !ReadBool(object, "manualHonoured", &pExpect->manualHonoured, pError) ||
        !ReadNumber(object, "settleToleranceEV", &pExpect->settleToleranceEV, pError) ||
        !ReadNumber(object, "crossingBandEV", &pExpect->crossingBandEV, pError) ||
        !ReadNumber(object, "manualTimeToleranceUs", &timeToleranceUs, pError) ||
        !ReadNumber(object, "manualISOTolerance", &pExpect->manualISOTolerance, pError))
    {
        return false;
    }
    pExpect->manualTimeToleranceNs = static_cast<uint64_t>(std::llround(std::max(0.0, timeToleranceUs) * 1000.0));
    return true;
}

bool ReadPans(const Json& pans, std::vector<SimPanKey>* pPans, std::string* pError)
{
    if (!pans.is_array())
    {
        *pError = "'pans' must be a list of {frame, position}";
        return false;
    }
    for (const Json& entry : pans)
    {
        SimPanKey key;
        if (!entry.is_object() || !entry.contains("frame") || !entry.contains("position") ||
            !ReadUnsigned(entry, "frame", &key.frame, pError) || !ReadFloat(entry, "position", &key.position, pError))
        {
            if (pError->empty())
            {
                *pError = "a pan is {frame, position}";
            }
            return false;
        }
        pPans->push_back(key);
    }
    std::stable_sort(pPans->begin(), pPans->end(),
                     [](const SimPanKey& a, const SimPanKey& b) { return a.frame < b.frame; });
    return true;
}

std::string FormatEV(float ev)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%+gEV", static_cast<double>(ev));
    return text;
}

} // namespace

std::string SimEvent::Label() const
{
    char text[96];
    switch (kind)
    {
    case SimEventKind::LightStep:
        return "light " + FormatEV(ev);
    case SimEventKind::EVCompensation:
        return "EV comp " + FormatEV(ev);
    case SimEventKind::AELock:
        return on ? "AE lock" : "AE unlock";
    case SimEventKind::FPSRange:
        std::snprintf(text, sizeof(text), "fps %g-%g", static_cast<double>(minFPS), static_cast<double>(maxFPS));
        return text;
    case SimEventKind::Antibanding:
    {
        static const char* const s_names[] = {"off", "50Hz", "60Hz", "auto", "auto 50Hz", "auto 60Hz"};
        const int index = static_cast<int>(antibanding);
        return std::string("antibanding ") + (((index >= 0) && (index < 6)) ? s_names[index] : "?");
    }
    case SimEventKind::TouchROI:
        return on ? "touch ROI" : "touch ROI off";
    case SimEventKind::Faces:
        return on ? "faces" : "faces off";
    case SimEventKind::Manual:
        switch (manualMode)
        {
        case AECAlgoModeAuto:
            return "auto exposure";
        case AECAlgoModeManualExpTime:
            std::snprintf(text, sizeof(text), "manual %.3gms", static_cast<double>(manualTime) / 1e6);
            return text;
        case AECAlgoModeManualISO:
            std::snprintf(text, sizeof(text), "manual ISO %u", manualISO);
            return text;
        case AECAlgoModeManualGain:
            std::snprintf(text, sizeof(text), "manual gain %.3g", static_cast<double>(manualGain));
            return text;
        default:
            std::snprintf(text, sizeof(text), "manual %.3gms ISO %u", static_cast<double>(manualTime) / 1e6,
                          manualISO);
            return text;
        }
    case SimEventKind::Snapshot:
    {
        static const char* const s_names[] = {"normal", "flash", "LLS", "ZLL"};
        const int index = static_cast<int>(snapshot);
        return std::string("snapshot ") + (((index >= 0) && (index < 4)) ? s_names[index] : "?");
    }
    }
    return "?";
}

bool CSimScenario::Load(const std::string& path, std::string* pError)
{
    std::ifstream file(path);
    if (!file)
    {
        *pError = "cannot read " + path;
        return false;
    }
    std::stringstream text;
    text << file.rdbuf();
    const size_t slash   = path.find_last_of('/');
    std::string  baseDir = (std::string::npos == slash) ? std::string(".") : path.substr(0, slash);
    if (!Parse(text.str(), baseDir, pError))
    {
        *pError = path + ": " + *pError;
        return false;
    }
    if (m_name.empty())
    {
        // The file name without folder and extension names an unnamed scenario.
        std::string base = (std::string::npos == slash) ? path : path.substr(slash + 1);
        m_name           = base.substr(0, base.find_last_of('.'));
    }
    return true;
}

bool CSimScenario::Parse(const std::string& text, const std::string& baseDir, std::string* pError)
{
    pError->clear();
    const Json root = Json::parse(text, nullptr, false);
    if (root.is_discarded() || !root.is_object())
    {
        *pError = "not a JSON object";
        return false;
    }
    *this = CSimScenario{};
    if (!ReadString(root, "name", &m_name, pError) || !ReadString(root, "description", &m_description, pError) ||
        !ReadString(root, "sensor", &m_sensorPath, pError) || !ReadUnsigned(root, "frames", &m_frames, pError) ||
        !ReadUnsigned(root, "seed", &m_seed, pError))
    {
        return false;
    }
    if (0 == m_frames)
    {
        *pError = "'frames' must be at least 1";
        return false;
    }
    if (!m_sensorPath.empty() && ('/' != m_sensorPath[0]))
    {
        m_sensorPath = baseDir + "/" + m_sensorPath;
    }
    if (root.contains("scene") && !ReadScene(root["scene"], &m_scene, pError))
    {
        return false;
    }
    if (!m_scene.path.empty() && ('/' != m_scene.path[0]))
    {
        m_scene.path = baseDir + "/" + m_scene.path;
    }
    if (root.contains("lightSteps"))
    {
        const Json& steps = root["lightSteps"];
        if (!steps.is_array())
        {
            *pError = "'lightSteps' must be a list of {frame, ev}";
            return false;
        }
        for (const Json& step : steps)
        {
            SimEvent event;
            event.kind = SimEventKind::LightStep;
            if (!step.is_object() || !step.contains("frame") || !step.contains("ev") ||
                !ReadUnsigned(step, "frame", &event.frame, pError) || !ReadFloat(step, "ev", &event.ev, pError))
            {
                if (pError->empty())
                {
                    *pError = "a light step is {frame, ev}";
                }
                return false;
            }
            m_events.push_back(event);
        }
    }
    if (root.contains("events"))
    {
        const Json& events = root["events"];
        if (!events.is_array())
        {
            *pError = "'events' must be a list";
            return false;
        }
        for (const Json& event : events)
        {
            if (!ReadEvent(event, &m_events, pError))
            {
                return false;
            }
        }
    }
    std::stable_sort(m_events.begin(), m_events.end(),
                     [](const SimEvent& a, const SimEvent& b) { return a.frame < b.frame; });
    if (!m_events.empty() && (m_events.back().frame >= m_frames))
    {
        *pError = "an event at frame " + std::to_string(m_events.back().frame) + " lies beyond the " +
                  std::to_string(m_frames) + " frames";
        return false;
    }
    if (root.contains("pans") && !ReadPans(root["pans"], &m_pans, pError))
    {
        return false;
    }
    if (root.contains("thumbnails"))
    {
        const Json& frames = root["thumbnails"];
        if (!frames.is_array() ||
            !std::all_of(frames.begin(), frames.end(), [](const Json& v) { return v.is_number_unsigned(); }))
        {
            *pError = "'thumbnails' must be a list of frame numbers";
            return false;
        }
        for (const Json& frame : frames)
        {
            m_thumbnailFrames.push_back(frame.get<uint32_t>());
        }
    }
    return !root.contains("expect") || ReadExpectations(root["expect"], &m_expect, pError);
}

float CSimScenario::BrightnessAt(uint32_t frame) const
{
    float ev = 0.0F;
    for (const SimEvent& event : m_events)
    {
        if ((SimEventKind::LightStep == event.kind) && (event.frame <= frame))
        {
            ev += event.ev;
        }
    }
    return std::exp2(ev);
}

float CSimScenario::PanAt(uint32_t frame) const
{
    if (m_pans.empty())
    {
        const float progress = (m_frames > 1) ? static_cast<float>(frame) / static_cast<float>(m_frames - 1) : 0.0F;
        return m_scene.panStart + ((m_scene.panEnd - m_scene.panStart) * progress);
    }
    if (frame <= m_pans.front().frame)
    {
        return m_pans.front().position;
    }
    for (size_t i = 1; i < m_pans.size(); i++)
    {
        const SimPanKey& a = m_pans[i - 1];
        const SimPanKey& b = m_pans[i];
        if (frame <= b.frame)
        {
            const float t = static_cast<float>(frame - a.frame) / static_cast<float>(b.frame - a.frame);
            return a.position + ((b.position - a.position) * t);
        }
    }
    return m_pans.back().position;
}
