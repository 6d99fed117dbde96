// Translation of the host's per-frame input list into the core's AECCoreInput.
#include "aec/wrapper/caecprocessinputtranslator.h"

#include "platform/velalog.h"

namespace
{

// Ambient light value the IR path receives while no sensor reports one.
constexpr FLOAT DefaultALSValue = 100.0F;

// Where a statistics entry goes in the core record and how many bytes it must have.
struct InputTarget
{
    VOID*  pData;
    SIZE_T size;
};

template <typename T>
InputTarget Target(T& member)
{
    return InputTarget{&member, sizeof(T)};
}

} // namespace

CAECProcessInputTranslator::CAECProcessInputTranslator()
    : m_InputParam()
{
    updatePrivateData(&m_InputParam, sizeof(m_InputParam));
}

AECCoreInput* CAECProcessInputTranslator::translate(const AECAlgoInputList* pInputList)
{
    reset();
    if (nullptr == pInputList)
    {
        return nullptr;
    }

    if ((nullptr == pInputList->pAECInputList) && (0 != pInputList->numberOfAECInputs))
    {
        // Entries without a list are treated like reference entries with no data entry before them.
        return nullptr;
    }

    SIZE_T copiedSize = 0;
    for (UINT32 index = 0; index < pInputList->numberOfAECInputs; ++index)
    {
        if (FALSE == translateEntry(&pInputList->pAECInputList[index], &copiedSize))
        {
            return nullptr;
        }
    }

    m_InputParam.IRInputPerFrame.ALSValue = DefaultALSValue;
    AEC_VLOG_VERBOSE("Update ALS to input parameter per frame");
    return &m_InputParam;
}

BOOL CAECProcessInputTranslator::translateEntry(const AECAlgoInput* pEntry, SIZE_T* pCopiedSize)
{
    AECStatistics& stats  = m_InputParam.aecStats;
    InputTarget    target = {nullptr, 0};
    SIZE_T         copied = 0;

    switch (pEntry->inputType)
    {
        case AECAlgoInputStatisticInfo:
            copied = copyDataStatsInfo(&m_InputParam, pEntry->pAECInput, pEntry->sizeOfAECInput);
            break;
        case AECAlgoInputPIrisMotorSatus:
            copied = copyMotorStatusData(&m_InputParam.IrisInputPerFrame.pirisMotorStatus, pEntry->pAECInput);
            break;
        case AECAlgoInputZoomMotorSatus:
            copied = copyMotorStatusData(&m_InputParam.IrisInputPerFrame.zoomMotorStatus, pEntry->pAECInput);
            break;
        case AECAlgoInputVendorTag:
        case AECAlgoInputStatsLyrHandle:
        case AECAlgoInputStatsRequestID:
            // Reference entries copy nothing and are only valid after a data entry.
            if (0 == *pCopiedSize)
            {
                return FALSE;
            }
            if (AECAlgoInputVendorTag == pEntry->inputType)
            {
                m_InputParam.pVendorTagList = static_cast<StatsVendorTagList*>(pEntry->pAECInput);
            }
            return TRUE;
        case AECAlgoInputBayerGrid:              target = Target(stats.bayerGrid);             break;
        case AECAlgoInputBayerGridLEF:           target = Target(stats.bayerGridLEF);          break;
        case AECAlgoInputBayerGridMEF:           target = Target(stats.bayerGridMEF);          break;
        case AECAlgoInputBayerHist:              target = Target(stats.bayerHist);             break;
        case AECAlgoInputBayerHistLEF:           target = Target(stats.bayerHistLEF);          break;
        case AECAlgoInputBayerHistNonUniform:    target = Target(stats.nonUniformBayerHist);   break;
        case AECAlgoInputHDRBHist:               target = Target(stats.hdrBayerHist);          break;
        case AECAlgoInputHDRBHistLEF:            target = Target(stats.hdrBayerHistLEF);       break;
        case AECAlgoInputHDRBHistMEF:            target = Target(stats.hdrBayerHistMEF);       break;
        case AECAlgoInputIHist:                  target = Target(stats.IHist);                 break;
        case AECAlgoInputBayerGridROI:           target = Target(stats.bayerGridROI);          break;
        case AECAlgoInputRDIStats:               target = Target(stats.hdr3Stats);             break;
        case AECAlgoInputDebugData:              target = Target(m_InputParam.debugData);      break;
        case AECAlgoInputSHDRInterPolatedData:   target = Target(m_InputParam.shdrTuningParams); break;
        default:
            // Camera info, tintless, lens shading, HDR count and IR cut inputs are not used.
            return TRUE;
    }

    if (nullptr != target.pData)
    {
        // By value: the data pointers inside a statistics record stay the host's.
        copied = copyData(target.pData, target.size, pEntry->pAECInput, pEntry->sizeOfAECInput);
    }
    if (0 == copied)
    {
        return FALSE;
    }
    *pCopiedSize = copied;
    return TRUE;
}
