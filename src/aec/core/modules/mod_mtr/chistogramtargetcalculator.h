// Histogram target calculator: safe target from the histogram's bright and dark bands, ADRC short and long target.
#ifndef AEC_CORE_MODULES_MOD_MTR_CHISTOGRAMTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CHISTOGRAMTARGETCALCULATOR_H

#include "aec/core/include/iprocessedstats.h"
#include "aec/core/modules/mod_mtr/iaectargetcalculator.h"

// Starts from the lux target and moves it so that the brightest and darkest percentile ranges of the histogram land
// in tuned reference bands. The short target lowers exposure (the gap is made up by ADRC gain), the long target
// raises it for dark scenes. Band filter and EV freeze state live for the life of the object.
class CHistogramTargetCalculator final : public IAECTargetCalculator
{
public:
    explicit CHistogramTargetCalculator(CStatsProcessor* pStatsProc);

    VOID initialize() override;
    // Writes histBasedSafeTarget, histBasedShortTarget, histBasedLongTarget and realDRCGain. On failure the three
    // targets hold luxBasedSafeTarget.
    AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) override;
    VOID      FillDebugData(AECDebugData* pDebugData) override;
    VOID      UpdateDebugData() override;

    // A touch region darker or brighter than the frame moves the zone's limits towards the touch adjustment.
    VOID adjustTuningParamByTouchROI(const AECTargetCalcInput*                pInput,
                                     aecMetering::HistLumaTargetZoneDataType* pHistParam);
    // A large face pulls the safe target limits towards the reference target.
    VOID adjustTuningParamByFaceROI(const AECTargetCalcInput*                pInput,
                                    aecMetering::HistLumaTargetZoneDataType* pHistParam);
    // Takes the EV multiplier back out of the targets, or holds them against an EV change, by the tuned method.
    VOID HandleEVCompensation(FLOAT EVMultiplier, AECTargetCalcResult* pResult,
                              aecglobalelements::HistogramTargetEVMethodType EVHandling, const EVContext* pEV);

private:
    // Gain limits of the histogram extension, or their defaults when the extension is off.
    struct GainLimits
    {
        FLOAT maxDarkBoostGain;
        FLOAT maxDRCGain;
        FLOAT maxADRCGainFace;
        BOOL  useLegacyTargets;
    };

    // The channel whose mean decided each of the three percentile families.
    struct DecidingChannels
    {
        UINT8 pushUp;
        UINT8 pushDown;
        UINT8 dark;
    };

    // The low and high end of the band that the safe target is limited to.
    struct TargetBand
    {
        FLOAT lowTarget;
        FLOAT highTarget;
    };

    static GainLimits GetGainLimits(const MeteringTuningDataType* pTuning);
    // Copies the three histogram targets into the result.
    VOID              WriteTargets(AECTargetCalcResult* pResult) const;

    // Range means per channel and the deciding channel of each family.
    DecidingChannels CalculateRangeMeans();
    // The four raw band ends; FALSE when one of them is negative.
    BOOL             CalculateRawTargets(const aecMetering::HistLumaTargetType* pHistTuning,
                                         const aecMetering::NonLinearEstimateType* pNonLin, DecidingChannels chnl,
                                         FLOAT* pBrightLow, FLOAT* pBrightHigh, FLOAT* pDarkLow, FLOAT* pDarkHigh);
    // Orders the bright band, filters the four ends against the last frame and stores them; TRUE when swapped.
    BOOL             FilterBands(FLOAT targetFilterFactor, FLOAT brightLow, FLOAT brightHigh, FLOAT darkLow,
                                 FLOAT darkHigh);
    // Overlap of the bright and dark band, or the gap between them.
    TargetBand       SelectBand() const;
    // The reference target limited to the band and to the zone's ratios.
    FLOAT            LimitSafeTarget(TargetBand band) const;
    // Short target below safe through ADRC gain and long target above safe through dark boost.
    VOID             CalculateADRCTargets(const AECTargetCalcInput* pInput, TargetBand band, BOOL bIsTargetSwap,
                                          const GainLimits& limits);

    IProcessedStats*                        m_pStats;
    FLOAT                                   m_luxIndex;
    FLOAT                                   m_refTarget;
    FLOAT                                   m_refLuma;
    UINT8                                   m_numOfChannels;
    FLOAT                                   m_satPushupMean[3];
    FLOAT                                   m_satPushdownMean[3];
    FLOAT                                   m_darkMean[3];
    FLOAT                                   m_satPushupMeanWB[3];
    FLOAT                                   m_satPushdownMeanWB[3];
    FLOAT                                   m_darkMeanWB[3];
    FLOAT                                   m_satPushupPos;
    FLOAT                                   m_satPushdownPos;
    FLOAT                                   m_darkPos;
    FLOAT                                   m_satPushupPosWB;
    FLOAT                                   m_satPushdownPosWB;
    FLOAT                                   m_darkPosWB;
    FLOAT                                   m_shortTargetCapRatio;
    FLOAT                                   m_longTargetCapRatio;
    FLOAT                                   m_histBasedSafeTarget;
    FLOAT                                   m_histBasedShortTarget;
    FLOAT                                   m_histBasedLongTarget;
    FLOAT                                   m_brightLowTarget;
    FLOAT                                   m_brightHighTarget;
    FLOAT                                   m_darkLowTarget;
    FLOAT                                   m_darkHighTarget;
    AECDebugDataHistogramType               m_debugData;
    BOOL                                    m_histTargetEnable;
    BOOL                                    m_ADRCEnable;
    aecMetering::HistLumaTargetZoneDataType m_tuningZone;
    BOOL                                    m_bIsFirstFrame;
    EVContext                               m_EV;
    FLOAT                                   m_realDRCGain;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CHISTOGRAMTARGETCALCULATOR_H
