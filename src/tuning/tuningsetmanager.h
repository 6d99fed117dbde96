// The tuning store's module accessors as the core's tuning data adapter calls them.
#ifndef AECORE_TUNING_TUNINGSETMANAGER_H
#define AECORE_TUNING_TUNINGSETMANAGER_H

#include "aectuningrecords.h"

// Mode and sub-mode selector values of the store's tree of modes.
typedef UINT32 ModeType;
typedef UINT32 ModeSubModeType;

// One mode selector of the host: the mode, then its sub-mode.
struct TuningMode
{
    ModeType        mode;
    ModeSubModeType subMode;
};

// The interface the parameter store implements: each accessor returns the module that the selected modes resolve
// to, or null when the store holds none; previous is the module the caller holds now (may be null). The returned
// records stay owned by the store and valid as long as it lives. Until the store exists only tests implement it.
class TuningSetManager
{
public:
    virtual ~TuningSetManager() = default;

    virtual aecMetering::AECCoreMeteringType* GetModule_Metering(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                 aecMetering::AECCoreMeteringType* pPrevious) = 0;
    virtual aecConvergence::AECCoreConvergenceType* GetModule_Convergence(
        const TuningMode* pSelectors, UINT32 numSelectors, aecConvergence::AECCoreConvergenceType* pPrevious) = 0;
    virtual aecArbitration::AECCoreArbitrationType* GetModule_Arbitration(
        const TuningMode* pSelectors, UINT32 numSelectors, aecArbitration::AECCoreArbitrationType* pPrevious) = 0;
    virtual aecExtension::AECCoreExtensionType* GetModule_Extension(const TuningMode* pSelectors,
                                                                    UINT32 numSelectors,
                                                                    aecExtension::AECCoreExtensionType* pPrevious) = 0;
    virtual aecStartUp::AECStartUpType* GetModule_StartUp(const TuningMode* pSelectors, UINT32 numSelectors,
                                                          aecStartUp::AECStartUpType* pPrevious) = 0;
    virtual aecSnapshotCtrl::AECSnapshotCtrlType* GetModule_SnapshotControl(
        const TuningMode* pSelectors, UINT32 numSelectors, aecSnapshotCtrl::AECSnapshotCtrlType* pPrevious) = 0;
    virtual aecSkip::AECSkipCtrlType* GetModule_aecSkipCtrl(const TuningMode* pSelectors, UINT32 numSelectors,
                                                            aecSkip::AECSkipCtrlType* pPrevious) = 0;
    virtual aecFlash::AECFlashType* GetModule_Flash(const TuningMode* pSelectors, UINT32 numSelectors,
                                                    aecFlash::AECFlashType* pPrevious) = 0;
    virtual aecTouch::AECTouchType* GetModule_Touch(const TuningMode* pSelectors, UINT32 numSelectors,
                                                    aecTouch::AECTouchType* pPrevious) = 0;
    virtual aecFace::AECFaceType* GetModule_Face(const TuningMode* pSelectors, UINT32 numSelectors,
                                                 aecFace::AECFaceType* pPrevious) = 0;
    virtual aecSync::AECMultiCamType* GetModule_aecMultiCamSync(const TuningMode* pSelectors, UINT32 numSelectors,
                                                                aecSync::AECMultiCamType* pPrevious) = 0;
    virtual aecDepth::AECDepthType* GetModule_aecDepth(const TuningMode* pSelectors, UINT32 numSelectors,
                                                       aecDepth::AECDepthType* pPrevious) = 0;
    virtual aecParamExtension::ParamExtensionType* GetModule_AECParamExtension(
        const TuningMode* pSelectors, UINT32 numSelectors, aecParamExtension::ParamExtensionType* pPrevious) = 0;
    virtual aecSensorConfig::AECSensorHDRConfig* GetModule_SensorHDRDefaultConfig(
        const TuningMode* pSelectors, UINT32 numSelectors, aecSensorConfig::AECSensorHDRConfig* pPrevious) = 0;
    virtual aecShdr::AECShdrType* GetModule_aecShdr(const TuningMode* pSelectors, UINT32 numSelectors,
                                                    aecShdr::AECShdrType* pPrevious) = 0;
    virtual aecIr::AECIRType* GetModule_aecIr(const TuningMode* pSelectors, UINT32 numSelectors,
                                              aecIr::AECIRType* pPrevious) = 0;
    virtual aecStatsConfig::AECStatsConfig* GetModule_StatsDefaultConfig(
        const TuningMode* pSelectors, UINT32 numSelectors, aecStatsConfig::AECStatsConfig* pPrevious) = 0;
};

#endif // AECORE_TUNING_TUNINGSETMANAGER_H
