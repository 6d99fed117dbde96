// Statistics parser of metering: Bayer grids and histograms into the fixed results behind IProcessedStats.
#ifndef AEC_CORE_MODULES_MOD_MTR_CSTATSPROCESSOR_H
#define AEC_CORE_MODULES_MOD_MTR_CSTATSPROCESSOR_H

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/iprocessedstats.h"

class CLegacyYGrid;

// Holds about a megabyte of fixed result tables: create it on the heap (or as a member of a heap object).
// Nothing is allocated per frame.
class CStatsProcessor
{
public:
    // All results of one frame; the view handed to the calculators.
    class CProcessedStats final : public IProcessedStats
    {
    public:
        CProcessedStats() { Initialize(); }

        VOID Initialize();

        IProcessedStats* Clone() const override;
        BGStatsIterator  GetBGStatsIterator(BGStatsIterationMode mode) const override;
        BGStatsIterator  GetBGStatsIterator(BGStatsIterationMode mode, FLOAT ULx, FLOAT ULy, FLOAT LRx,
                                            FLOAT LRy) const override;
        FLOAT            GetBrightRegionRatio() const override;
        FLOAT            GetDarkRegionRatio() const override;
        FLOAT            GetNormalRegionRatio() const override;
        const ParsedLegacyYRegionType* GetLegacyYRegionStats() const override;
        const ParsedLegacyYRegionType* GetLegacyYRegionStats(INT& size) const override;
        BHistProcInfo                  GetBHistProcInfo() const override;
        FLOAT GetBHistPercentile2Value(UINT8 chnlIdx, FLOAT pct) const override;
        FLOAT GetBHistValue2Percentile(UINT8 chnlIdx, FLOAT value) const override;
        FLOAT GetBHistLEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const override;
        FLOAT GetBHistMEFValue2Percentile(UINT8 chnlIdx, FLOAT value) const override;
        FLOAT GetBHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                     BOOL bIsWBCompensated) const override;
        FLOAT EstimateNonLinGain(FLOAT lumaAverage, FLOAT target, MinMaxRangeFloat pctlRange, UINT8 chnl,
                                 const aecMetering::NonLinearEstimateType* pTuning) const override;
        VOID             FillDebugData(AECDebugData* pDebugData) const override;
        HDR3HistProcInfo GetHDR3HistProcInfo() const override;
        FLOAT GetmergeHistAvgForPctRange(UINT8 chnlIdx, FLOAT startPct, FLOAT endPct,
                                         BOOL bIsWBCompensated) const override;
        FLOAT GetRawSHDRSefHist(UINT8 chnl, UINT16 bin) const override;
        FLOAT GetRawSHDRLefHist(UINT8 chnl, UINT16 bin) const override;
        FLOAT GetRawSHDRMefHist(UINT8 chnl, UINT16 bin) const override;
        FLOAT GetRawSHDRLEFBGstats(UINT16 idx) const override;
        FLOAT GetRawSHDRSEFBGstats(UINT16 idx) const override;
        FLOAT GetRawSHDRMEFBGstats(UINT16 idx) const override;

        // Bin whose cumulative share reaches percentile, and how far into that bin it lies (0..1).
        static VOID GetHistPercentileInDetail(FLOAT percentile, const FLOAT* pCdf, UINT16 numBins, UINT16* pBin,
                                              FLOAT* pFraction);
        // Secant search of the gain that brings the clipped range mean to target.
        FLOAT SearchHistLumaGain(MinMaxRangeFloat lumaThresRange, MinMaxRangeFloat pctlRange, UINT8 chnl,
                                 FLOAT target, const aecMetering::NonLinearEstimateType* pTuning) const;
        // Mean of pctlRange after a gain that sends lumaThreshold to full scale, everything above clipping.
        FLOAT CalculateNonLinearHistLuma(MinMaxRangeFloat pctlRange, FLOAT lumaThreshold, UINT8 chnl) const;

    private:
        friend class CStatsProcessor;
        // Unit tests inspect the result records directly.
        friend class CProcessedStatsTestAccess;

        FLOAT Value2Percentile(const BHistProcResult& res, UINT8 chnlIdx, FLOAT scaledValue) const;
        FLOAT RawHist(const BHistProcResult& res, UINT8 chnl, UINT16 bin) const;
        FLOAT RawGridLuma(const BGProcResult& res, UINT16 idx, const CHAR* pNotProcessedLog) const;
        FLOAT RegionRatio(UINT32 count) const;

        BGProcResult       m_BGRes;
        BGProcResult       m_BGLEFRes;
        BGProcResult       m_BGMEFRes;
        BHistProcResult    m_BHistRes;
        BHistProcResult    m_BHistLEFRes;
        BHistProcResult    m_BHistMEFRes;
        HDR3HistProcResult m_HDR3HistRes;
    };

    CStatsProcessor();

    VOID Initialize();
    // A null tuning is ignored; the record must outlive the processor's use of it.
    VOID SetTuning(const MeteringTuningDataType* pTuning);
    VOID SetMultiExposureSensorMode(AECAlgoHDRType mode) { m_MultiExposureSensorMode = mode; }

    // The frame's whole parse; on failure the caller repeats the last frame's targets.
    AecResult ProcessStats(const AECStatistics* pStats, const AECAlgoWhiteBalanceState* pAWBGains,
                           FLOAT DRCGainHDR3);
    // Parses the regions of a window that the frame pass skipped.
    VOID ReprocessBGStats(BGStatsIterationMode itrMode, FLOAT ULx, FLOAT ULy, FLOAT LRx, FLOAT LRy);

    IProcessedStats* GetStatsProcessingResult() { return &m_ProcessedStats; }

    static constexpr FLOAT  minNonSatPixelPct = 0.1f;
    static constexpr FLOAT  YThresBrightStats = 238.0f;
    static constexpr FLOAT  YThresDarkStats   = 8.0f;
    static constexpr UINT32 BayerChannelNum   = 4;
    static constexpr FLOAT  MaxBinGranularity = 0.0f;
    // Regions the frame pass parses together, in vector lanes, where the CPU has no wider vectors.
    static constexpr UINT32 BGBlockLanes = 4;

private:
    // The parser's own walk: every position of the window, parsed or not.
    class BGStatsIteratorInternal final : public BGStatsIterator
    {
    public:
        using BGStatsIterator::BGStatsIterator;
        UINT32 NextInternal()
        {
            const UINT32 pos = m_nextPos;
            m_nextPos        = IncrementPos(m_nextPos, FALSE);
            return pos;
        }
    };

    // One grid with its parameters and result, so the main, long and middle exposure paths share the code.
    struct GridJob
    {
        const StatsBayerGrid* pGrid;
        BGProcParam*          pParam;
        BGProcResult*         pRes;
    };

    // Per-frame constants of the batched main grid pass.
    struct BGBlockSetup
    {
        FLOAT pix;
        FLOAT satDen;
        FLOAT lumaDen;
        FLOAT satRecip;     // exact reciprocal of satDen, or 0 when the division stays
        FLOAT lumaRecip;    // the same for lumaDen
        INT32 minNonSatCnt; // the parameter limited to the 16-bit count range
        BOOL  batched;      // the frame's layout and saturation source allow the batch
    };

    // Grid path.
    AecResult ProcessBGStats();
    AecResult ProcessLEFBGStats();
    AecResult ProcessMEFBGStats();
    AecResult ProcessExtraExposureBGStats(const GridJob& job, const CHAR* pMissingChannelsLog);
    AecResult ProcessHDR3BGStats();
    // Either grid case, as the frame mode selects; fails for a region already parsed this frame.
    AecResult ProcessBGStatsRegion(UINT32 idx);
    AecResult ProcessMainBGStatsRegion(UINT32 idx);
    VOID      SetupBGBlock(BGBlockSetup* pSetup) const;
    // Parses a run of at most count main grid regions of a cleared frame from column x of row y in vector lanes
    // (results as ProcessMainBGStatsRegion's), folds them into the legacy grid and the bright and dark counts,
    // and returns how many it took: it stops before a region that needs the one-region parse.
    UINT32    ParseMainBGRun(const BGBlockSetup& setup, UINT32 x, UINT32 y, UINT32 count, CLegacyYGrid* pLegacy,
                             UINT32* pBright, UINT32* pDark);
    AecResult ProcessHDR3BGStatsRegion(UINT32 idx);
    AecResult ProcessExtraExposureBGRegion(const GridJob& job, UINT32 idx);
    BOOL      IdentifyBGStatsChannels(BGProcResult* pRes, const StatsBayerGrid* pGrid) const;
    BOOL      CheckGridShape(const StatsBayerGrid* pGrid) const;
    BOOL      CheckGridConsistency(const StatsBayerGrid* pGrid, BOOL requireRegions) const;
    VOID      SetupBGProcParam(BGProcParam* pParam, const StatsBayerGrid* pGrid, BGProcUseCase useCase) const;
    VOID      CalculateLumaWeight();
    UINT8     SelectSubsamplingFactor(UINT32 h, UINT32 v) const;
    VOID      UpdateGridSize(BGProcResult* pRes, const StatsBayerGrid* pGrid, BOOL fillPositions) const;
    // Regions per brightness class: bright, else dark, else normal (a NaN luma counts as normal).
    struct RegionClassCounts
    {
        UINT32 bright;
        UINT32 dark;
        UINT32 normal;
    };
    static VOID ClassifyRegion(FLOAT luma, RegionClassCounts* pCounts)
    {
        if (luma >= YThresBrightStats)
        {
            pCounts->bright++;
        }
        else if (luma <= YThresDarkStats)
        {
            pCounts->dark++;
        }
        else
        {
            pCounts->normal++;
        }
    }
    VOID CountRegion(const ParsedBGRegionType& region)
    {
        BGProcResult&     res    = m_ProcessedStats.m_BGRes;
        RegionClassCounts counts = {res.numBrightRegions, res.numDarkRegions, res.numNormalRegions};
        ClassifyRegion(region.rgnLuma, &counts);
        res.numBrightRegions = counts.bright;
        res.numDarkRegions   = counts.dark;
        res.numNormalRegions = counts.normal;
        res.numProcessedRegions++;
    }
    BOOL      IsHDR3GridCase() const;
    UINT32    LumaCalculationConfig() const;

    // Histogram path.
    AecResult ProcessBHistStats();
    AecResult ProcessSHDRLEFStats();
    AecResult ProcessSHDRMEFStats();
    AecResult ProcessExtraExposureHist(const StatsBayerHist* pHist, BHistProcResult* pRes);
    AecResult AccumulateBHist(const StatsBayerHist* pHist, BHistProcResult* pRes);
    BOOL      IdentifyBHistStatsChannels(BHistProcInfo* pInfo, const StatsBayerHist* pHist);
    AecResult UpdateBHistBinGrouping(BHistProcResult* pRes);

    // Three-exposure in-sensor HDR path.
    AecResult ProcessHDR3Stats();
    BOOL      IdentifyHDR3HistStatsChannels(const StatsHDR3ExposureHistStats* pHist);
    BOOL      UtilIdentifyHDR3Histogram(const StatsHDR3ExposureHistStats* pHist, UINT32 channelCount);
    AecResult UpdateHDR3HistBinGrouping();

    const MeteringTuningDataType* m_pTuning;
    AECAlgoWhiteBalanceState      m_wbState;
    CProcessedStats               m_ProcessedStats;
    const AECStatistics*          m_pInputStats;
    AECAlgoHDRType                m_MultiExposureSensorMode;
    HDR3ExposureType              m_HDR3Type;
    FLOAT                         m_DRCGainHDR3;
    BGProcParam                   m_BGProc;
    BGProcParam                   m_BGProcLEF;
    BGProcParam                   m_BGProcMEF;
    BHistProcParam                m_BHistProc;
    HDR3HistProcParam             m_HDR3HistProc;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CSTATSPROCESSOR_H
