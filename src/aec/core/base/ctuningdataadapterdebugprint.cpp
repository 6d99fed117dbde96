// Diagnostic print of the tuning in use: one verbose line per module with its version and a few key values.
#include "aec/core/base/ctuningdataadapter.h"
#include "platform/statslogger.h"

namespace
{

// Name and version of one module, or that it is missing.
template <typename ModuleType>
VOID PrintModule(const CHAR* pName, const ModuleType* pModule)
{
    if (nullptr == pModule)
    {
        AEC_LOG_VERBOSE("Tuning %s: missing", pName);
        return;
    }
    AEC_LOG_VERBOSE("Tuning %s: version %d.%d.%d", pName, pModule->module_version.major_revision,
                    pModule->module_version.minor_revision, pModule->module_version.incr_revision);
}

} // namespace

VOID CTuningDataAdapter::DebugPrintTuningData() const
{
    AEC_LOG_VERBOSE("Tuning in use: %s", (TRUE == m_bInternallyCreated) ? "fake" : "tuning store");
    DebugPrintTuningDataModMtr();
    DebugPrintTuningDataModConv();
    DebugPrintTuningDataModArb();
    DebugPrintTuningDataModExt();
    DebugPrintTuningDataModStartUp();
    DebugPrintTuningDataModSnapshotCtrl();
    DebugPrintTuningDataModSkip();
    DebugPrintTuningDataModFlash();
    DebugPrintTuningDataModTouch();
    DebugPrintTuningDataModFace();
    DebugPrintTuningDataModMultiCamSync();
    DebugPrintTuningDataModDepth();
    DebugPrintTuningDataModParamExt();
    DebugPrintTuningDataModSensorHDRConfig();
    DebugPrintTuningDataModShdr();
    DebugPrintTuningDataModIr();
    DebugPrintTuningDataModStatsConfig();
}

VOID CTuningDataAdapter::DebugPrintTuningDataModMtr() const { PrintModule("metering", m_tuningModulesPtrs.modMtr); }

VOID CTuningDataAdapter::DebugPrintTuningDataModConv() const
{
    const aecConvergence::AECCoreConvergenceType* pConv = m_tuningModulesPtrs.modConv;
    PrintModule("convergence", pConv);
    if (nullptr != pConv)
    {
        AEC_LOG_VERBOSE("  algoSelect %d unitStepSize %f", pConv->algoSelect, pConv->unitStepSize);
    }
}

VOID CTuningDataAdapter::DebugPrintTuningDataModArb() const
{
    const aecArbitration::AECCoreArbitrationType* pArb = m_tuningModulesPtrs.modArb;
    PrintModule("arbitration", pArb);
    if (nullptr != pArb)
    {
        AEC_LOG_VERBOSE("  expTablesCount %u minPreviewVertBlankTime %lu", pArb->expTablesCount,
                        static_cast<unsigned long>(pArb->minPreviewVertBlankTime));
    }
}

VOID CTuningDataAdapter::DebugPrintTuningDataModExt() const { PrintModule("extension", m_tuningModulesPtrs.modExt); }
VOID CTuningDataAdapter::DebugPrintTuningDataModStartUp() const { PrintModule("start-up", m_tuningModulesPtrs.modStartUp); }
VOID CTuningDataAdapter::DebugPrintTuningDataModSnapshotCtrl() const
{
    PrintModule("snapshot control", m_tuningModulesPtrs.modSnapshotCtrl);
}
VOID CTuningDataAdapter::DebugPrintTuningDataModSkip() const { PrintModule("skip control", m_tuningModulesPtrs.modSkip); }

VOID CTuningDataAdapter::DebugPrintTuningDataModFlash() const
{
    const aecFlash::AECFlashType* pFlash = m_tuningModulesPtrs.modFlash;
    PrintModule("flash", pFlash);
    if (nullptr != pFlash)
    {
        AEC_LOG_VERBOSE("  LED table entries %u", pFlash->flashExt.LEDTable.CCTTablesCount);
    }
}

VOID CTuningDataAdapter::DebugPrintTuningDataModTouch() const { PrintModule("touch", m_tuningModulesPtrs.modTouch); }
VOID CTuningDataAdapter::DebugPrintTuningDataModFace() const { PrintModule("face", m_tuningModulesPtrs.modFace); }
VOID CTuningDataAdapter::DebugPrintTuningDataModMultiCamSync() const
{
    PrintModule("multi-camera sync", m_tuningModulesPtrs.modMultiCamSync);
}
VOID CTuningDataAdapter::DebugPrintTuningDataModDepth() const { PrintModule("depth", m_tuningModulesPtrs.modDepth); }

VOID CTuningDataAdapter::DebugPrintTuningDataModParamExt() const
{
    const aecParamExtension::ParamExtensionType* pParamExt = m_tuningModulesPtrs.modParamExt;
    PrintModule("parameter extension", pParamExt);
    if (nullptr != pParamExt)
    {
        AEC_LOG_VERBOSE("  extension entries %u", pParamExt->extensionParamCount);
    }
}

VOID CTuningDataAdapter::DebugPrintTuningDataModSensorHDRConfig() const
{
    PrintModule("sensor HDR configuration", m_tuningModulesPtrs.modSensorHDRConfig);
}
VOID CTuningDataAdapter::DebugPrintTuningDataModShdr() const { PrintModule("SHDR", m_tuningModulesPtrs.modShdr); }
VOID CTuningDataAdapter::DebugPrintTuningDataModIr() const { PrintModule("IR", m_tuningModulesPtrs.modIr); }
VOID CTuningDataAdapter::DebugPrintTuningDataModStatsConfig() const
{
    PrintModule("statistics configuration", m_coreModuleTuningData.pStatsConfig);
}
