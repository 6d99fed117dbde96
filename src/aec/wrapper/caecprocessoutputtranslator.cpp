// Translation of the core's AECCoreOutput into the host's per-frame output list, with the lens motor command queue.
#include "aec/wrapper/caecprocessoutputtranslator.h"

#include <cstdlib>
#include <cstring>

#include "platform/velalog.h"

namespace
{

// One slot per kind of per-frame motor command: control, absolute move, relative move.
constexpr SIZE_T LDMCmdSlotCount = 3;

constexpr UINT32 FrameInfoSize    = AECORE_FRAME_INFO_OUTPUT_SIZE;
constexpr UINT32 FrameControlSize = AECORE_FRAME_CONTROL_OUTPUT_SIZE;
constexpr UINT32 ExposureSetSize  = sizeof(AECAlgoExposureSet);

} // namespace

CAECProcessOutputTranslator::CAECProcessOutputTranslator()
    : m_OutputParam()
    , m_pLDMCmdQueue(nullptr)
    , m_IRCutStatus(0)
{
    updatePrivateData(&m_OutputParam, sizeof(m_OutputParam));
    // The lens capability is always offered; every other motor record waits for its flag.
    m_OutputParam.LDMcmd.SetParamInfo.lensCap_is_available = true;

    m_pLDMCmdQueue = static_cast<LDMSetMotorInfoList*>(std::malloc(sizeof(LDMSetMotorInfoList)));
    if (nullptr == m_pLDMCmdQueue)
    {
        AEC_VLOG_ERROR("[LDM] No memory for the command queue");
        return;
    }
    m_pLDMCmdQueue->numberOfSetCmd = 0;
    m_pLDMCmdQueue->pLDMCmd        = static_cast<LDMSetMotorInfo*>(std::malloc(LDMCmdSlotCount * sizeof(LDMSetMotorInfo)));
    if (nullptr == m_pLDMCmdQueue->pLDMCmd)
    {
        AEC_VLOG_ERROR("[LDM] No memory for the command slots");
        return;
    }
    for (SIZE_T slot = 0; slot < LDMCmdSlotCount; ++slot)
    {
        m_pLDMCmdQueue->pLDMCmd[slot].pData      = nullptr;
        m_pLDMCmdQueue->pLDMCmd[slot].sizeOfData = 0;
        m_pLDMCmdQueue->pLDMCmd[slot].dataType   = LDMSetMax;
    }
}

CAECProcessOutputTranslator::~CAECProcessOutputTranslator()
{
    if (nullptr != m_pLDMCmdQueue)
    {
        if (nullptr != m_pLDMCmdQueue->pLDMCmd)
        {
            releaseCommands();
            std::free(m_pLDMCmdQueue->pLDMCmd);
        }
        std::free(m_pLDMCmdQueue);
        m_pLDMCmdQueue = nullptr;
    }
}

AECCoreOutput* CAECProcessOutputTranslator::translate(AECAlgoOutputList* pOutputList)
{
    if (nullptr == pOutputList)
    {
        return nullptr;
    }
    if ((nullptr == pOutputList->pAECOutputList) && (0 != pOutputList->numberOfAECOutputs))
    {
        AEC_VLOG_ERROR("Output list names %u entries but has none", pOutputList->numberOfAECOutputs);
        return nullptr;
    }
    for (UINT32 index = 0; index < pOutputList->numberOfAECOutputs; ++index)
    {
        AECAlgoOutput* pEntry = &pOutputList->pAECOutputList[index];
        if (FALSE == writeOutput(pEntry))
        {
            AEC_VLOG_ERROR("Output type %d refused: %u bytes at %p", pEntry->outputType, pEntry->sizeOfAECOutput,
                           pEntry->pAECOutput);
            return nullptr;
        }
    }
    return &m_OutputParam;
}

BOOL CAECProcessOutputTranslator::writeOutput(AECAlgoOutput* pEntry)
{
    const AECFrameControl& frame = m_OutputParam.frameSetting;
    VOID* const            pDst  = pEntry->pAECOutput;
    const UINT32           size  = pEntry->sizeOfAECOutput;

    // Plain records are copied whole; frame info, frame control, exposure sets and the queue are converted.
    const VOID* pRecord    = nullptr;
    UINT32      recordSize = 0;
    switch (pEntry->outputType)
    {
        case AECAlgoOutputFrameInfo:
            if (FALSE == canWrite(pDst, size, FrameInfoSize))
            {
                return FALSE;
            }
            copyDataFrameInfo(static_cast<AECAlgoFrameInfo*>(pDst), size, &m_OutputParam.frameInfo);
            pEntry->sizeOfWrittenAECOutput = FrameInfoSize;
            return TRUE;
        case AECAlgoOutputFrameControl:
            if (FALSE == canWrite(pDst, size, FrameControlSize))
            {
                return FALSE;
            }
            copyDataFrameControl(static_cast<AECAlgoFrameControl*>(pDst), size, &frame);
            pEntry->sizeOfWrittenAECOutput = FrameControlSize;
            return TRUE;
        case AECAlgoOutputExposureSets:
        case AECAlgoOutputRealExposureSets:
            if ((FALSE == canWrite(pDst, size, ExposureSetSize)) ||
                (FALSE == copyDataExposureData(static_cast<AECAlgoExposureSet*>(pDst),
                                               (AECAlgoOutputExposureSets == pEntry->outputType) ? frame.exposureSets
                                                                                                 : frame.RealexposureSets)))
            {
                return FALSE;
            }
            pEntry->sizeOfWrittenAECOutput = ExposureSetSize;
            return TRUE;
        case AECAlgoOutputLDMCmdQueue:
            pEntry->sizeOfWrittenAECOutput = copyLDMQueue(pEntry);
            return (0 != pEntry->sizeOfWrittenAECOutput) ? TRUE : FALSE;
        case AECAlgoOutputEXIFApex:
            pRecord    = &frame.exifInfo.APEXValues;
            recordSize = sizeof(frame.exifInfo.APEXValues);
            break;
        case AECAlgoOutputLEDCurrents:
            pRecord    = frame.LEDCurrents;
            recordSize = sizeof(frame.LEDCurrents);
            break;
        case AECAlgoOutputBGConfig:
            pRecord    = &frame.statsBGBEConfig;
            recordSize = sizeof(frame.statsBGBEConfig);
            break;
        case AECAlgoOutputBHistConfig:
            pRecord    = &frame.statsBHISTConfig;
            recordSize = sizeof(frame.statsBHISTConfig);
            break;
        default:
            // Additional info, vendor tags, stretch control and stats-parse skipping are not produced here.
            return TRUE;
    }

    if (FALSE == copyRecordToHost(pDst, size, pRecord, recordSize))
    {
        return FALSE;
    }
    pEntry->sizeOfWrittenAECOutput = recordSize;
    return TRUE;
}

UINT32 CAECProcessOutputTranslator::copyLDMQueue(AECAlgoOutput* pEntry)
{
    pEntry->pAECOutput = m_pLDMCmdQueue;
    if (nullptr == m_pLDMCmdQueue)
    {
        return 0;
    }
    AEC_VLOG_VERBOSE("[LDM] Previous commend number %d ", static_cast<INT32>(m_pLDMCmdQueue->numberOfSetCmd));
    if (nullptr == m_pLDMCmdQueue->pLDMCmd)
    {
        return pEntry->sizeOfAECOutput;
    }

    // Last frame's commands stay queued until now, which gives the host one frame to consume them.
    IrisOneTimeInputParams& paramInfo = m_OutputParam.LDMcmd.SetParamInfo;
    paramInfo.pMotorSysConfig         = nullptr;
    paramInfo.ppIrisTable             = nullptr;
    paramInfo.pMotorPowerLevel        = nullptr;
    paramInfo.pLensCap                = nullptr;
    releaseCommands();
    m_pLDMCmdQueue->numberOfSetCmd = 0;

    // The record must point at a valid IR cut status; the translator's own word serves every frame.
    m_OutputParam.LDMcmd.SetQueryInfo.pIRCutStatus = &m_IRCutStatus;

    const IrisPerFrameOutputParams& commands = m_OutputParam.LDMcmd.SetInfo;
    UINT32                          queued   = 0;
    if (commands.motorSetFlag.motorCtrl_is_available)
    {
        AEC_VLOG_VERBOSE("[copyLDMQueue] LDM_SET_MOTOR_CONTROL BacklashStep = %d", commands.motorCtrlData.backlashStep);
        AEC_VLOG_VERBOSE("[copyLDMQueue] LDM_SET_MOTOR_CONTROL Speed = %d", commands.motorCtrlData.speed);
        queueCommand(&commands.motorCtrlData, sizeof(commands.motorCtrlData), LDMSetMotorControl);
        queued += sizeof(commands.motorCtrlData);
    }
    if (commands.motorSetFlag.motorMoveAbs_is_available)
    {
        queueCommand(&commands.motorMoveAbsData, sizeof(commands.motorMoveAbsData), LDMSetMotorMovingAbsolute);
        queued += sizeof(commands.motorMoveAbsData);
    }
    if (commands.motorSetFlag.motorMoveRel_is_available)
    {
        queueCommand(&commands.motorMoveRelData, sizeof(commands.motorMoveRelData), LDMSetMotorMovingRelative);
        queued += sizeof(commands.motorMoveRelData);
    }
    return (queued > pEntry->sizeOfAECOutput) ? queued : pEntry->sizeOfAECOutput;
}

VOID CAECProcessOutputTranslator::releaseCommands()
{
    for (SIZE_T slot = 0; slot < LDMCmdSlotCount; ++slot)
    {
        LDMSetMotorInfo& command = m_pLDMCmdQueue->pLDMCmd[slot];
        std::free(command.pData);
        command.pData      = nullptr;
        command.sizeOfData = 0;
        command.dataType   = LDMSetMax;
    }
}

VOID CAECProcessOutputTranslator::queueCommand(const VOID* pData, UINT32 sizeOfData, LDMSetStepMotorConfigType dataType)
{
    LDMSetMotorInfo& command = m_pLDMCmdQueue->pLDMCmd[m_pLDMCmdQueue->numberOfSetCmd];
    command.pData            = std::malloc(sizeOfData);
    if (nullptr != command.pData)
    {
        std::memcpy(command.pData, pData, sizeOfData);
    }
    else
    {
        // The slot still counts, so the host sees the command kind with no payload rather than a shifted queue.
        AEC_VLOG_ERROR("[LDM] No memory for a command of %u bytes", sizeOfData);
    }
    command.sizeOfData = sizeOfData;
    command.dataType   = dataType;
    m_pLDMCmdQueue->numberOfSetCmd++;
}
