// The simulated sensor: description files, the sensor-info parameter a host sends, and raw frame capture.
#include "csimsensor.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <map>
#include <variant>

#include <nlohmann/json.hpp>

namespace
{

constexpr double NsPerSecond = 1.0e9;
constexpr double Pi          = 3.14159265358979323846;
// Below this mean the normal approximation of shot noise is visibly wrong, so Poisson is drawn instead.
constexpr double PoissonLimitElectrons = 20.0;
// With a 1 GHz pixel clock the clocks per line are the line time in nanoseconds: the library's line time is exact.
constexpr uint32_t PixelClockHz = 1000000000U;

using DescMember = std::variant<std::string SimSensorDesc::*, uint32_t SimSensorDesc::*, uint64_t SimSensorDesc::*,
                                float SimSensorDesc::*, bool SimSensorDesc::*>;

// The file's keys are the description's member names.
const std::map<std::string, DescMember>& DescMembers()
{
    static const std::map<std::string, DescMember> members = {
        {"name", &SimSensorDesc::name},
        {"width", &SimSensorDesc::width},
        {"height", &SimSensorDesc::height},
        {"simWidth", &SimSensorDesc::simWidth},
        {"simHeight", &SimSensorDesc::simHeight},
        {"bitDepth", &SimSensorDesc::bitDepth},
        {"blackLevel", &SimSensorDesc::blackLevel},
        {"fullWellElectrons", &SimSensorDesc::fullWellElectrons},
        {"readNoiseElectrons", &SimSensorDesc::readNoiseElectrons},
        {"shotNoise", &SimSensorDesc::shotNoise},
        {"lineTimeNs", &SimSensorDesc::lineTimeNs},
        {"minLines", &SimSensorDesc::minLines},
        {"maxLines", &SimSensorDesc::maxLines},
        {"frameLines", &SimSensorDesc::frameLines},
        {"minGain", &SimSensorDesc::minGain},
        {"maxGain", &SimSensorDesc::maxGain},
        {"fNumber", &SimSensorDesc::fNumber},
        {"pipelineDelay", &SimSensorDesc::pipelineDelay},
        {"gridColumns", &SimSensorDesc::gridColumns},
        {"gridRows", &SimSensorDesc::gridRows},
        {"histogramBins", &SimSensorDesc::histogramBins},
        {"electronsPerNit", &SimSensorDesc::electronsPerNit},
    };
    return members;
}

// Stores one JSON value into a member of the matching type; false when the types disagree.
struct MemberWriter
{
    const nlohmann::json& value;
    SimSensorDesc*        pDesc;

    bool operator()(std::string SimSensorDesc::*pMember) const
    {
        if (!value.is_string())
        {
            return false;
        }
        pDesc->*pMember = value.get<std::string>();
        return true;
    }
    bool operator()(uint32_t SimSensorDesc::*pMember) const
    {
        if (!value.is_number_unsigned() || (value.get<uint64_t>() > UINT32_MAX))
        {
            return false;
        }
        pDesc->*pMember = value.get<uint32_t>();
        return true;
    }
    bool operator()(uint64_t SimSensorDesc::*pMember) const
    {
        if (!value.is_number_unsigned())
        {
            return false;
        }
        pDesc->*pMember = value.get<uint64_t>();
        return true;
    }
    bool operator()(float SimSensorDesc::*pMember) const
    {
        if (!value.is_number())
        {
            return false;
        }
        pDesc->*pMember = value.get<float>();
        return true;
    }
    bool operator()(bool SimSensorDesc::*pMember) const
    {
        if (!value.is_boolean())
        {
            return false;
        }
        pDesc->*pMember = value.get<bool>();
        return true;
    }
};

// The first reason the description cannot be simulated, "" when it can.
std::string CheckDesc(const SimSensorDesc& d)
{
    const uint32_t maxCode = (1U << d.bitDepth) - 1U;
    if ((10 != d.bitDepth) && (12 != d.bitDepth) && (14 != d.bitDepth))
    {
        return "bitDepth must be 10, 12 or 14";
    }
    if (d.blackLevel >= maxCode)
    {
        return "blackLevel must lie below the largest code";
    }
    if ((0 == d.width) || (0 == d.height) || (d.simWidth > d.width) || (d.simHeight > d.height))
    {
        return "width and height must be non-zero and at least simWidth and simHeight";
    }
    // The Bayer pattern repeats every two pixels and every grid region needs at least one 2 x 2 quad.
    if ((0 != (d.simWidth % 2)) || (0 != (d.simHeight % 2)) || (d.simWidth < 2 * d.gridColumns) ||
        (d.simHeight < 2 * d.gridRows))
    {
        return "simWidth and simHeight must be even and give every grid region a 2 x 2 quad";
    }
    if ((0 == d.gridColumns) || (0 == d.gridRows) || (d.gridColumns * d.gridRows > 3072))
    {
        return "the grid needs 1 to 3072 regions";
    }
    if ((256 != d.histogramBins) && (1024 != d.histogramBins))
    {
        return "histogramBins must be 256 or 1024";
    }
    if (!(d.fullWellElectrons > 0.0F) || !(d.readNoiseElectrons >= 0.0F) || !(d.electronsPerNit > 0.0F))
    {
        return "fullWellElectrons and electronsPerNit must be positive, readNoiseElectrons not negative";
    }
    if ((0 == d.lineTimeNs) || (d.lineTimeNs > UINT32_MAX) || (0 == d.minLines) || (d.minLines > d.maxLines) ||
        (0 == d.frameLines))
    {
        return "lineTimeNs (up to 2^32 - 1), minLines <= maxLines and frameLines must be set";
    }
    if (!(d.minGain > 0.0F) || !(d.minGain <= d.maxGain) || !(d.fNumber >= 1.0F))
    {
        return "gains must satisfy 0 < minGain <= maxGain and fNumber be at least 1";
    }
    return "";
}

// Integral of |sin(pi u)| du from 0 to u, times pi, for u in half periods: 2 per whole half period plus the rest.
// Whole half periods are counted apart, so that long runs keep the fraction's precision.
struct HalfPeriodPosition
{
    uint64_t whole;
    double   fraction;
};

HalfPeriodPosition HalfPeriodsAt(uint64_t ns, uint32_t mainsHz)
{
    // A second holds exactly 2 * mainsHz half periods of the light.
    const uint64_t seconds   = ns / 1000000000ULL;
    const double   rest      = static_cast<double>(ns % 1000000000ULL) * 2.0 * mainsHz / NsPerSecond;
    const double   restWhole = std::floor(rest);
    return {seconds * 2ULL * mainsHz + static_cast<uint64_t>(restWhole), rest - restWhole};
}

} // namespace

bool LoadSensorDesc(const std::string& path, SimSensorDesc* pDesc, std::string* pError)
{
    std::ifstream file(path);
    if (!file)
    {
        *pError = path + ": cannot open";
        return false;
    }
    const nlohmann::json root = nlohmann::json::parse(file, nullptr, false, true);
    if (root.is_discarded() || !root.is_object())
    {
        *pError = path + ": not a JSON object";
        return false;
    }
    SimSensorDesc desc = *pDesc;
    for (const auto& item : root.items())
    {
        const auto member = DescMembers().find(item.key());
        // An unknown key is most likely a misspelt one, which would silently keep a default.
        if (DescMembers().end() == member)
        {
            *pError = path + ": unknown key '" + item.key() + "'";
            return false;
        }
        if (!std::visit(MemberWriter{item.value(), &desc}, member->second))
        {
            *pError = path + ": '" + item.key() + "' has the wrong type";
            return false;
        }
    }
    const std::string problem = CheckDesc(desc);
    if (!problem.empty())
    {
        *pError = path + ": " + problem;
        return false;
    }
    *pDesc = desc;
    return true;
}

StatsSensorInfo MakeSensorInfo(const SimSensorDesc& desc)
{
    const uint64_t frameNs = static_cast<uint64_t>(desc.frameLines) * desc.lineTimeNs;
    // An unchecked description without frame lines reports no frame rate rather than dividing by zero.
    const UINT32   fps =
        (0 != frameNs) ? static_cast<UINT32>(std::lround(NsPerSecond / static_cast<double>(frameNs))) : 0U;

    StatsSensorInfo info       = {};
    info.currentFPS            = fps;
    info.maxFPS                = fps;
    info.currentLinesPerFrame  = desc.frameLines;
    info.currentMaxLineCount   = desc.maxLines;
    info.currentMinLineCount   = desc.minLines;
    info.maxGain               = desc.maxGain;
    info.minGain               = desc.minGain;
    info.pixelClock            = PixelClockHz;
    info.pixelClockPerLine     = static_cast<UINT32>(desc.lineTimeNs);
    info.sensorResWidth        = desc.width;
    info.sensorResHeight       = desc.height;
    info.pixelSumFactor        = 1;
    info.fNumber               = desc.fNumber;
    info.sensorActiveResWidth  = desc.width;
    info.sensorActiveResHeight = desc.height;
    info.exposureTime.min      = static_cast<INT64>(desc.minLines * desc.lineTimeNs);
    info.exposureTime.max      = static_cast<INT64>(desc.maxLines * desc.lineTimeNs);
    return info;
}

double FlickerWindowFactor(const SimFlicker& flicker, uint64_t startNs, uint64_t durationNs)
{
    if ((0 == flicker.mainsHz) || !(flicker.depth > 0.0F))
    {
        return 1.0;
    }
    const double             depth = std::min(1.0, static_cast<double>(flicker.depth));
    const HalfPeriodPosition a     = HalfPeriodsAt(startNs, flicker.mainsHz);
    double                   lamp  = 0.0;
    if (0 == durationNs)
    {
        lamp = 0.5 * Pi * std::sin(Pi * a.fraction);
    }
    else
    {
        // Mean of (pi / 2) |sin(w t)| over the window, w = 2 pi mains: each half period contributes 2 / w.
        const HalfPeriodPosition b     = HalfPeriodsAt(startNs + durationNs, flicker.mainsHz);
        const double             whole = 2.0 * static_cast<double>(b.whole - a.whole);
        const double integral = whole + std::cos(Pi * a.fraction) - std::cos(Pi * b.fraction);
        lamp = integral / (4.0 * flicker.mainsHz * (static_cast<double>(durationNs) / NsPerSecond));
    }
    return (1.0 - depth) + depth * lamp;
}

CSimSensor::CSimSensor(const SimSensorDesc& desc, uint32_t seed) : m_desc(desc), m_random(seed)
{
}

void CSimSensor::Capture(const SimImage& scene, const SimFlicker& flicker, const SimExposure& exposure,
                         uint64_t frameStartNs, SimRawFrame* pOut)
{
    const uint32_t width   = m_desc.simWidth;
    const uint32_t height  = m_desc.simHeight;
    const uint32_t maxCode = (1U << m_desc.bitDepth) - 1U;
    const double   fNumber = (exposure.fnumber > 0.0F) ? exposure.fnumber : m_desc.fNumber;
    const double   seconds = static_cast<double>(exposure.exposureTime) / NsPerSecond;
    // Electrons per cd/m2 of this exposure, and codes per electron after the analogue gain.
    const double electronsPerNit = m_desc.electronsPerNit * seconds / (fNumber * fNumber);
    const double codesPerElectron =
        exposure.gain * static_cast<double>(maxCode - m_desc.blackLevel) / m_desc.fullWellElectrons;
    // A scene of another size is sampled at the nearest pixel; one without pixels is black.
    const bool hasScene = (scene.width > 0) && (scene.height > 0) &&
                          (scene.rgb.size() == static_cast<size_t>(scene.width) * scene.height * 3U);

    pOut->width      = width;
    pOut->height     = height;
    pOut->bitDepth   = m_desc.bitDepth;
    pOut->blackLevel = m_desc.blackLevel;
    pOut->bayer.assign(static_cast<size_t>(width) * height, 0);

    std::normal_distribution<double> normal(0.0, 1.0);
    for (uint32_t y = 0; y < height; y++)
    {
        // Each simulated row stands for height / simHeight sensor rows, which start one line time apart.
        const uint64_t rowStartNs =
            frameStartNs + static_cast<uint64_t>(y) * m_desc.lineTimeNs * m_desc.height / m_desc.simHeight;
        const double   rowElectronsPerNit =
            electronsPerNit * FlickerWindowFactor(flicker, rowStartNs, exposure.exposureTime);
        const uint32_t sceneY = hasScene ? static_cast<uint32_t>(static_cast<uint64_t>(y) * scene.height / height) : 0;
        for (uint32_t x = 0; x < width; x++)
        {
            // RGGB: red on even rows and even columns, blue on odd rows and odd columns, green elsewhere.
            const uint32_t colour = (0 == (y % 2)) ? ((0 == (x % 2)) ? 0U : 1U) : ((0 == (x % 2)) ? 1U : 2U);
            double         luminance = 0.0;
            if (hasScene)
            {
                const uint32_t sceneX = static_cast<uint32_t>(static_cast<uint64_t>(x) * scene.width / width);
                luminance = scene.rgb[(static_cast<size_t>(sceneY) * scene.width + sceneX) * 3U + colour];
            }
            double electrons = std::max(0.0, luminance * rowElectronsPerNit);
            if (m_desc.shotNoise && (electrons > 0.0))
            {
                if (electrons < PoissonLimitElectrons)
                {
                    std::poisson_distribution<int> poisson(electrons);
                    electrons = poisson(m_random);
                }
                else
                {
                    electrons += std::sqrt(electrons) * normal(m_random);
                }
            }
            electrons = std::min(electrons, static_cast<double>(m_desc.fullWellElectrons));
            if (m_desc.readNoiseElectrons > 0.0F)
            {
                electrons += m_desc.readNoiseElectrons * normal(m_random);
            }
            const double code = std::round(m_desc.blackLevel + electrons * codesPerElectron);
            pOut->bayer[static_cast<size_t>(y) * width + x] =
                static_cast<uint16_t>(std::clamp(code, 0.0, static_cast<double>(maxCode)));
        }
    }
}
