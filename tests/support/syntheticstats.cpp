// Builds host grid and histogram records from a described synthetic image.
#include "support/syntheticstats.h"

#include <cmath>
#include <cstring>

CSyntheticStats::CSyntheticStats(UINT32 h, UINT32 v, UINT32 regionW, UINT32 regionH, UINT16 bitDepth,
                                 SyntheticLayout layout, BOOL withSatInfo)
    : m_h(h)
    , m_v(v)
    , m_layout(layout)
{
    std::memset(&m_grid, 0, sizeof(m_grid));
    std::memset(&m_hist, 0, sizeof(m_hist));
    std::memset(m_regions, 0, sizeof(m_regions));
    m_grid.horizontalRegionCount = h;
    m_grid.verticalRegionCount   = v;
    m_grid.totalRegionCount      = h * v;
    m_grid.numValidRegions       = h * v;
    m_grid.regionWidth           = regionW;
    m_grid.regionHeight          = regionH;
    m_grid.bitDepth              = bitDepth;
    m_grid.flags.usesY           = (SyntheticLayout::RGGB != layout) ? 1 : 0;
    m_grid.flags.onlyY           = (SyntheticLayout::OnlyY == layout) ? 1 : 0;
    m_grid.flags.hasSatInfo      = (FALSE != withSatInfo) ? 1 : 0;
    SetSatThreshold((1u << bitDepth) - 1);
    Build();
}

VOID CSyntheticStats::Fill(const SyntheticRegion& region)
{
    for (UINT32 i = 0; i < m_h * m_v && i < MaxRegions; i++)
    {
        m_regions[i] = region;
    }
}

VOID CSyntheticStats::SetSatThreshold(UINT32 threshold)
{
    for (UINT32& t : m_grid.satThreshold)
    {
        t = threshold;
    }
}

UINT64 CSyntheticStats::PixelsPerSlot() const
{
    const UINT64 pix = static_cast<UINT64>(m_grid.regionWidth) * m_grid.regionHeight;
    return (SyntheticLayout::OnlyY == m_layout) ? pix : pix / 4;
}

UINT32 CSyntheticStats::NonSatCount(const SyntheticRegion& region, UINT32 slot) const
{
    const FLOAT pix = static_cast<FLOAT>(PixelsPerSlot());
    return static_cast<UINT32>(std::lround(pix * (1.0f - region.satShare[slot])));
}

VOID CSyntheticStats::Build()
{
    std::memset(m_plain, 0, sizeof(m_plain));
    std::memset(m_sat, 0, sizeof(m_sat));
    std::memset(m_histData, 0, sizeof(m_histData));
    const UINT64 pix      = PixelsPerSlot();
    const UINT32 depth    = m_grid.bitDepth;
    const UINT32 regions  = (m_h * m_v < MaxRegions) ? (m_h * m_v) : MaxRegions;
    // Histogram channels R, GR, B come from slots 0, 2, 1.
    const UINT32 histSlot[HistChannel] = {0, 2, 1};
    for (UINT32 i = 0; i < regions; i++)
    {
        const SyntheticRegion& region = m_regions[i];
        UINT32                 count[4];
        UINT32                 sum[4];
        for (UINT32 s = 0; s < 4; s++)
        {
            count[s] = NonSatCount(region, s);
            sum[s]   = count[s] * region.value[s];
        }
        StatsBayerGridChannelInfoS& rec = m_plain[i];
        rec.RSum                        = sum[0];
        rec.BSum                        = sum[1];
        rec.GRSum                       = sum[2];
        rec.GBSum                       = sum[3];
        rec.RCount                      = static_cast<UINT16>(count[0]);
        rec.BCount                      = static_cast<UINT16>(count[1]);
        rec.GRCount                     = static_cast<UINT16>(count[2]);
        rec.GBCount                     = static_cast<UINT16>(count[3]);
        StatsBayerGridChannelInfoS_Sat& sat = m_sat[i];
        sat.base                            = rec;
        UINT32* const satSums[4]   = {&sat.saturatedRSum, &sat.saturatedBSum, &sat.saturatedGRSum, &sat.saturatedGBSum};
        UINT16* const satCounts[4] = {&sat.saturatedRCount, &sat.saturatedBCount, &sat.saturatedGRCount,
                                      &sat.saturatedGBCount};
        for (UINT32 s = 0; s < 4; s++)
        {
            const UINT32 satCount = static_cast<UINT32>(pix) - count[s];
            *satCounts[s]         = static_cast<UINT16>(satCount);
            *satSums[s]           = satCount * m_grid.satThreshold[s];
        }
        for (UINT32 c = 0; c < HistChannel; c++)
        {
            const UINT32 s      = histSlot[c];
            const UINT32 bits  = m_histBits;
            const UINT32 bins  = 1U << bits;
            auto         binOf = [depth, bits, bins](UINT32 value) {
                const UINT32 bin = (depth >= bits) ? (value >> (depth - bits)) : (value << (bits - depth));
                return (bin < bins) ? bin : (bins - 1);
            };
            m_histData[c][binOf(region.value[s])] += count[s];
            m_histData[c][binOf(m_grid.satThreshold[s])] += static_cast<UINT32>(pix) - count[s];
        }
    }
    m_grid.m_pChannelData = (0 != m_grid.flags.hasSatInfo) ? reinterpret_cast<StatsBayerGridChannelInfo*>(m_sat)
                                                           : m_plain;
    m_hist.channelCount    = HistChannel;
    m_hist.binCount        = 1U << m_histBits;
    m_hist.uniform         = 1;
    m_hist.pHistData[0]    = m_histData[0];
    m_hist.pHistData[1]    = m_histData[1];
    m_hist.pHistData[2]    = m_histData[2];
    m_hist.pHistData[3]    = nullptr;
    m_hist.histDataType[0] = StatsColorChannelR;
    m_hist.histDataType[1] = StatsColorChannelGR;
    m_hist.histDataType[2] = StatsColorChannelB;
    m_hist.histDataType[3] = StatsColorChannelInvalid;
}

VOID CSyntheticStats::FillStatistics(AECStatistics* pStats)
{
    std::memset(pStats, 0, sizeof(*pStats));
    pStats->bayerGrid = m_grid;
    pStats->bayerHist = m_hist;
}
