// Tuning records and per-module tuning views as far as the core reads them; the generated records replace this.
#ifndef AEC_CORE_BASE_AECTUNINGVIEWS_H
#define AEC_CORE_BASE_AECTUNINGVIEWS_H

#include "aec/core/include/iaeccontext.h"
#include "aecore/aecore.h"

// Later stage: the records generated from the tuning schema (parameter store) and the views that the tuning data
// adapter builds from them replace this header. Until then it declares, under their tuning names, only the
// fields that the core and its state store read; tests inject tuning through CAECCoreDataManager::setTuningViews.
// A null view or record means "without tuning".

namespace aecglobalelements
{
// Which quantity of an exposure table grows first between one knee and the next.
enum AECExpIncPrioType : INT32
{
    AECExpIncGain    = 0,
    AECExpIncExpTime = 1,
    AECExpIncPrioMax = 2,
};

// Metering and exposure coupling of one multi-camera role. Fixed underlying type: a tuning file may hold any value.
enum AECMtrAndExpoConfigType : INT32
{
    MtrIndepExpIndep     = 0,
    MtrIndepExpFollow    = 1,
    MtrDisabledExpFollow = 2,
    MtrMixExpIndep       = 3,
    MtrIndepExpDynamic   = 4,
};
} // namespace aecglobalelements

namespace aecArbitration
{
// One knee point of an exposure table; knees are in ascending exposure index.
struct ExposureKneeType
{
    FLOAT                                gain;
    UINT64                               expTime;
    FLOAT                                fnumber;
    aecglobalelements::AECExpIncPrioType incrementPriority;
    FLOAT                                expIndex;
};

struct ExposureTableType
{
    FLOAT             sensitivityCorrectionFactor;
    UINT32            expKneeEntriesCount;
    UINT32            expKneeEntriesID;
    ExposureKneeType* expKneeEntries;
    FLOAT             thresAntiBandingMinExpTimePct;
};

// Arbitration module tuning: the exposure tables that a table ID selects.
struct AECCoreArbitrationType
{
    UINT32             SymbolTableID;
    UINT32             expTablesCount;
    UINT32             expTablesID;
    ExposureTableType* expTables;
};
} // namespace aecArbitration

// The application's exposure table in the tuned table's form; honoured only while isValid is 1.
struct AECCustomExposureTableInfo
{
    aecArbitration::ExposureTableType expTable;
    BOOL                              isValid;
};

namespace aecMetering
{
// Exposure compensation of the luma target.
struct EVLumaTargetType
{
    struct EVCompTableStruct
    {
        FLOAT EVCompTableElements[49]; // luma multiplier per EV step, from the lowest EV up
    };
    EVCompTableStruct EVCompTable;
};

// Histogram-based target.
struct HistLumaTargetType
{
    BOOL enableADRC;
};

// Metering module tuning.
struct AECCoreMeteringType
{
    UINT32 SymbolTableID;
    struct mtrLumaCalcStruct
    {
        struct indexCalcStruct
        {
            BOOL enableLuxIndexComp; // the lux index is compensated for the exposure table's sensitivity
        };
        indexCalcStruct indexCalc;
    };
    mtrLumaCalcStruct mtrLumaCalc;
    struct mtrLumaTargetStruct
    {
        EVLumaTargetType   EVLumaTarget;
        HistLumaTargetType histLumaTarget;
    };
    mtrLumaTargetStruct mtrLumaTarget;
};
} // namespace aecMetering

namespace aecFace
{
// Face metering tuning: how long (seconds) a face must be seen or missed before the face state follows.
struct FaceMeteringType
{
    FLOAT statsUpdateDelayTimeEnter;
    FLOAT statsUpdateDelayTimeExit;
};
} // namespace aecFace

namespace aecFlash
{
// Flash metering tuning; FDFlash holds the face hold times that apply during preflash.
struct FlashMeteringType
{
    struct FDFlashStruct
    {
        FLOAT statsUpdateDelayTimeEnter;
        FLOAT statsUpdateDelayTimeExit;
    };
    FDFlashStruct FDFlash;
};
} // namespace aecFlash

namespace aecShdr
{
// Staggered-HDR metering tuning.
struct ShdrMeteringType
{
    INT32 enableShdr;      // an HDRSensorType value
    FLOAT ExpRatioCapHigh;
    FLOAT ExpRatioCapLow;  // a DCG sensor's tuning reuses it as CGRatio1
    FLOAT LEFMaxGain;
    FLOAT reserved[4];     // a DCG sensor's tuning reuses reserved[0] as CGRatio2
};
} // namespace aecShdr

// ADRC saturation control of the parameter extension list.
struct ParamExtADRCSatCtrl
{
    BOOL enableADRCSatCtrl;
    BOOL enablePredictiveSatCtrl;
};

// The metering module's view of the tuning.
struct MeteringTuningDataType
{
    const aecMetering::AECCoreMeteringType* pCore;
    const aecFlash::FlashMeteringType*      pFlash;
    const aecFace::FaceMeteringType*        pFace;
    ParamExtADRCSatCtrl                     ADRCSaturation;
    const aecShdr::ShdrMeteringType*        pShdr;
};

namespace aecSnapshotCtrl
{
// Snapshot control tuning of arbitration.
struct SnapshotCtrlArbitrationType
{
    FLOAT bracketingAdjForEVNeg2; // share of an AE bracketing step kept at -2 EV and beyond
    FLOAT bracketingAdjForEVPos2; // share of an AE bracketing step kept at +2 EV and beyond
};
} // namespace aecSnapshotCtrl

// The arbitration module's view of the tuning.
struct ArbitrationTuningDataType
{
    const aecArbitration::AECCoreArbitrationType*      pCore;
    const aecSnapshotCtrl::SnapshotCtrlArbitrationType* pSnapshotCtrl;
};

namespace aecSync
{
// Metering and exposure coupling of the master and the slave camera.
struct AECMeteringAndExpModeType
{
    aecglobalelements::AECMtrAndExpoConfigType master;
    aecglobalelements::AECMtrAndExpoConfigType slave;
};
} // namespace aecSync

// The extension module's view of the tuning.
struct ExtensionTuningDataType
{
    const aecSync::AECMeteringAndExpModeType* pMtrAndExpModeConfig;
};

namespace aecStatsConfig
{
// Configuration of one Bayer histogram.
struct BHistStatsConfigType
{
    INT32  colorChannel;     // 0 R, 1 GR, 2 GB, 4 B, 5 Y
    UINT32 binUniformity;    // 0: uniform bins
    INT32  ROIConfigControl; // non-zero: full field of view
};

// Statistics configuration tuning: the Bayer grid and the Bayer histograms.
struct AECStatsConfig
{
    UINT32 SymbolTableID;
    struct gridStatsConfigStruct
    {
        FLOAT  maxStatsChannelThreshold[4]; // share of full scale, per channel
        FLOAT  minStatsChannelThreshold[4];
        UINT32 bitDepth;
        FLOAT  YComputationColorWeight[3];
        UINT32 numOfRegionsHorizontal;
        UINT32 numOfRegionsVertical;
        INT32  ROIConfigControl; // non-zero: full field of view
        BOOL   enableYComputedStats;
        BOOL   enableSaturatedStats;
        UINT32 HWStatsSkipFactor;
    };
    gridStatsConfigStruct gridStatsConfig;
    struct histStatsConfigStruct
    {
        UINT32                histogramsCount;
        UINT32                histogramsID;
        BHistStatsConfigType* histograms; // the first entry configures the Bayer histogram
    };
    histStatsConfigStruct histStatsConfig;
};
} // namespace aecStatsConfig

// The per-module tuning views the state store hands out, and the records it reads itself; null until tuning is set.
struct AECCoreTuningViews
{
    const IRTuningDataType*               pIR;
    const MeteringTuningDataType*         pMtr;
    const ConvergenceTuningDataType*      pConv;
    const ArbitrationTuningDataType*      pArb;
    const ExtensionTuningDataType*        pExt;
    const aecStatsConfig::AECStatsConfig* pStatsConfig;
};

#endif // AEC_CORE_BASE_AECTUNINGVIEWS_H
