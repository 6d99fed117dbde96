// The per-camera exposure engine: owns the modules and the state store and runs the frame pipeline.
#ifndef AEC_CORE_BASE_CAECCORE_H
#define AEC_CORE_BASE_CAECCORE_H

#include "aec/core/base/caecsimulation.h"
#include "aec/core/base/iaecmodulefactory.h"
#include "aec/core/include/aecarbitrationrecords.h"
#include "aec/core/include/aecconvergencerecords.h"
#include "aec/core/include/aecextensionrecords.h"
#include "aec/core/include/aecirisrecords.h"
#include "aec/core/include/aecirrecords.h"
#include "aec/core/include/aecmeteringrecords.h"
#include "aec/core/include/iaeccore.h"
#include "aec/core/include/iaecir.h"

class CAECCoreDataManager;

// Once per statistics frame, process pushes the input through metering, convergence, arbitration, iris
// control and extension, each run function building a module's input from the previous module's output,
// and fills the output. All per-frame records are members, so a processed frame allocates nothing but its
// history node. The algorithm interface holds the core by value, hence the default constructor.
class CAECCore final : public IAECCore
{
public:
    CAECCore();
    ~CAECCore() override;

    CAECCore(const CAECCore&)            = delete;
    CAECCore& operator=(const CAECCore&) = delete;

    KDKResult setInput(const AECCoreSetParam* pParam) override;
    KDKResult process(const AECCoreInput* pInput, AECCoreOutput* pOutput) override;
    KDKResult queryMetaData(AECMetadataQuery* pQuery) override;

private:
    // Unit tests build a core on stand-in modules and read the per-frame records.
    friend class CAECCoreTestPeer;

    explicit CAECCore(IAECModuleFactory& rFactory);

    // FALSE when the allocator failed for the state store or a module; such a core refuses every call.
    BOOL isConstructed() const;

    // Set parameters that the core handles itself, beyond storing them.
    VOID applyStartUpSensitivity(const AECAlgoStartupSensitivity& startUpData);
    VOID applyPeerInfo(const StatsPeerInfoCombo& peerInfoCombo);
    // Takes the lens capabilities, the first motor configuration and a deep copy of the first iris table.
    VOID LDMInputProcessing(const LDMSetAECInputMotorInfo& motorInfo);
    // Frees a deep copy of an iris table made by LDMInputProcessing and zeroes the record.
    static VOID releaseIrisTable(LDMIrisTableData& rTable);

    KDKResult preProcessing(const AECCoreInput* pInput);
    VOID      runIR(const AECCoreInput* pInput);
    VOID      runMetering(const AECCoreInput* pInput);
    VOID      processDepthInfo(const AECCoreInput* pInput);
    VOID      runConvergence(const AECCoreInput* pInput);
    VOID      GetSimExposureAndConfig(const AECCoreInput* pInput);
    VOID      runArbitration(const AECCoreInput* pInput);
    VOID      runIrisControl(const AECCoreInput* pInput);
    VOID      runExtensionModule(const AECCoreInput* pInput);
    VOID      updateParamsForDiagnostic();
    VOID      updateHistory(const AECCoreInput* pInput);
    VOID      handlePreflash(const AECCoreInput* pInput, AECCoreOutput* pOutput);
    VOID      populateOutput(const AECCoreInput* pInput, AECCoreOutput* pOutput);
    VOID      printFrameControl(const CHAR* pTag, UINT64 frameID, const AECFrameControl& rFrameControl);
    VOID      printFrameInfo(UINT64 frameID, const AECCoreOutput* pOutput);
    VOID      populateMulicamInfo(const AECCoreInput* pInput);
    VOID      convergenceKPI(BOOL isFrameStart);

    KDKResult queryStartExposure(AECFrameControl* pFrameSetting);
    KDKResult querySnapshotExposure(const AECAlgoSnapshotConfig* pConfig, AECFrameControl* pFrameSetting);
    // EV and index offset of an AE bracketing capture of EVVal EV steps.
    VOID      getBracketingEVOffset(INT8 EVVal, FLOAT* pEV, FLOAT* pEVOffset);
    KDKResult getFlashSnapshotIndices(const AECAlgoSnapshotConfig* pConfig, FLOAT EVOffset, FLOAT* pExpIndices,
                                      AECFrameControl* pFrameSetting);
    KDKResult getNormalSnapshotIndices(const AECAlgoSnapshotConfig* pConfig, FLOAT EVOffset, FLOAT* pExpIndices,
                                       AECFrameControl* pFrameSetting);

    IAECIR*                    m_pIR;
    IAECMetering*              m_pMetering;
    IAECConvergence*           m_pConvergence;
    IAECArbitration*           m_pArbitration;
    IAECIrisCtrl*              m_pIrisCtrl;
    IAECExtension*             m_pExtension;
    IAECDiagnostic*            m_pDiagnostic;
    IAECSkipCtrl*              m_pAecSkipCtrl;
    AECIRFrameProcInput        m_irIn;
    AECIRFrameProcOutput       m_irOut;
    AECMeteringFrameProcInput  m_mtrIn;
    AECMeteringFrameProcOutput m_mtrOut;
    ConvergenceInput           m_convIn;
    ConvergenceOutput          m_convOut;
    ArbitrationStreamInput     m_arbIn;
    ArbitrationOutput          m_arbOut;
    AECIrisFrameProcInput      m_irisIn;
    AECIrisFrameProcOutput     m_irisOut;
    ExtensionInput             m_extIn;
    ExtensionOutput            m_extOut;
    IrisPerFrameInputParams    m_LDMIn;
    LDMMotorSystemConfig       m_LDMmotorSysParam;
    LDMLensPowerLevel          m_LDMmotorPowerLevel;
    LDMIrisTableData           m_LDMpirisTblParam;
    LDMLensCap                 m_LDMlensCap;
    UINT32                     m_cameraID;
    UINT32                     m_algoRole;
    AECConvergenceKPIType      m_AECConvKPI;
    CAECCoreDataManager*       m_pDataManager;
    IAECComponent**            m_pAecComponentList; // reserved: the state store keeps the component list
    BOOL                       m_isDual;
    CAECSimulation             m_simulation;
    FLOAT                      m_simDigitalGain;
    BOOL                       m_enableLiveTuning;  // build switch, off in this build
};

#endif // AEC_CORE_BASE_CAECCORE_H
