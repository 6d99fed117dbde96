// Decodes fuzzer bytes into a statistics frame whose every buffer is exactly as large as its header says.
#include "fuzz/cfuzzstatistics.h"

#include <algorithm>
#include <cstring>

#include "aecdefaulttuning.h"

namespace
{
// DRC compensation gains a frame may carry; all positive, as the core hands them over.
const FLOAT kDRCGains[8] = {1.0f, 4.0f, 0.5f, 2.0f, 0.25f, 16.0f, 0.001f, 1000.0f};

constexpr UINT8 kNullStats     = 0x01;
constexpr UINT8 kNullAWB       = 0x02;
constexpr UINT8 kNoTuning      = 0x04;
constexpr UINT8 kNullSensorHDR = 0x08;
constexpr UINT8 kNullHDR3      = 0x10;
constexpr UINT8 kNullCore      = 0x20;

// Grid null mask: bit 0 region records, bits 1 to 4 the per-channel arrays.
constexpr UINT8 kNullChannelData = 0x01;

// Regions of the grid's shape, as far as the parser takes them.
UINT64 GridRegions(const StatsBayerGrid& grid)
{
    const UINT64 regions = static_cast<UINT64>(grid.horizontalRegionCount) * grid.verticalRegionCount;
    return std::min(regions, CFuzzStatistics::MaxGridRegions);
}
} // namespace

CFuzzStatistics::CFuzzStatistics(CFuzzReader& reader)
    : m_sensorMode(HDRDisabled)
    , m_drcGain(1.0f)
    , m_frameCount(1)
    , m_pointerFlags(0)
    , m_pPool(nullptr)
    , m_poolSize(0)
    , m_poolPos(0)
{
    std::memset(&m_stats, 0, sizeof(m_stats));
    std::memset(&m_hdr3, 0, sizeof(m_hdr3));
    std::memset(&m_wb, 0, sizeof(m_wb));
    std::memset(&m_tuning, 0, sizeof(m_tuning));
    FillDefaultAECCoreMeteringType(&m_core);
    FillDefaultAECSensorHDRConfig(&m_sensorHDR);

    DecodeControl(reader);
    StatsBayerGrid* const grids[4] = {&m_stats.bayerGrid, &m_stats.bayerGridLEF, &m_stats.bayerGridMEF,
                                      &m_hdr3.gridBayerStats};
    UINT8                 gridNull[4];
    for (UINT32 i = 0; i < 3; i++)
    {
        DecodeGrid(reader, grids[i], &gridNull[i]);
    }
    StatsBayerHist* const hists[4] = {&m_stats.bayerHist, &m_stats.hdrBayerHist, &m_stats.hdrBayerHistLEF,
                                      &m_stats.hdrBayerHistMEF};
    UINT8                 histNull[4];
    for (UINT32 i = 0; i < 4; i++)
    {
        DecodeHist(reader, hists[i], &histNull[i]);
    }
    m_stats.hdr3Stats.startupMode = static_cast<StatisticsStartUp>(reader.U8() & 1);
    m_hdr3.splitHistchannelCount  = reader.U32();
    m_hdr3.mergedHistchannelCount = reader.U32();
    StatsHDR3ExposureHistStats* const hdr3Hists[2] = {&m_hdr3.splitBayerHist, &m_hdr3.mergedBayerHist};
    UINT8                             hdr3Null[2];
    for (UINT32 i = 0; i < 2; i++)
    {
        DecodeHDR3Hist(reader, hdr3Hists[i], &hdr3Null[i]);
    }
    DecodeGrid(reader, grids[3], &gridNull[3]);
    for (UINT8& q : m_query)
    {
        q = reader.U8();
    }

    m_pPool    = reader.Rest();
    m_poolSize = reader.RestSize();
    for (UINT32 i = 0; i < 4; i++)
    {
        FillGrid(grids[i], gridNull[i]);
    }
    for (UINT32 i = 0; i < 4; i++)
    {
        const UINT64 bins = std::min(static_cast<UINT64>(hists[i]->binCount), MaxHistBins);
        for (UINT32 c = 0; c < 4; c++)
        {
            UINT8* pData           = Buffer(bins * sizeof(UINT32));
            hists[i]->pHistData[c] = (0 != (histNull[i] & (1u << c))) ? nullptr : reinterpret_cast<UINT32*>(pData);
        }
    }
    for (UINT32 i = 0; i < 2; i++)
    {
        const UINT64 bins = std::min(static_cast<UINT64>(hdr3Hists[i]->binCount), MaxHistBins);
        for (UINT32 c = 0; c < 4; c++)
        {
            UINT8* pData               = Buffer(bins * sizeof(UINT32));
            hdr3Hists[i]->pHistData[c] = (0 != (hdr3Null[i] & (1u << c))) ? nullptr : reinterpret_cast<UINT32*>(pData);
        }
    }
    m_stats.hdr3Stats.pHDR3ExposureStats = (0 != (m_pointerFlags & kNullHDR3)) ? nullptr : &m_hdr3;
}

const AECStatistics* CFuzzStatistics::Stats() const
{
    return (0 != (m_pointerFlags & kNullStats)) ? nullptr : &m_stats;
}

const AECAlgoWhiteBalanceState* CFuzzStatistics::WhiteBalance() const
{
    return (0 != (m_pointerFlags & kNullAWB)) ? nullptr : &m_wb;
}

const MeteringTuningDataType* CFuzzStatistics::Tuning() const
{
    return (0 != (m_pointerFlags & kNoTuning)) ? nullptr : &m_tuning;
}

VOID CFuzzStatistics::DecodeControl(CFuzzReader& reader)
{
    m_sensorMode                       = static_cast<AECAlgoHDRType>(reader.U8() % 6);
    m_stats.hdr3Stats.HDR3ExposureType = static_cast<HDR3ExposureType>(reader.U8());
    const UINT8 tuningFlags            = reader.U8();
    m_pointerFlags                     = reader.U8();
    m_drcGain                          = kDRCGains[reader.U8() % 8];
    m_wb.redGain                       = reader.U8() / 64.0f;
    m_wb.greenGain                     = reader.U8() / 64.0f;
    m_wb.blueGain                      = reader.U8() / 64.0f;
    m_wb.isAuto                        = (0 != (tuningFlags & 0x10)) ? 1 : 0;

    auto& luma = m_core.mtrLumaCalc;
    for (UINT32 i = 0; i < 3; i++)
    {
        luma.lumaWeight.refGain[i] = reader.U8() / 64.0f;
    }
    for (UINT32 i = 0; i < 3; i++)
    {
        luma.lumaWeight.weight[i] = reader.U8() / 255.0f;
    }
    m_frameCount = 1 + (reader.U8() & 1);
    reader.U8(); // reserved

    luma.indexCalc.bayerGridSubsmplSelect     = static_cast<aecMetering::AECBayerGridSubsmplType>(tuningFlags & 3);
    m_tuning.ADRCSaturation.enableADRCSatCtrl = (tuningFlags >> 2) & 1;
    luma.lumaWeight.enableColorAndSensorComp  = (tuningFlags >> 3) & 1;
    m_tuning.extInsensorHDR.enableInsensorHDR = (tuningFlags >> 5) & 1;
    m_sensorHDR.LumaCalculationConfig = static_cast<aecSensorConfig::LumaCalculationType>(tuningFlags >> 6);
    m_tuning.pCore      = (0 != (m_pointerFlags & kNullCore)) ? nullptr : &m_core;
    m_tuning.pSensorHDR = (0 != (m_pointerFlags & kNullSensorHDR)) ? nullptr : &m_sensorHDR;
}

VOID CFuzzStatistics::DecodeGrid(CFuzzReader& reader, StatsBayerGrid* pGrid, UINT8* pNullMask)
{
    *pNullMask                   = reader.U8();
    pGrid->horizontalRegionCount = reader.U32();
    pGrid->verticalRegionCount   = reader.U32();
    pGrid->totalRegionCount      = reader.U32();
    pGrid->regionWidth           = reader.U32();
    pGrid->regionHeight          = reader.U32();
    pGrid->bitDepth              = reader.U16();
    const UINT32 flags           = reader.U32();
    pGrid->flags.usesY           = flags & 1;
    pGrid->flags.hasSatInfo      = (flags >> 1) & 1;
    pGrid->flags.onlyY           = (flags >> 2) & 1;
    pGrid->flags.reserved        = flags >> 3;
    for (UINT32& threshold : pGrid->satThreshold)
    {
        threshold = reader.U32();
    }
    pGrid->numValidRegions = reader.U32();
    pGrid->startupMode     = static_cast<StatisticsStartUp>(reader.U8() & 1);
    for (StatsColorChannelType& type : pGrid->gridDataType)
    {
        type = Channel(reader.U8());
    }
}

VOID CFuzzStatistics::DecodeHist(CFuzzReader& reader, StatsBayerHist* pHist, UINT8* pNullMask)
{
    *pNullMask          = reader.U8();
    pHist->channelCount = reader.U32();
    for (StatsColorChannelType& type : pHist->histDataType)
    {
        type = Channel(reader.U8());
    }
    pHist->binCount    = reader.U32();
    pHist->startupMode = static_cast<StatisticsStartUp>(reader.U8() & 1);
    pHist->uniform     = reader.U8();
}

VOID CFuzzStatistics::DecodeHDR3Hist(CFuzzReader& reader, StatsHDR3ExposureHistStats* pHist, UINT8* pNullMask)
{
    *pNullMask = reader.U8();
    for (StatsColorChannelType& type : pHist->histDataType)
    {
        type = Channel(reader.U8());
    }
    pHist->binCount       = reader.U32();
    pHist->totalHistCount = reader.U32();
    pHist->histWeightUnit = reader.U16();
}

VOID CFuzzStatistics::FillGrid(StatsBayerGrid* pGrid, UINT8 nullMask)
{
    // Region records exist for the valid regions only; the per-channel arrays hold one entry per grid region.
    const UINT64 regions = GridRegions(*pGrid);
    const UINT64 records = std::min(regions, static_cast<UINT64>(pGrid->numValidRegions));
    const UINT64 record  = (0 != pGrid->flags.hasSatInfo) ? sizeof(StatsBayerGridChannelInfoS_Sat)
                                                          : sizeof(StatsBayerGridChannelInfoS);
    UINT8*       pRecords = Buffer(records * record);
    pGrid->m_pChannelData =
        (0 != (nullMask & kNullChannelData)) ? nullptr : reinterpret_cast<StatsBayerGridChannelInfo*>(pRecords);
    for (UINT32 c = 0; c < 4; c++)
    {
        UINT8* pData        = Buffer(regions * sizeof(UINT16));
        pGrid->pGridData[c] = (0 != (nullMask & (2u << c))) ? nullptr : reinterpret_cast<UINT16*>(pData);
    }
}

UINT8* CFuzzStatistics::Buffer(UINT64 bytes)
{
    // A buffer of exactly this size, so that the address sanitizer reports the first byte beyond it.
    m_buffers.emplace_back(new UINT8[bytes]);
    UINT8* pData = m_buffers.back().get();
    if (0 == m_poolSize)
    {
        std::memset(pData, 0, bytes);
        return pData;
    }
    for (UINT64 done = 0; done < bytes;)
    {
        const UINT64 chunk = std::min(bytes - done, static_cast<UINT64>(m_poolSize - m_poolPos));
        std::memcpy(pData + done, m_pPool + m_poolPos, chunk);
        done += chunk;
        m_poolPos = (m_poolPos + chunk) % m_poolSize;
    }
    return pData;
}

StatsColorChannelType CFuzzStatistics::Channel(UINT8 raw)
{
    // -1 (invalid) to 5 (Y), and 6, which no host sends.
    return static_cast<StatsColorChannelType>(static_cast<INT32>(raw % 8) - 1);
}
