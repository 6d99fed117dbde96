// Bayer grid and Bayer histogram of a simulated raw frame, in the records the library parses.
#include "cstatsgenerator.h"

#include <algorithm>

namespace
{

// Bayer channels in the generator's order: R, GR, GB, B.
constexpr uint32_t ChannelCount = 4;
constexpr uint32_t ChR          = 0;
constexpr uint32_t ChGR         = 1;
constexpr uint32_t ChGB         = 2;
constexpr uint32_t ChB          = 3;

constexpr StatsColorChannelType ChannelTypes[ChannelCount] = {StatsColorChannelR, StatsColorChannelGR,
                                                               StatsColorChannelGB, StatsColorChannelB};

// Sums and counts of one region's channels in simulated pixels.
struct RegionTally
{
    uint64_t sum[ChannelCount];
    uint64_t count[ChannelCount];
    uint64_t satSum[ChannelCount];
    uint64_t satCount[ChannelCount];
};

// value * numerator / denominator rounded to the nearest integer, in 64 bits.
uint64_t ScaleRounded(uint64_t value, uint64_t numerator, uint64_t denominator)
{
    return (value * numerator + denominator / 2U) / denominator;
}

uint32_t Log2(uint32_t value)
{
    uint32_t bits = 0;
    while ((1U << (bits + 1U)) <= value)
    {
        bits++;
    }
    return bits;
}

} // namespace

uint32_t StatsCode(uint32_t raw, uint32_t blackLevel, uint32_t bitDepth)
{
    const uint32_t maxCode = (1U << bitDepth) - 1U;
    if (raw <= blackLevel)
    {
        return 0;
    }
    const uint64_t range = maxCode - blackLevel;
    return static_cast<uint32_t>(std::min<uint64_t>(ScaleRounded(raw - blackLevel, maxCode, range), maxCode));
}

void StatsRegionSize(const SimSensorDesc& desc, uint32_t* pRegionWidth, uint32_t* pRegionHeight)
{
    uint32_t regionWidth  = std::max(2U, desc.width / std::max(1U, desc.gridColumns));
    uint32_t regionHeight = std::max(2U, desc.height / std::max(1U, desc.gridRows));
    // Like a pipeline that subsamples its statistics, so that counts fit UINT16.
    while (static_cast<uint64_t>(regionWidth) * regionHeight / 4U > UINT16_MAX)
    {
        regionWidth /= 2U;
        regionHeight /= 2U;
    }
    *pRegionWidth  = regionWidth;
    *pRegionHeight = regionHeight;
}

CStatsGenerator::CStatsGenerator(const SimSensorDesc& desc)
    : m_desc(desc), m_satThreshold(), m_regions(), m_histogram(), m_grid(), m_hist()
{
    const uint32_t maxCode = (1U << m_desc.bitDepth) - 1U;
    std::fill(std::begin(m_satThreshold), std::end(m_satThreshold), maxCode);
}

void CStatsGenerator::SetSaturationThresholds(const uint32_t thresholds[4])
{
    std::copy(thresholds, thresholds + ChannelCount, m_satThreshold);
}

void CStatsGenerator::Generate(const SimRawFrame& givenFrame)
{
    // A frame without a whole Bayer quad or with a short buffer reads as one black quad rather than past its end.
    const bool validFrame = (givenFrame.width >= 2U) && (givenFrame.height >= 2U) &&
                            (givenFrame.bayer.size() >= static_cast<size_t>(givenFrame.width) * givenFrame.height);
    SimRawFrame blackQuad;
    if (!validFrame)
    {
        blackQuad.width      = 2;
        blackQuad.height     = 2;
        blackQuad.bitDepth   = givenFrame.bitDepth;
        blackQuad.blackLevel = givenFrame.blackLevel;
        blackQuad.bayer.assign(4, static_cast<uint16_t>(givenFrame.blackLevel));
    }
    const SimRawFrame& frame = validFrame ? givenFrame : blackQuad;

    // A description that was not checked may ask for no regions or bins; one of each keeps the records valid.
    const uint32_t columns     = std::max(1U, m_desc.gridColumns);
    const uint32_t rows        = std::max(1U, m_desc.gridRows);
    const uint32_t quadColumns = frame.width / 2U;
    const uint32_t quadRows    = frame.height / 2U;
    const uint32_t bins        = std::max(1U, m_desc.histogramBins);
    const uint32_t binShift    = (frame.bitDepth > Log2(bins)) ? (frame.bitDepth - Log2(bins)) : 0U;

    uint32_t regionWidth  = 0;
    uint32_t regionHeight = 0;
    StatsRegionSize(m_desc, &regionWidth, &regionHeight);
    // The library takes a region's channel to hold regionWidth * regionHeight / 4 pixels; the scaled counts of the
    // non-saturated and saturated pixels add up to exactly that.
    const uint64_t realPerChannel = static_cast<uint64_t>(regionWidth) * regionHeight / 4U;

    std::vector<uint64_t> histogram[ChannelCount];
    for (std::vector<uint64_t>& rChannel : histogram)
    {
        rChannel.assign(bins, 0);
    }
    auto codeAt = [&frame](uint32_t x, uint32_t y) {
        return StatsCode(frame.bayer[static_cast<size_t>(y) * frame.width + x], frame.blackLevel, frame.bitDepth);
    };

    m_regions.assign(static_cast<size_t>(columns) * rows, StatsBayerGridChannelInfoS_Sat{});
    for (uint32_t r = 0; r < rows; r++)
    {
        // Every region covers at least one quad, so that no region reports an empty channel.
        const uint32_t qy0 = r * quadRows / rows;
        const uint32_t qy1 = std::max(qy0 + 1U, (r + 1U) * quadRows / rows);
        for (uint32_t c = 0; c < columns; c++)
        {
            const uint32_t qx0   = c * quadColumns / columns;
            const uint32_t qx1   = std::max(qx0 + 1U, (c + 1U) * quadColumns / columns);
            RegionTally    tally = {};
            for (uint32_t qy = qy0; qy < qy1; qy++)
            {
                for (uint32_t qx = qx0; qx < qx1; qx++)
                {
                    const uint32_t codes[ChannelCount] = {codeAt(2 * qx, 2 * qy), codeAt(2 * qx + 1, 2 * qy),
                                                          codeAt(2 * qx, 2 * qy + 1), codeAt(2 * qx + 1, 2 * qy + 1)};
                    for (uint32_t ch = 0; ch < ChannelCount; ch++)
                    {
                        const bool saturated = codes[ch] >= m_satThreshold[ch];
                        (saturated ? tally.satSum : tally.sum)[ch] += codes[ch];
                        (saturated ? tally.satCount : tally.count)[ch] += 1U;
                    }
                }
            }
            const uint64_t simPerChannel = static_cast<uint64_t>(qx1 - qx0) * (qy1 - qy0);
            uint32_t       sum[ChannelCount];
            uint16_t       count[ChannelCount];
            uint32_t       satSum[ChannelCount];
            uint16_t       satCount[ChannelCount];
            for (uint32_t ch = 0; ch < ChannelCount; ch++)
            {
                count[ch]    = static_cast<uint16_t>(ScaleRounded(tally.count[ch], realPerChannel, simPerChannel));
                satCount[ch] = static_cast<uint16_t>(realPerChannel - count[ch]);
                sum[ch]      = static_cast<uint32_t>(ScaleRounded(tally.sum[ch], realPerChannel, simPerChannel));
                satSum[ch]   = static_cast<uint32_t>(ScaleRounded(tally.satSum[ch], realPerChannel, simPerChannel));
            }
            StatsBayerGridChannelInfoS_Sat& rRegion = m_regions[static_cast<size_t>(r) * columns + c];
            rRegion.base.RSum        = sum[ChR];
            rRegion.base.BSum        = sum[ChB];
            rRegion.base.GRSum       = sum[ChGR];
            rRegion.base.GBSum       = sum[ChGB];
            rRegion.base.RCount      = count[ChR];
            rRegion.base.BCount      = count[ChB];
            rRegion.base.GRCount     = count[ChGR];
            rRegion.base.GBCount     = count[ChGB];
            rRegion.saturatedRSum    = satSum[ChR];
            rRegion.saturatedBSum    = satSum[ChB];
            rRegion.saturatedGRSum   = satSum[ChGR];
            rRegion.saturatedGBSum   = satSum[ChGB];
            rRegion.saturatedRCount  = satCount[ChR];
            rRegion.saturatedBCount  = satCount[ChB];
            rRegion.saturatedGRCount = satCount[ChGR];
            rRegion.saturatedGBCount = satCount[ChGB];
        }
    }

    for (uint32_t qy = 0; qy < quadRows; qy++)
    {
        for (uint32_t qx = 0; qx < quadColumns; qx++)
        {
            histogram[ChR][codeAt(2 * qx, 2 * qy) >> binShift]++;
            histogram[ChGR][codeAt(2 * qx + 1, 2 * qy) >> binShift]++;
            histogram[ChGB][codeAt(2 * qx, 2 * qy + 1) >> binShift]++;
            histogram[ChB][codeAt(2 * qx + 1, 2 * qy + 1) >> binShift]++;
        }
    }
    // Scaling the cumulative counts keeps every channel's total at exactly the sensor's pixels of that channel.
    const uint64_t simPixels  = static_cast<uint64_t>(quadColumns) * quadRows;
    const uint64_t realPixels = static_cast<uint64_t>(m_desc.width) * m_desc.height / 4U;
    for (uint32_t ch = 0; ch < ChannelCount; ch++)
    {
        m_histogram[ch].assign(bins, 0);
        uint64_t cumulative = 0;
        uint64_t previous   = 0;
        for (uint32_t b = 0; b < bins; b++)
        {
            cumulative += histogram[ch][b];
            const uint64_t scaled = (simPixels > 0) ? ScaleRounded(cumulative, realPixels, simPixels) : 0U;
            m_histogram[ch][b]    = static_cast<uint32_t>(scaled - previous);
            previous              = scaled;
        }
    }

    m_grid = StatsBayerGrid{};
    for (uint32_t ch = 0; ch < ChannelCount; ch++)
    {
        m_grid.gridDataType[ch] = ChannelTypes[ch];
    }
    m_grid.horizontalRegionCount = columns;
    m_grid.verticalRegionCount   = rows;
    m_grid.totalRegionCount      = columns * rows;
    m_grid.regionWidth           = regionWidth;
    m_grid.regionHeight          = regionHeight;
    m_grid.bitDepth              = static_cast<UINT16>(frame.bitDepth);
    m_grid.flags.hasSatInfo      = 1;
    // The grid record orders its thresholds R, B, GR, GB.
    m_grid.satThreshold[0]  = m_satThreshold[ChR];
    m_grid.satThreshold[1]  = m_satThreshold[ChB];
    m_grid.satThreshold[2]  = m_satThreshold[ChGR];
    m_grid.satThreshold[3]  = m_satThreshold[ChGB];
    m_grid.numValidRegions  = columns * rows;
    m_grid.startupMode      = StatisticsStartUpValid;
    m_grid.exposureType     = AECAlgoExposureSafe;
    // With hasSatInfo the array's elements are the larger records, each starting with the plain one.
    m_grid.m_pChannelData = &m_regions.front().base;

    m_hist = StatsBayerHist{};
    m_hist.channelCount = ChannelCount;
    for (uint32_t ch = 0; ch < ChannelCount; ch++)
    {
        m_hist.pHistData[ch]    = m_histogram[ch].data();
        m_hist.histDataType[ch] = ChannelTypes[ch];
    }
    m_hist.binCount     = bins;
    m_hist.startupMode  = StatisticsStartUpValid;
    m_hist.uniform      = TRUE;
    m_hist.exposureType = AECAlgoExposureSafe;
}
