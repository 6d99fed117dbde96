// Synthetic statistics for tests, fuzzers and benchmarks: a described image turned into host grid and histogram records.
//
// API:
//   CSyntheticStats stats(h, v, regionW, regionH, bitDepth, layout, withSatInfo);   // large: hold it on the heap
//   SyntheticRegion r = SyntheticRegion::Uniform(value, satShare);    // value per channel, share of saturated pixels
//   stats.Fill(r);  stats.SetRegion(x, y, r);  stats.SetSatThreshold(t);
//   stats.SetHistBins(256);               // 256 or 1024 (default) histogram bins
//   stats.Build();                        // (re)writes the region records and the histogram
//   stats.Grid(), stats.Hist()            // StatsBayerGrid and StatsBayerHist pointing into owned storage
//   stats.FillStatistics(&aecStatistics)  // bayerGrid and bayerHist of an AECStatistics, everything else empty
// Channel slots are R, B, GR, GB; in the Y layouts GR carries G and GB carries Y (the onlyY layout reads R and Y).
// Non-saturated pixels of a slot all take the slot's value; saturated ones sit at the slot's threshold.
// The histogram has R, GR and B channels with one entry per pixel, bins of the value scaled to 8 or 10 bits.
#ifndef TESTS_SUPPORT_SYNTHETICSTATS_H
#define TESTS_SUPPORT_SYNTHETICSTATS_H

#include "aec/core/include/aeccorecommon.h"

enum class SyntheticLayout
{
    RGGB, // four Bayer channels
    RGBY, // R, B, G and Y
    OnlyY // Y only
};

struct SyntheticRegion
{
    UINT32 value[4];    // value of the non-saturated pixels of each slot, at the grid's bit depth
    FLOAT  satShare[4]; // share of each slot's pixels that are saturated, 0..1

    static SyntheticRegion Uniform(UINT32 value, FLOAT satShare = 0.0f)
    {
        return {{value, value, value, value}, {satShare, satShare, satShare, satShare}};
    }
};

class CSyntheticStats
{
public:
    static constexpr UINT32 MaxRegions  = 3072;
    static constexpr UINT32 HistBins    = 1024; // storage: the most bins a histogram may have
    static constexpr UINT32 HistChannel = 3;

    CSyntheticStats(UINT32 h, UINT32 v, UINT32 regionW, UINT32 regionH, UINT16 bitDepth, SyntheticLayout layout,
                    BOOL withSatInfo);

    VOID SetRegion(UINT32 x, UINT32 y, const SyntheticRegion& region) { m_regions[x + y * m_h] = region; }
    VOID Fill(const SyntheticRegion& region);
    VOID SetSatThreshold(UINT32 threshold);
    // 256 or 1024 (the default) histogram bins; takes effect at the next Build().
    VOID SetHistBins(UINT32 bins) { m_histBits = (bins <= 256) ? 8 : 10; }
    VOID Build();

    // Pixels per region and slot, as the parser counts them.
    UINT64 PixelsPerSlot() const;
    UINT32 SatThreshold() const { return m_grid.satThreshold[0]; }
    const SyntheticRegion& Region(UINT32 x, UINT32 y) const { return m_regions[x + y * m_h]; }
    UINT32 NonSatCount(const SyntheticRegion& region, UINT32 slot) const;

    StatsBayerGrid&       Grid() { return m_grid; }
    StatsBayerHist&       Hist() { return m_hist; }
    const UINT32*         HistData(UINT32 channel) const { return m_histData[channel]; }
    VOID                  FillStatistics(AECStatistics* pStats);

private:
    UINT32                         m_h;
    UINT32                         m_v;
    SyntheticLayout                m_layout;
    UINT32                         m_histBits = 10;
    StatsBayerGrid                 m_grid;
    StatsBayerHist                 m_hist;
    SyntheticRegion                m_regions[MaxRegions];
    StatsBayerGridChannelInfoS     m_plain[MaxRegions];
    StatsBayerGridChannelInfoS_Sat m_sat[MaxRegions];
    UINT32                         m_histData[HistChannel][HistBins];
};

#endif // TESTS_SUPPORT_SYNTHETICSTATS_H
