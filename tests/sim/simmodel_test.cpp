// Tests of aec-sim's simulated camera: sensor files and model, flicker banding, scenes, radiance maps, statistics.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <numeric>
#include <string>
#include <unistd.h>
#include <vector>

#include "csimscenes.h"
#include "csimsensor.h"
#include "cstatsgenerator.h"
#include "simmodel.h"

namespace
{

const std::string SensorDir  = std::string(AECSIM_SOURCE_DIR) + "/sim/sensors/";
const std::string InteriorMap = "/usr/share/blender/datafiles/studiolights/world/interior.exr";

// The default sensor without noise, so that every value is computable, and with round numbers of electrons.
SimSensorDesc QuietSensor()
{
    SimSensorDesc desc;
    desc.readNoiseElectrons = 0.0F;
    desc.shotNoise          = false;
    desc.electronsPerNit    = 5000.0F;
    return desc;
}

SimImage Uniform(const SimSensorDesc& desc, float r, float g, float b)
{
    SimImage image;
    image.width  = desc.simWidth;
    image.height = desc.simHeight;
    image.rgb.resize(static_cast<size_t>(image.width) * image.height * 3U);
    for (size_t i = 0; i < image.rgb.size(); i += 3)
    {
        image.rgb[i]     = r;
        image.rgb[i + 1] = g;
        image.rgb[i + 2] = b;
    }
    return image;
}

SimRawFrame Capture(const SimSensorDesc& desc, const SimImage& scene, uint64_t timeNs, float gain = 1.0F,
                    SimFlicker flicker = {}, uint64_t startNs = 0)
{
    CSimSensor  sensor(desc, 1);
    SimRawFrame frame;
    sensor.Capture(scene, flicker, SimExposure{timeNs, gain, 0.0F}, startNs, &frame);
    return frame;
}

// The black-corrected code the statistics must carry, computed here on its own.
uint32_t ExpectedCode(uint32_t raw, const SimSensorDesc& desc)
{
    const double maxCode = (1U << desc.bitDepth) - 1U;
    if (raw <= desc.blackLevel)
    {
        return 0;
    }
    return static_cast<uint32_t>(std::lround((raw - desc.blackLevel) * maxCode / (maxCode - desc.blackLevel)));
}

// Mean raw level of the green pixels of one row.
double RowGreenMean(const SimRawFrame& frame, uint32_t y)
{
    double sum = 0.0;
    for (uint32_t x = 1 - (y % 2); x < frame.width; x += 2)
    {
        sum += frame.bayer[static_cast<size_t>(y) * frame.width + x];
    }
    return sum / (frame.width / 2);
}

// Spread of the rows' green means, in raw codes.
double RowSpread(const SimRawFrame& frame)
{
    double low  = 1e30;
    double high = -1e30;
    for (uint32_t y = 0; y < frame.height; y++)
    {
        low  = std::min(low, RowGreenMean(frame, y));
        high = std::max(high, RowGreenMean(frame, y));
    }
    return high - low;
}

std::string TempPath(const std::string& name)
{
    return "/tmp/aecsim_model_test_" + std::to_string(getpid()) + "_" + name;
}

// One pixel as Radiance stores it: three mantissas sharing an exponent.
std::array<uint8_t, 4> EncodeRgbe(float r, float g, float b)
{
    const float largest = std::max({r, g, b});
    if (largest < 1e-32F)
    {
        return {0, 0, 0, 0};
    }
    int         exponent = 0;
    const float scale    = std::frexp(largest, &exponent) * 256.0F / largest;
    return {static_cast<uint8_t>(r * scale), static_cast<uint8_t>(g * scale), static_cast<uint8_t>(b * scale),
            static_cast<uint8_t>(exponent + 128)};
}

// One component of a new-style scanline: runs of three or more equal bytes, literals in between.
void EncodeComponentRuns(const std::vector<uint8_t>& values, std::string* pOut)
{
    size_t i = 0;
    while (i < values.size())
    {
        size_t run = 1;
        while ((i + run < values.size()) && (values[i + run] == values[i]) && (run < 127))
        {
            run++;
        }
        if (run >= 3)
        {
            pOut->push_back(static_cast<char>(128 + run));
            pOut->push_back(static_cast<char>(values[i]));
            i += run;
            continue;
        }
        size_t literal = 0;
        while ((i + literal < values.size()) && (literal < 128))
        {
            const size_t j = i + literal;
            if ((j + 2 < values.size()) && (values[j] == values[j + 1]) && (values[j] == values[j + 2]))
            {
                break;
            }
            literal++;
        }
        pOut->push_back(static_cast<char>(literal));
        pOut->append(values.begin() + static_cast<long>(i), values.begin() + static_cast<long>(i + literal));
        i += literal;
    }
}

// Writes a Radiance picture; wide pictures in new-style run-length scanlines, narrow ones flat.
void WriteRgbe(const std::string& path, const SimImage& image)
{
    std::string bytes = "#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y " + std::to_string(image.height) + " +X " +
                        std::to_string(image.width) + "\n";
    for (uint32_t y = 0; y < image.height; y++)
    {
        std::vector<uint8_t> components[4];
        for (uint32_t x = 0; x < image.width; x++)
        {
            const float* pRgb  = &image.rgb[(static_cast<size_t>(y) * image.width + x) * 3U];
            const auto   pixel = EncodeRgbe(pRgb[0], pRgb[1], pRgb[2]);
            for (int c = 0; c < 4; c++)
            {
                components[c].push_back(pixel[c]);
            }
        }
        if (image.width >= 8)
        {
            bytes += {2, 2, static_cast<char>(image.width >> 8), static_cast<char>(image.width & 0xFF)};
            for (const auto& rComponent : components)
            {
                EncodeComponentRuns(rComponent, &bytes);
            }
        }
        else
        {
            for (uint32_t x = 0; x < image.width; x++)
            {
                for (int c = 0; c < 4; c++)
                {
                    bytes.push_back(static_cast<char>(components[c][x]));
                }
            }
        }
    }
    std::ofstream(path, std::ios::binary) << bytes;
}

// A picture with runs, literals and a range of exponents.
SimImage TestPicture(uint32_t width, uint32_t height)
{
    SimImage image;
    image.width  = width;
    image.height = height;
    image.rgb.resize(static_cast<size_t>(width) * height * 3U);
    for (uint32_t y = 0; y < height; y++)
    {
        for (uint32_t x = 0; x < width; x++)
        {
            float* pRgb = &image.rgb[(static_cast<size_t>(y) * width + x) * 3U];
            // The left half is flat, which the encoder writes as runs; the right half varies from pixel to pixel.
            const float level = (x < width / 2) ? 0.5F : std::exp2(static_cast<float>((x * 7 + y * 3) % 20) - 6.0F);
            pRgb[0]           = level;
            pRgb[1]           = level * 0.75F;
            pRgb[2]           = level * 0.5F;
        }
    }
    return image;
}

void ExpectNear(const SimImage& actual, const SimImage& expected, float relative)
{
    ASSERT_EQ(actual.width, expected.width);
    ASSERT_EQ(actual.height, expected.height);
    ASSERT_EQ(actual.rgb.size(), expected.rgb.size());
    for (size_t i = 0; i < actual.rgb.size(); i++)
    {
        ASSERT_NEAR(actual.rgb[i], expected.rgb[i], relative * std::max({expected.rgb[i - i % 3],
                                                                          expected.rgb[i - i % 3 + 1],
                                                                          expected.rgb[i - i % 3 + 2]}))
            << "value " << i;
    }
}

SimSceneSpec Spec(const std::string& type, float luminance)
{
    SimSceneSpec spec;
    spec.type      = type;
    spec.luminance = luminance;
    return spec;
}

} // namespace

// ---- Sensor files ----

TEST(SimSensorDescTest, DefaultFileMatchesTheBuiltInDefaults)
{
    SimSensorDesc desc;
    std::string   error;
    ASSERT_TRUE(LoadSensorDesc(SensorDir + "default.json", &desc, &error)) << error;
    const SimSensorDesc defaults;
    EXPECT_EQ(desc.width, defaults.width);
    EXPECT_EQ(desc.height, defaults.height);
    EXPECT_EQ(desc.simWidth, defaults.simWidth);
    EXPECT_EQ(desc.simHeight, defaults.simHeight);
    EXPECT_EQ(desc.bitDepth, defaults.bitDepth);
    EXPECT_EQ(desc.blackLevel, defaults.blackLevel);
    EXPECT_EQ(desc.fullWellElectrons, defaults.fullWellElectrons);
    EXPECT_EQ(desc.readNoiseElectrons, defaults.readNoiseElectrons);
    EXPECT_EQ(desc.shotNoise, defaults.shotNoise);
    EXPECT_EQ(desc.lineTimeNs, defaults.lineTimeNs);
    EXPECT_EQ(desc.minLines, defaults.minLines);
    EXPECT_EQ(desc.maxLines, defaults.maxLines);
    EXPECT_EQ(desc.frameLines, defaults.frameLines);
    EXPECT_EQ(desc.minGain, defaults.minGain);
    EXPECT_EQ(desc.maxGain, defaults.maxGain);
    EXPECT_EQ(desc.fNumber, defaults.fNumber);
    EXPECT_EQ(desc.pipelineDelay, defaults.pipelineDelay);
    EXPECT_EQ(desc.gridColumns, defaults.gridColumns);
    EXPECT_EQ(desc.gridRows, defaults.gridRows);
    EXPECT_EQ(desc.histogramBins, defaults.histogramBins);
    EXPECT_EQ(desc.electronsPerNit, defaults.electronsPerNit);
}

TEST(SimSensorDescTest, TwelveAndFourteenBitSensorsLoad)
{
    const std::pair<const char*, uint32_t> files[] = {{"mobile12bit.json", 12}, {"largepixel14bit.json", 14}};
    for (const auto& rFile : files)
    {
        SimSensorDesc desc;
        std::string   error;
        ASSERT_TRUE(LoadSensorDesc(SensorDir + rFile.first, &desc, &error)) << error;
        EXPECT_EQ(desc.bitDepth, rFile.second);
        EXPECT_EQ(desc.histogramBins, 1024U);
    }
}

TEST(SimSensorDescTest, MissingKeysKeepTheirDefaults)
{
    const std::string path = TempPath("partial.json");
    std::ofstream(path) << "{ \"bitDepth\": 12, \"blackLevel\": 256 }";
    SimSensorDesc desc;
    std::string   error;
    ASSERT_TRUE(LoadSensorDesc(path, &desc, &error)) << error;
    EXPECT_EQ(desc.bitDepth, 12U);
    EXPECT_EQ(desc.blackLevel, 256U);
    EXPECT_EQ(desc.width, 4000U);
    std::remove(path.c_str());
}

TEST(SimSensorDescTest, WrongFilesAreRefusedWithAReason)
{
    const std::pair<const char*, const char*> cases[] = {
        {"{ \"bitDepht\": 12 }", "unknown key"},
        {"{ \"bitDepth\": 11 }", "bitDepth"},
        {"{ \"bitDepth\": \"12\" }", "wrong type"},
        {"{ \"histogramBins\": 512 }", "histogramBins"},
        {"{ \"minGain\": 4.0, \"maxGain\": 2.0 }", "gains"},
        {"{ \"simWidth\": 511 }", "even"},
        {"[1, 2]", "JSON object"},
    };
    const std::string path = TempPath("wrong.json");
    for (const auto& rCase : cases)
    {
        std::ofstream(path) << rCase.first;
        SimSensorDesc desc;
        std::string   error;
        EXPECT_FALSE(LoadSensorDesc(path, &desc, &error)) << rCase.first;
        EXPECT_NE(error.find(rCase.second), std::string::npos) << error;
        EXPECT_EQ(desc.bitDepth, 10U) << "a refused file changes nothing";
    }
    std::remove(path.c_str());
    SimSensorDesc desc;
    std::string   error;
    EXPECT_FALSE(LoadSensorDesc(TempPath("absent.json"), &desc, &error));
}

TEST(SimSensorInfoTest, SensorInfoGivesTheSensorsLineTimeAndLimits)
{
    SimSensorDesc desc;
    std::string   error;
    ASSERT_TRUE(LoadSensorDesc(SensorDir + "mobile12bit.json", &desc, &error)) << error;
    const StatsSensorInfo info = MakeSensorInfo(desc);
    const double lineTime = static_cast<double>(info.pixelClockPerLine) / static_cast<double>(info.pixelClock);
    EXPECT_DOUBLE_EQ(lineTime * 1e9, static_cast<double>(desc.lineTimeNs));
    EXPECT_EQ(info.currentFPS, 30U);
    EXPECT_EQ(info.maxFPS, 30U);
    EXPECT_EQ(info.currentLinesPerFrame, desc.frameLines);
    EXPECT_EQ(info.currentMaxLineCount, desc.maxLines);
    EXPECT_EQ(info.currentMinLineCount, desc.minLines);
    EXPECT_EQ(info.minGain, desc.minGain);
    EXPECT_EQ(info.maxGain, desc.maxGain);
    EXPECT_EQ(info.fNumber, desc.fNumber);
    EXPECT_EQ(info.sensorResWidth, desc.width);
    EXPECT_EQ(info.sensorResHeight, desc.height);
    EXPECT_EQ(info.sensorActiveResWidth, desc.width);
    EXPECT_EQ(info.exposureTime.max, static_cast<INT64>(desc.maxLines * desc.lineTimeNs));
}

// ---- Sensor model ----

TEST(SimSensorTest, RawLevelFollowsLuminanceTimeGainAndAperture)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   frame = Capture(desc, Uniform(desc, 100.0F, 100.0F, 100.0F), 10000000);
    // 100 cd/m2 x 5000 e-/s x 10 ms / 2.0^2 = 1250 e-, of 6000 e- over 959 codes.
    const double electrons = 100.0 * 5000.0 * 0.01 / 4.0;
    const auto   expected  = static_cast<uint16_t>(std::lround(64.0 + electrons * 959.0 / 6000.0));
    for (uint16_t value : frame.bayer)
    {
        ASSERT_EQ(value, expected);
    }
    EXPECT_EQ(frame.width, desc.simWidth);
    EXPECT_EQ(frame.height, desc.simHeight);
    EXPECT_EQ(frame.bitDepth, desc.bitDepth);
    EXPECT_EQ(frame.blackLevel, desc.blackLevel);
}

TEST(SimSensorTest, RawLevelDoublesWithDoubledTimeBelowClipping)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimImage      scene = Uniform(desc, 100.0F, 100.0F, 100.0F);
    const SimRawFrame   once  = Capture(desc, scene, 7000000);
    const SimRawFrame   twice = Capture(desc, scene, 14000000);
    const double        one   = once.bayer[0] - desc.blackLevel;
    const double        two   = twice.bayer[0] - desc.blackLevel;
    ASSERT_GT(one, 100.0);
    ASSERT_LT(two, 900.0);
    EXPECT_NEAR(two, 2.0 * one, 1.0);
    // The same holds for the gain.
    const SimRawFrame gained = Capture(desc, scene, 7000000, 2.0F);
    EXPECT_NEAR(gained.bayer[0] - desc.blackLevel, 2.0 * one, 1.0);
}

TEST(SimSensorTest, ClipsAtTheFullWellAndTheLargestCode)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   frame = Capture(desc, Uniform(desc, 10000.0F, 10000.0F, 10000.0F), 30000000, 8.0F);
    for (uint16_t value : frame.bayer)
    {
        ASSERT_EQ(value, 1023);
    }
    // In the dark a frame reads the black level.
    const SimRawFrame dark = Capture(desc, Uniform(desc, 0.0F, 0.0F, 0.0F), 30000000, 8.0F);
    EXPECT_EQ(dark.bayer[0], desc.blackLevel);
}

TEST(SimSensorTest, ColoursLandOnTheirBayerSites)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   frame = Capture(desc, Uniform(desc, 200.0F, 100.0F, 0.0F), 10000000);
    const uint32_t      w     = frame.width;
    EXPECT_GT(frame.bayer[0], frame.bayer[1]);               // R above GR
    EXPECT_EQ(frame.bayer[1], frame.bayer[w]);               // GR equals GB
    EXPECT_EQ(frame.bayer[w + 1], desc.blackLevel);          // B sees no light
}

TEST(SimSensorTest, NoiseHasTheShotAndReadNoiseSpread)
{
    SimSensorDesc desc      = QuietSensor();
    desc.shotNoise          = true;
    desc.readNoiseElectrons = 5.0F;
    const SimRawFrame frame = Capture(desc, Uniform(desc, 80.0F, 80.0F, 80.0F), 10000000);
    // 80 x 5000 x 10 ms / 4 = 1000 e-: sigma sqrt(1000 + 25) = 32 e- = 5.1 codes around 64 + 159.8.
    double sum   = 0.0;
    double sumSq = 0.0;
    for (uint16_t value : frame.bayer)
    {
        sum += value;
        sumSq += static_cast<double>(value) * value;
    }
    const double n     = static_cast<double>(frame.bayer.size());
    const double mean  = sum / n;
    const double sigma = std::sqrt(sumSq / n - mean * mean);
    EXPECT_NEAR(mean, 64.0 + 1000.0 * 959.0 / 6000.0, 0.2);
    EXPECT_NEAR(sigma, std::sqrt(1025.0) * 959.0 / 6000.0, 0.3);
}

// ---- Flicker ----

TEST(SimFlickerTest, WholeHalfPeriodsAverageToSteadyLight)
{
    const SimFlicker lamp50 = {50, 1.0F};
    EXPECT_NEAR(FlickerWindowFactor(lamp50, 1234567, 10000000), 1.0, 1e-9);
    EXPECT_NEAR(FlickerWindowFactor(lamp50, 987654321012ULL, 20000000), 1.0, 1e-9);
    EXPECT_NEAR(FlickerWindowFactor({60, 1.0F}, 5555, 25000000), 1.0, 1e-6);
    EXPECT_DOUBLE_EQ(FlickerWindowFactor({0, 1.0F}, 1234, 15000000), 1.0);
    // A short window at the dark instant of the light sees only the steady share.
    EXPECT_NEAR(FlickerWindowFactor({50, 0.6F}, 0, 0), 0.4, 1e-6);
    EXPECT_NEAR(FlickerWindowFactor({50, 0.6F}, 5000000, 0), 0.4 + 0.6 * 3.14159265358979 / 2.0, 1e-6);
}

TEST(SimFlickerTest, FiftyHertzBandsOnlyOffTheTenMillisecondGrid)
{
    const SimSensorDesc desc    = QuietSensor();
    const SimImage      scene   = Uniform(desc, 60.0F, 60.0F, 60.0F);
    const SimFlicker    flicker = {50, 0.8F};
    EXPECT_GT(RowSpread(Capture(desc, scene, 15000000, 1.0F, flicker, 3000000)), 30.0);
    EXPECT_LE(RowSpread(Capture(desc, scene, 10000000, 1.0F, flicker, 3000000)), 1.0);
    EXPECT_LE(RowSpread(Capture(desc, scene, 20000000, 1.0F, flicker, 3000000)), 1.0);
}

TEST(SimFlickerTest, SixtyHertzBandsOnlyOffTheEightMillisecondGrid)
{
    const SimSensorDesc desc    = QuietSensor();
    const SimImage      scene   = Uniform(desc, 60.0F, 60.0F, 60.0F);
    const SimFlicker    flicker = {60, 0.8F};
    EXPECT_GT(RowSpread(Capture(desc, scene, 12500000, 1.0F, flicker, 3000000)), 30.0);
    EXPECT_LE(RowSpread(Capture(desc, scene, 8333333, 1.0F, flicker, 3000000)), 1.0);
    EXPECT_LE(RowSpread(Capture(desc, scene, 16666667, 1.0F, flicker, 3000000)), 1.0);
}

TEST(SimFlickerTest, FluorescentSceneFlickersAtFiftyHertzByDefault)
{
    std::string error;
    auto        pScene = CreateScene(Spec("fluorescent", 100.0F), 64, 48, &error);
    ASSERT_NE(pScene, nullptr) << error;
    EXPECT_EQ(pScene->Flicker().mainsHz, 50U);
    EXPECT_FLOAT_EQ(pScene->Flicker().depth, FluorescentFlickerDepth);
    SimSceneSpec spec = Spec("fluorescent", 100.0F);
    spec.mainsHz      = 60;
    EXPECT_EQ(CreateScene(spec, 64, 48, &error)->Flicker().mainsHz, 60U);
    // Steady light unless a scenario names the mains.
    EXPECT_EQ(CreateScene(Spec("window", 100.0F), 64, 48, &error)->Flicker().depth, 0.0F);
}

// ---- Statistics ----

TEST(SimStatsTest, UniformSceneGivesTheExactSumsAndCounts)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   frame = Capture(desc, Uniform(desc, 90.0F, 120.0F, 60.0F), 9000000);
    CStatsGenerator     generator(desc);
    generator.Generate(frame);
    const StatsBayerGrid& grid = generator.Grid();

    // 512 x 384 simulated pixels on 64 x 48 regions: 4 x 4 quads each; the library's region is 62 x 62 pixels.
    const uint32_t r  = ExpectedCode(frame.bayer[0], desc);
    const uint32_t gr = ExpectedCode(frame.bayer[1], desc);
    const uint32_t gb = ExpectedCode(frame.bayer[desc.simWidth], desc);
    const uint32_t b  = ExpectedCode(frame.bayer[desc.simWidth + 1], desc);
    const uint32_t perChannel = 62U * 62U / 4U;
    ASSERT_EQ(grid.horizontalRegionCount, 64U);
    ASSERT_EQ(grid.verticalRegionCount, 48U);
    EXPECT_EQ(grid.totalRegionCount, 3072U);
    EXPECT_EQ(grid.numValidRegions, 3072U);
    EXPECT_EQ(grid.regionWidth, 62U);
    EXPECT_EQ(grid.regionHeight, 62U);
    EXPECT_EQ(grid.bitDepth, 10U);
    EXPECT_EQ(grid.flags.hasSatInfo, 1U);
    EXPECT_EQ(grid.flags.usesY, 0U);
    EXPECT_EQ(grid.flags.onlyY, 0U);
    EXPECT_EQ(grid.startupMode, StatisticsStartUpValid);
    const auto* pRegions = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(grid.m_pChannelData);
    for (uint32_t i = 0; i < grid.numValidRegions; i++)
    {
        const StatsBayerGridChannelInfoS_Sat& rRegion = pRegions[i];
        ASSERT_EQ(rRegion.base.RSum, r * perChannel) << i;
        ASSERT_EQ(rRegion.base.GRSum, gr * perChannel) << i;
        ASSERT_EQ(rRegion.base.GBSum, gb * perChannel) << i;
        ASSERT_EQ(rRegion.base.BSum, b * perChannel) << i;
        ASSERT_EQ(rRegion.base.RCount, perChannel);
        ASSERT_EQ(rRegion.base.GRCount, perChannel);
        ASSERT_EQ(rRegion.base.GBCount, perChannel);
        ASSERT_EQ(rRegion.base.BCount, perChannel);
        ASSERT_EQ(rRegion.saturatedRCount + rRegion.saturatedGRCount + rRegion.saturatedGBCount +
                      rRegion.saturatedBCount,
                  0);
        ASSERT_EQ(rRegion.saturatedRSum + rRegion.saturatedGRSum + rRegion.saturatedGBSum + rRegion.saturatedBSum, 0U);
    }
}

TEST(SimStatsTest, RegionSumsFollowTheRawFrameRegionByRegion)
{
    SimSensorDesc desc = QuietSensor();
    std::string   error;
    auto          pScene = CreateScene(Spec("gradient", 80.0F), desc.simWidth, desc.simHeight, &error);
    ASSERT_NE(pScene, nullptr) << error;
    SimImage image;
    pScene->Render(0.0F, 1.0F, &image);
    const SimRawFrame frame = Capture(desc, image, 8000000);
    CStatsGenerator   generator(desc);
    generator.Generate(frame);
    const auto* pRegions = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(generator.Grid().m_pChannelData);
    // Region (c, r) covers simulated pixels [8c, 8c + 8) x [8r, 8r + 8); 16 per channel stand for 961.
    for (uint32_t r = 0; r < 48; r++)
    {
        for (uint32_t c = 0; c < 64; c++)
        {
            uint64_t sums[4] = {};
            for (uint32_t y = 8 * r; y < 8 * r + 8; y++)
            {
                for (uint32_t x = 8 * c; x < 8 * c + 8; x++)
                {
                    sums[(y % 2) * 2 + (x % 2)] += ExpectedCode(frame.bayer[y * desc.simWidth + x], desc);
                }
            }
            const StatsBayerGridChannelInfoS_Sat& rRegion = pRegions[r * 64 + c];
            const auto scaled = [](uint64_t sum) { return static_cast<uint32_t>((sum * 961 + 8) / 16); };
            ASSERT_EQ(rRegion.base.RSum + rRegion.saturatedRSum, scaled(sums[0])) << c << "," << r;
            ASSERT_EQ(rRegion.base.GRSum + rRegion.saturatedGRSum, scaled(sums[1])) << c << "," << r;
            ASSERT_EQ(rRegion.base.GBSum + rRegion.saturatedGBSum, scaled(sums[2])) << c << "," << r;
            ASSERT_EQ(rRegion.base.BSum + rRegion.saturatedBSum, scaled(sums[3])) << c << "," << r;
        }
    }
}

TEST(SimStatsTest, SaturatedPixelsLandInTheSaturationSums)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   clipped = Capture(desc, Uniform(desc, 5000.0F, 5000.0F, 5000.0F), 30000000);
    CStatsGenerator     generator(desc);
    generator.Generate(clipped);
    const auto* pRegion = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(generator.Grid().m_pChannelData);
    EXPECT_EQ(pRegion->base.RCount, 0);
    EXPECT_EQ(pRegion->base.RSum, 0U);
    EXPECT_EQ(pRegion->saturatedRCount, 961);
    EXPECT_EQ(pRegion->saturatedRSum, 961U * 1023U);
    EXPECT_EQ(pRegion->saturatedBCount, 961);
    EXPECT_EQ(pRegion->saturatedGRCount, 961);
    EXPECT_EQ(pRegion->saturatedGBSum, 961U * 1023U);

    // A lower threshold of one channel moves only that channel's unclipped pixels.
    const SimRawFrame mid      = Capture(desc, Uniform(desc, 100.0F, 100.0F, 100.0F), 20000000);
    const uint32_t    code     = ExpectedCode(mid.bayer[0], desc);
    const uint32_t    limits[4] = {code, code + 1, 1023, 1023};
    generator.SetSaturationThresholds(limits);
    generator.Generate(mid);
    pRegion = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(generator.Grid().m_pChannelData);
    EXPECT_EQ(pRegion->saturatedRCount, 961);
    EXPECT_EQ(pRegion->saturatedRSum, 961U * code);
    EXPECT_EQ(pRegion->base.RCount, 0);
    EXPECT_EQ(pRegion->base.GRCount, 961);
    EXPECT_EQ(pRegion->base.GRSum, 961U * code);
    EXPECT_EQ(pRegion->saturatedGRCount, 0);
}

TEST(SimStatsTest, ThresholdsAreHandedOnInTheGridsChannelOrder)
{
    const SimSensorDesc desc = QuietSensor();
    CStatsGenerator     generator(desc);
    const uint32_t      limits[4] = {101, 102, 103, 104}; // R, GR, GB, B
    generator.SetSaturationThresholds(limits);
    generator.Generate(Capture(desc, Uniform(desc, 1.0F, 1.0F, 1.0F), 1000000));
    const StatsBayerGrid& grid = generator.Grid();
    // The grid orders them R, B, GR, GB.
    EXPECT_EQ(grid.satThreshold[0], 101U);
    EXPECT_EQ(grid.satThreshold[1], 104U);
    EXPECT_EQ(grid.satThreshold[2], 102U);
    EXPECT_EQ(grid.satThreshold[3], 103U);
    // Without thresholds set, everything below the largest code counts as unsaturated.
    CStatsGenerator fresh(desc);
    fresh.Generate(Capture(desc, Uniform(desc, 1.0F, 1.0F, 1.0F), 1000000));
    EXPECT_EQ(fresh.Grid().satThreshold[0], 1023U);
}

TEST(SimStatsTest, HistogramTotalsEqualTheSensorsPixelCount)
{
    for (uint32_t bins : {256U, 1024U})
    {
        SimSensorDesc desc = QuietSensor();
        desc.histogramBins = bins;
        std::string error;
        auto        pScene = CreateScene(Spec("night", 3.0F), desc.simWidth, desc.simHeight, &error);
        ASSERT_NE(pScene, nullptr) << error;
        SimImage image;
        pScene->Render(0.0F, 1.0F, &image);
        CStatsGenerator generator(desc);
        generator.Generate(Capture(desc, image, 33000000, 8.0F));
        const StatsBayerHist& hist = generator.Hist();
        ASSERT_EQ(hist.binCount, bins);
        ASSERT_EQ(hist.channelCount, 4U);
        EXPECT_EQ(hist.uniform, TRUE);
        EXPECT_EQ(hist.startupMode, StatisticsStartUpValid);
        const StatsColorChannelType types[4] = {StatsColorChannelR, StatsColorChannelGR, StatsColorChannelGB,
                                                StatsColorChannelB};
        for (uint32_t ch = 0; ch < 4; ch++)
        {
            EXPECT_EQ(hist.histDataType[ch], types[ch]);
            const uint64_t total = std::accumulate(hist.pHistData[ch], hist.pHistData[ch] + bins, uint64_t{0});
            EXPECT_EQ(total, 4000U * 3000U / 4U) << bins << " bins, channel " << ch;
        }
    }
}

TEST(SimStatsTest, UniformSceneFillsOneHistogramBin)
{
    const SimSensorDesc desc  = QuietSensor();
    const SimRawFrame   frame = Capture(desc, Uniform(desc, 100.0F, 100.0F, 100.0F), 10000000);
    CStatsGenerator     generator(desc);
    generator.Generate(frame);
    // 256 bins over 10 bits: four codes a bin.
    const uint32_t bin = ExpectedCode(frame.bayer[0], desc) / 4U;
    EXPECT_EQ(generator.Hist().pHistData[0][bin], 3000000U);
    EXPECT_EQ(generator.Hist().pHistData[3][bin], 3000000U);
}

TEST(SimStatsTest, CountsStayWithinSixteenBitsOnLargeRegions)
{
    SimSensorDesc desc = QuietSensor();
    desc.width         = 16000;
    desc.height        = 12000;
    desc.gridColumns   = 16;
    desc.gridRows      = 12;
    const SimRawFrame frame = Capture(desc, Uniform(desc, 100.0F, 100.0F, 100.0F), 10000000);
    CStatsGenerator   generator(desc);
    generator.Generate(frame);
    const StatsBayerGrid& grid = generator.Grid();
    const uint64_t perChannel = static_cast<uint64_t>(grid.regionWidth) * grid.regionHeight / 4U;
    EXPECT_LE(perChannel, 65535U);
    EXPECT_EQ(grid.regionWidth, 500U);
    const auto* pRegion = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(grid.m_pChannelData);
    EXPECT_EQ(pRegion->base.RCount + pRegion->saturatedRCount, perChannel);
}

TEST(SimStatsTest, AnEmptyFrameReadsAsBlack)
{
    const SimSensorDesc desc = QuietSensor();
    CStatsGenerator     generator(desc);
    generator.Generate(SimRawFrame{});
    const auto* pRegion = reinterpret_cast<const StatsBayerGridChannelInfoS_Sat*>(generator.Grid().m_pChannelData);
    EXPECT_EQ(pRegion->base.RSum, 0U);
    EXPECT_EQ(pRegion->base.RCount, 961);
    EXPECT_EQ(generator.Hist().pHistData[0][0], 3000000U);
}

// ---- Scenes ----

TEST(SimSceneTest, BuiltInScenesHaveTheRequestedMeanLuminance)
{
    for (const char* pType : {"grey", "gradient", "backlit", "window", "night", "fluorescent"})
    {
        std::string error;
        auto        pScene = CreateScene(Spec(pType, 250.0F), 512, 384, &error);
        ASSERT_NE(pScene, nullptr) << error;
        EXPECT_EQ(pScene->Name(), pType);
        SimImage image;
        pScene->Render(0.3F, 1.0F, &image);
        ASSERT_EQ(image.width, 512U);
        ASSERT_EQ(image.height, 384U);
        EXPECT_NEAR(MeanLuminance(image), 250.0, 250.0 * 1e-4) << pType;
        pScene->Render(0.3F, 4.0F, &image);
        EXPECT_NEAR(MeanLuminance(image), 1000.0, 1000.0 * 1e-4) << pType;
    }
}

TEST(SimSceneTest, BacklitSceneHasADarkFaceAgainstTheSky)
{
    std::string error;
    auto        pScene = CreateScene(Spec("backlit", 500.0F), 512, 384, &error);
    ASSERT_NE(pScene, nullptr) << error;
    const std::vector<SimRect> faces = pScene->Faces();
    ASSERT_EQ(faces.size(), 1U);
    SimImage image;
    pScene->Render(0.0F, 1.0F, &image);
    const auto at = [&image](float fx, float fy) {
        const uint32_t x = static_cast<uint32_t>(fx * image.width);
        const uint32_t y = static_cast<uint32_t>(fy * image.height);
        return PixelLuminance(&image.rgb[(y * image.width + x) * 3U]);
    };
    const float face = at(faces[0].left + 0.5F * faces[0].width, faces[0].top + 0.5F * faces[0].height);
    EXPECT_LT(face * 8.0F, at(0.05F, 0.1F));
    EXPECT_TRUE(CreateScene(Spec("grey", 1.0F), 64, 48, &error)->Faces().empty());
}

TEST(SimSceneTest, WrongSpecsAreRefusedWithAReason)
{
    std::string  error;
    EXPECT_EQ(CreateScene(Spec("snow", 100.0F), 64, 48, &error), nullptr);
    EXPECT_NE(error.find("unknown scene type"), std::string::npos) << error;
    EXPECT_EQ(CreateScene(Spec("grey", -1.0F), 64, 48, &error), nullptr);
    EXPECT_NE(error.find("luminance"), std::string::npos) << error;
    SimSceneSpec spec = Spec("grey", 100.0F);
    spec.mainsHz      = 55;
    EXPECT_EQ(CreateScene(spec, 64, 48, &error), nullptr);
    spec = Spec("hdr", 100.0F);
    spec.path = TempPath("absent.hdr");
    EXPECT_EQ(CreateScene(spec, 64, 48, &error), nullptr);
    EXPECT_NE(error.find("cannot open"), std::string::npos) << error;
}

// ---- Radiance maps ----

TEST(SimRadianceMapTest, RadianceFilesWithRunLengthScanlinesLoad)
{
    const std::string path     = TempPath("runs.hdr");
    const SimImage    expected = TestPicture(40, 6);
    WriteRgbe(path, expected);
    SimImage    image;
    std::string error;
    ASSERT_TRUE(LoadRadianceMap(path, &image, &error)) << error;
    // Eight mantissa bits: within one step of 1/128 of the pixel's largest channel.
    ExpectNear(image, expected, 1.0F / 128.0F);
    std::remove(path.c_str());
}

TEST(SimRadianceMapTest, FlatAndOldRunLengthRadianceFilesLoad)
{
    const std::string path     = TempPath("flat.hdr");
    const SimImage    expected = TestPicture(5, 3);
    WriteRgbe(path, expected);
    SimImage    image;
    std::string error;
    ASSERT_TRUE(LoadRadianceMap(path, &image, &error)) << error;
    ExpectNear(image, expected, 1.0F / 128.0F);

    // A 1, 1, 1, n pixel repeats the one before it n times.
    const auto  pixel = EncodeRgbe(2.0F, 1.0F, 0.5F);
    std::string bytes = "#?RGBE\n\n-Y 1 +X 4\n";
    bytes.append(pixel.begin(), pixel.end());
    bytes += {1, 1, 1, 3};
    std::ofstream(path, std::ios::binary) << bytes;
    ASSERT_TRUE(LoadRadianceMap(path, &image, &error)) << error;
    ASSERT_EQ(image.width, 4U);
    EXPECT_NEAR(image.rgb[9], 2.0F, 2.0F / 128.0F);
    EXPECT_NEAR(image.rgb[11], 0.5F, 2.0F / 128.0F);
    std::remove(path.c_str());
}

TEST(SimRadianceMapTest, DamagedFilesAreRefusedWithAReason)
{
    const std::string path = TempPath("damaged.hdr");
    WriteRgbe(path, TestPicture(40, 6));
    std::string bytes;
    {
        std::ifstream file(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
    std::ofstream(path, std::ios::binary) << bytes.substr(0, bytes.size() - 10);
    SimImage    image;
    std::string error;
    EXPECT_FALSE(LoadRadianceMap(path, &image, &error));
    EXPECT_NE(error.find("scanline 5"), std::string::npos) << error;
    std::ofstream(path, std::ios::binary) << "#?RADIANCE\nFORMAT=32-bit_rle_xyze\n\n-Y 1 +X 1\n";
    EXPECT_FALSE(LoadRadianceMap(path, &image, &error));
    EXPECT_NE(error.find("format"), std::string::npos) << error;
    std::ofstream(path, std::ios::binary) << "P6\n1 1\n255\n";
    EXPECT_FALSE(LoadRadianceMap(path, &image, &error));
    EXPECT_NE(error.find("neither"), std::string::npos) << error;
    std::remove(path.c_str());
}

TEST(SimRadianceMapTest, OpenExrPanoramaLoads)
{
    if (0 != access(InteriorMap.c_str(), R_OK))
    {
        GTEST_SKIP() << InteriorMap << " is not installed";
    }
    SimImage    image;
    std::string error;
    ASSERT_TRUE(LoadRadianceMap(InteriorMap, &image, &error)) << error;
    EXPECT_GT(image.width, 0U);
    EXPECT_EQ(image.rgb.size(), static_cast<size_t>(image.width) * image.height * 3U);
    EXPECT_TRUE(std::all_of(image.rgb.begin(), image.rgb.end(), [](float v) { return std::isfinite(v) && v >= 0; }));
    EXPECT_GT(MeanLuminance(image), 0.0);

    SimSceneSpec spec = Spec("hdr", 120.0F);
    spec.path         = InteriorMap;
    auto pScene       = CreateScene(spec, 128, 96, &error);
    ASSERT_NE(pScene, nullptr) << error;
    EXPECT_EQ(pScene->Name(), "interior.exr");
    SimImage view;
    pScene->Render(0.5F, 1.0F, &view);
    EXPECT_EQ(view.width, 128U);
    EXPECT_GT(MeanLuminance(view), 0.0);
}

TEST(SimRadianceMapTest, PanoramaIsScaledToTheMeanLuminanceOverAllViews)
{
    // A uniform panorama looks the same everywhere: every view has the requested mean.
    const std::string path    = TempPath("uniform.hdr");
    SimImage          uniform = TestPicture(64, 32);
    std::fill(uniform.rgb.begin(), uniform.rgb.end(), 0.25F);
    WriteRgbe(path, uniform);
    SimSceneSpec spec = Spec("hdr", 300.0F);
    spec.path         = path;
    std::string error;
    auto        pScene = CreateScene(spec, 64, 48, &error);
    ASSERT_NE(pScene, nullptr) << error;
    SimImage view;
    for (float pan : {0.0F, 0.37F, 1.0F})
    {
        pScene->Render(pan, 1.0F, &view);
        EXPECT_NEAR(MeanLuminance(view), 300.0, 0.01) << pan;
    }
    pScene->Render(0.5F, 0.25F, &view);
    EXPECT_NEAR(MeanLuminance(view), 75.0, 0.01);

    // Half bright, half dark: the views differ, and their average over the whole turn is the requested mean.
    SimImage halves = uniform;
    for (uint32_t y = 0; y < halves.height; y++)
    {
        for (uint32_t x = 0; x < halves.width; x++)
        {
            std::fill_n(&halves.rgb[(y * halves.width + x) * 3U], 3, (x < 32) ? 4.0F : 1.0F);
        }
    }
    WriteRgbe(path, halves);
    pScene = CreateScene(spec, 64, 48, &error);
    ASSERT_NE(pScene, nullptr) << error;
    double sum = 0.0;
    for (int i = 0; i < 64; i++)
    {
        pScene->Render(static_cast<float>(i) / 64.0F, 1.0F, &view);
        sum += MeanLuminance(view);
    }
    EXPECT_NEAR(sum / 64.0, 300.0, 300.0 * 0.01);
    pScene->Render(0.25F, 1.0F, &view);
    const double bright = MeanLuminance(view);
    pScene->Render(0.75F, 1.0F, &view);
    EXPECT_NEAR(bright / MeanLuminance(view), 4.0, 0.01);
    std::remove(path.c_str());
}
