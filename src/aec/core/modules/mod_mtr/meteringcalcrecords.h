// Inputs and results that the metering module passes to its luma and target calculators each frame.
#ifndef AEC_CORE_MODULES_MOD_MTR_METERINGCALCRECORDS_H
#define AEC_CORE_MODULES_MOD_MTR_METERINGCALCRECORDS_H

#include <type_traits>

#include "aec/core/include/aeccoredata.h"
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/depthprocinfo.h"
#include "aecore/aecore.h"

// Luma and index of a ratio: a luma ratio r is the index difference log10(r) * MeteringIndexPerDecade.
constexpr double MeteringIndexPerDecade = 77.89852905273438;

// Built fresh every frame by the metering module and handed to every luma calculator of the active list.
struct AECLumaCalcInput
{
    const FLOAT*                             matchingExpIndices; // indices that exposed these statistics
    AECAlgoMeteringModeType                  mtrMode;
    const MeteringTuningDataType*            pTuning;
    BOOL                                     enableADRC;
    BOOL                                     enableHDR3;
    HDR3ExposureType                         HDR3Type; // never set by the module: no calculator may rely on it
    const TouchROIProcInfo*                  pTouchROIs;
    const FaceROIProcInfo*                   pFaceROIs;
    const ModArbitrationContext*             pArbitrationLimit;
    const StatsBayerGridBayerExposureConfig* pBGBEConfig;
    BOOL                                     enableDiag;
    BOOL                                     bSlaveToMasterSwitch; // first frame back to independent exposure
    const DepthProcInfo*                     pDepthInfo;
    BOOL                                     enableDepthAEC; // never set by the module: no calculator may rely on it
    FLOAT                                    PrevDRCGainHDR3;
    const StatsHDR3ExposureHistStats*        splitHist;
    INT32                                    irModeActivated;
    FLOAT                                    compensationRatio;
    AECWeightingTable*                       pEisWeightTable; // carried along; no calculator reads it
    UINT32                                   frnWidth;        // carried along; no calculator reads it
    UINT32                                   frnHeight;       // carried along; no calculator reads it
};

// Lumas of one frame; each field has exactly one writer among the calculators (or the aggregation).
struct AECLumaCalcResult
{
    FLOAT            luxIndex;
    FLOAT            averageLuma;
    FLOAT            hdr3Frameluma;
    FLOAT            frameLuma;
    FLOAT            shdrLuma;  // -1 when not in use
    FLOAT            irLuma;    // always -1: IR works on its own statistics
    FLOAT            touchLuma; // -1 without touch
    FLOAT            hdr3touchLuma;
    FLOAT            faceLuma; // -1 without face
    FLOAT            hdr3Faceluma;
    FLOAT            faceWeight;
    MinMaxRangeFloat faceLumaRange;
    FLOAT            faceMaxSize;
    FLOAT            faceWeightByMaxSize;
    FLOAT            faceWeightAdjByBackLit;
    FLOAT            faceWeightAdjByFrontLit;
    FLOAT            finalLuma;
    UINT32           saturatedRegions;
    FLOAT            preflashInfluence;
    FLOAT            diagLuma;
    FLOAT            RGRatio;
    FLOAT            BGRatio;
    FLOAT            averageLumaFlashMeas;
    FLOAT            VisibleLightRatio;
    BOOL             bIsFlashMeasDark;
    FLOAT            depthLuma;
    FLOAT            depthWeight;
};

// Share of extreme green and blue in the frame, from the extreme colour target.
struct ASDColorResult
{
    FLOAT extremeGreenRatio;
    FLOAT extremeBlueRatio;
};

// Built by the metering module after the lumas are aggregated and handed to every target calculator.
struct AECTargetCalcInput
{
    const AECLumaCalcResult*             pLumaCalcResult;
    const AECAlgoWhiteBalanceState*      pAWBGains;
    const MeteringTuningDataType*        pTuning;
    BOOL                                 enableADRC;
    BOOL                                 enableHDR3;
    const EVContext*                     pEV; // the EV in force when the frame was exposed
    FLOAT                                maxUnderexposure;
    FLOAT                                ratioBright;
    FLOAT                                ratioDark;
    const aecConvergence::FastConvType*  pFast;
    BOOL                                 enableDepthAEC; // never set by the module: no calculator may rely on it
    INT32                                irModeActivated;
    const IRTuningDataType*              pIrTuning;
};

// Targets of one frame; each field has exactly one writer among the calculators (or the aggregation).
struct AECTargetCalcResult
{
    FLOAT          luxBasedSafeTarget;
    FLOAT          luxBasedSimpleTarget;
    FLOAT          histBasedSafeTarget;
    FLOAT          histBasedShortTarget;
    FLOAT          histBasedLongTarget;
    FLOAT          shdrBasedTarget[AECAlgoExposureCount];
    FLOAT          clrBasedSafeTarget;
    FLOAT          shortTarget;
    FLOAT          longTarget;
    FLOAT          safeTarget;
    ASDColorResult asdResult;
    FLOAT          realDRCGain;
};

static_assert(std::is_trivial<AECLumaCalcInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECLumaCalcResult>::value, "zeroed by memset");
static_assert(std::is_trivial<AECTargetCalcInput>::value, "zeroed by memset");
static_assert(std::is_trivial<AECTargetCalcResult>::value, "zeroed by memset");

#endif // AEC_CORE_MODULES_MOD_MTR_METERINGCALCRECORDS_H
