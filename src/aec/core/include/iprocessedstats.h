// Read-only view of one parsed statistics frame: grid regions, legacy Y grid and histogram percentile queries.
#ifndef AEC_CORE_INCLUDE_IPROCESSEDSTATS_H
#define AEC_CORE_INCLUDE_IPROCESSEDSTATS_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aecdebugdata.h"
#include "aec/core/modules/mod_mtr/bgstatsiterator.h"
#include "aectuningrecords.h"

// Queries give -1.0 on error; percentages are 0..1 and values are on the 8-bit luma scale.
class IProcessedStats
{
public:
    virtual ~IProcessedStats() = default;

    // A deep copy of all results, owned (and deleted) by the caller; null when memory is short.
    virtual IProcessedStats* Clone() const = 0;
    virtual BGStatsIterator  GetBGStatsIterator(BGStatsIterationMode mode) const = 0;
    virtual BGStatsIterator  GetBGStatsIterator(BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy, FLOAT LRx,
                                                FLOAT LRy) const = 0;
    virtual FLOAT GetBrightRegionRatio() const = 0;
    virtual FLOAT GetDarkRegionRatio() const = 0;
    virtual FLOAT GetNormalRegionRatio() const = 0;
    virtual const ParsedLegacyYRegionType* GetLegacyYRegionStats() const = 0;
    virtual const ParsedLegacyYRegionType* GetLegacyYRegionStats(INT& size) const = 0;
    virtual BHistProcInfo GetBHistProcInfo() const = 0;
    virtual FLOAT GetBHistPercentile2Value(UINT8 chnlIdx, FLOAT pct) const = 0;
    virtual FLOAT GetBHistValue2Percentile(UINT8 chnlIdx, FLOAT value) const = 0;
    virtual FLOAT GetBHistLEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const = 0;
    virtual FLOAT GetBHistMEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const = 0;
    virtual FLOAT GetBHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                         BOOL bIsWBCompensated) const = 0;
    // Gain that brings lumaAverage to target when the histogram clips above full scale.
    virtual FLOAT EstimateNonLinGain(FLOAT lumaAverage, FLOAT target, MinMaxRangeFloat pctlRange, UINT8 chnl,
                                     const aecMetering::NonLinearEstimateType* pTuning) const = 0;
    virtual VOID             FillDebugData(AECDebugData* pDebugData) const = 0;
    virtual HDR3HistProcInfo GetHDR3HistProcInfo() const = 0;
    virtual FLOAT GetmergeHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                             BOOL bIsWBCompensated) const = 0;
    virtual FLOAT GetRawSHDRSefHist(UINT8 chnl, UINT16 bin) const = 0;
    virtual FLOAT GetRawSHDRLefHist(UINT8 chnl, UINT16 bin) const = 0;
    virtual FLOAT GetRawSHDRMefHist(UINT8 chnl, UINT16 bin) const = 0;
    virtual FLOAT GetRawSHDRLEFBGstats(UINT16 idx) const = 0;
    virtual FLOAT GetRawSHDRSEFBGstats(UINT16 idx) const = 0;
    virtual FLOAT GetRawSHDRMEFBGstats(UINT16 idx) const = 0;
};

#endif // AEC_CORE_INCLUDE_IPROCESSEDSTATS_H
