// One statistics frame, with its tuning and white balance, decoded from fuzzer bytes into buffers the decoder owns.
//
// Input layout (little endian), fixed headers first so that mutations keep their meaning:
//   control (16 bytes) | main, LEF, MEF grid headers (52 each) | bayerHist, hdrBayerHist, hdrBayerHistLEF,
//   hdrBayerHistMEF headers (15 each) | HDR3 header (91) | query parameters (32) | data pool (the rest).
// Control bytes: sensor mode, HDR3 type, tuning flags (bits 0-1 subsampling, 2 ADRC saturation control, 3 colour
// compensation, 4 AWB auto, 5 in-sensor HDR, 6-7 luma calculation config), pointer flags (bits 0-5: null statistics,
// null AWB, no tuning, null sensor HDR tuning, null HDR3 statistics, null core tuning), DRC gain choice, AWB gains,
// reference gains, luma weights, frame count (1 or 2), reserved.
// Every buffer is sized from its header, exactly as far as the header allows the parser to read (grid records: the
// valid regions of the grid; per-channel grid arrays: the grid's regions; histograms: binCount per channel), and is
// filled from the data pool, which repeats when it runs out. A read past a buffer is a read the header did not allow.
// tests/fuzz/makecorpus.py writes the same layout.
#ifndef TESTS_FUZZ_CFUZZSTATISTICS_H
#define TESTS_FUZZ_CFUZZSTATISTICS_H

#include <memory>
#include <vector>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "fuzz/cfuzzreader.h"

class CFuzzStatistics
{
public:
    static constexpr UINT32 QueryBytes = 32;
    // The parser takes at most this many grid regions; no header lets it read more.
    static constexpr UINT64 MaxGridRegions = 3072;
    // The parser takes at most 1024 bins; larger counts must be refused before any read.
    static constexpr UINT64 MaxHistBins = 8192;

    explicit CFuzzStatistics(CFuzzReader& reader);

    // Null where the input asks the parser to be handed a null pointer.
    const AECStatistics*            Stats() const;
    const AECAlgoWhiteBalanceState* WhiteBalance() const;
    const MeteringTuningDataType*   Tuning() const;

    AECAlgoHDRType SensorMode() const { return m_sensorMode; }
    FLOAT          DRCGain() const { return m_drcGain; }
    UINT32         FrameCount() const { return m_frameCount; }
    const UINT8*   Query() const { return m_query; }

private:
    VOID DecodeControl(CFuzzReader& reader);
    VOID DecodeGrid(CFuzzReader& reader, StatsBayerGrid* pGrid, UINT8* pNullMask);
    VOID DecodeHist(CFuzzReader& reader, StatsBayerHist* pHist, UINT8* pNullMask);
    VOID DecodeHDR3Hist(CFuzzReader& reader, StatsHDR3ExposureHistStats* pHist, UINT8* pNullMask);
    VOID FillGrid(StatsBayerGrid* pGrid, UINT8 nullMask);
    UINT8* Buffer(UINT64 bytes);

    static StatsColorChannelType Channel(UINT8 raw);

    AECStatistics                       m_stats;
    StatsHDR3ExposureDataType           m_hdr3;
    aecMetering::AECCoreMeteringType    m_core;
    aecSensorConfig::AECSensorHDRConfig m_sensorHDR;
    MeteringTuningDataType              m_tuning;
    AECAlgoWhiteBalanceState            m_wb;
    AECAlgoHDRType                      m_sensorMode;
    FLOAT                               m_drcGain;
    UINT32                              m_frameCount;
    UINT8                               m_pointerFlags;
    UINT8                               m_query[QueryBytes];
    const UINT8*                        m_pPool;
    size_t                              m_poolSize;
    size_t                              m_poolPos;
    std::vector<std::unique_ptr<UINT8[]>> m_buffers;
};

#endif // TESTS_FUZZ_CFUZZSTATISTICS_H
