// Base of the interface translators: the one core record a translator owns and the copy rules between host and core records.
#include "aec/wrapper/caecinterfacetranslator.h"

#include <cstddef>
#include <cstring>

#include "aec/wrapper/aecwrapperassert.h"
#include "platform/velalog.h"

CAECInterfaceTranslator::CAECInterfaceTranslator()
    : m_pData(nullptr)
    , m_dataSize(0)
{
}

VOID* CAECInterfaceTranslator::getDataAddress() const
{
    return m_pData;
}

VOID CAECInterfaceTranslator::reset()
{
    if (nullptr != m_pData)
    {
        std::memset(m_pData, 0, m_dataSize);
    }
}

VOID CAECInterfaceTranslator::updatePrivateData(VOID* pData, SIZE_T dataSize)
{
    m_pData    = pData;
    m_dataSize = dataSize;
}

SIZE_T CAECInterfaceTranslator::copyData(VOID* pDst, SIZE_T copySize, const VOID* pSrc, SIZE_T srcSize)
{
    // An oversized host entry is a broken contract, not a recoverable error.
    AEC_WRAPPER_ASSERT(copySize >= srcSize);

    if (srcSize < copySize)
    {
        return 0;
    }
    if ((nullptr == pDst) || (nullptr == pSrc))
    {
        AEC_VLOG_ERROR("Copy of %zu bytes refused: null %s pointer", srcSize, (nullptr == pSrc) ? "source" : "destination");
        return 0;
    }
    std::memcpy(pDst, pSrc, copySize);
    return copySize;
}

SIZE_T CAECInterfaceTranslator::copyDataStatsInfo(AECCoreInput* pInput, const VOID* pSrc, SIZE_T srcSize)
{
    if (srcSize < AECORE_INPUT_STATS_INFO_MIN_SIZE)
    {
        return 0;
    }
    if (nullptr == pSrc)
    {
        AEC_VLOG_ERROR("Statistics info entry of %zu bytes has no data", srcSize);
        return 0;
    }

    const AECAlgoInputStatsInfo* pInfo = static_cast<const AECAlgoInputStatsInfo*>(pSrc);
    pInput->frameID                    = pInfo->requestId;
    pInput->prepareBeforePreflash      = pInfo->prepareBeforePreflash;
    // Only the first 16 bytes are guaranteed: a shorter host record has no torch flag, which then stays off.
    if (srcSize >= (offsetof(AECAlgoInputStatsInfo, bIsTorchAEC) + sizeof(pInfo->bIsTorchAEC)))
    {
        pInput->bIsTorchAEC = pInfo->bIsTorchAEC;
    }
    return AECORE_INPUT_STATS_INFO_MIN_SIZE;
}

SIZE_T CAECInterfaceTranslator::copyMotorStatusData(LDMMotorStatusInfo* pDst, const VOID* pSrc)
{
    if (nullptr == pSrc)
    {
        AEC_VLOG_ERROR("MotorStatusData copy failed");
        return 0;
    }

    const LDMMotorStatusInfo* pStatus = static_cast<const LDMMotorStatusInfo*>(pSrc);
    pDst->isMoving                    = pStatus->isMoving;
    pDst->motorCurPosition            = pStatus->motorCurPosition;
    AEC_VLOG_VERBOSE("Copy Motor Status Data for motorId: %d isMoving %d motorCurPosition %d", pStatus->motorId,
                     pStatus->isMoving, pStatus->motorCurPosition);
    return AECORE_MOTOR_STATUS_COPY_SIZE;
}

// TRUE when a field of a host record lies wholly inside the bytes the host declared.
#define AEC_FIELD_FITS(type, field, size) ((offsetof(type, field) + sizeof(((type*)nullptr)->field)) <= (size))

VOID CAECInterfaceTranslator::copyDataFrameControl(AECAlgoFrameControl* pDst, UINT32 dstSize, const AECFrameControl* pSrc)
{
    // Everything else in the host's record (aperture, trigger, decompanding, ...) belongs to the host.
    pDst->flashState                = pSrc->flashState;
    pDst->LEDInfluenceRatio         = pSrc->LEDInfluenceRatio;
    pDst->LEDRGRatio                = pSrc->LEDRGRatio;
    pDst->LEDBGRatio                = pSrc->LEDBGRatio;
    pDst->luxIndex                  = pSrc->luxIndex;
    pDst->ISOValue                  = pSrc->exifInfo.ISOValue;
    pDst->stretchControl            = pSrc->stretchControl;
    pDst->LEDFirstEntryRatio        = pSrc->LEDFirstEntryRatio;
    pDst->LEDLastEntryRatio         = pSrc->LEDLastEntryRatio;
    pDst->predictiveGain            = pSrc->predictiveGain;
    pDst->digitalGainForSimulation  = pSrc->digitalGainForSimulation;
    pDst->compenADRCGain            = pSrc->compenADRCGain;
    pDst->isInSensorHDR3ExpSnapshot = pSrc->isInsensorHDRSnapshot;
    // These three lie beyond the least accepted size; a host that passes a short record keeps its memory.
    if (AEC_FIELD_FITS(AECAlgoFrameControl, compensationDarkBoostGain, dstSize))
    {
        pDst->compensationDarkBoostGain = pSrc->compensationDarkBoostGain;
    }
    if (AEC_FIELD_FITS(AECAlgoFrameControl, IRModeActivated, dstSize))
    {
        pDst->IRModeActivated = static_cast<INT32>(pSrc->IRModeActivated);
    }
    if (AEC_FIELD_FITS(AECAlgoFrameControl, IRLedIntensity, dstSize))
    {
        pDst->IRLedIntensity = pSrc->IRLedIntensity;
    }
}

VOID CAECInterfaceTranslator::copyDataFrameInfo(AECAlgoFrameInfo* pDst, UINT32 dstSize, const AECFrameInfo* pSrc)
{
    // processedROI is the host's.
    pDst->brightnessSettled    = pSrc->brightnessSettled;
    pDst->aecSettled           = pSrc->aecSettled;
    pDst->asdExtremeGreenRatio = pSrc->asdExtremeGreenRatio;
    pDst->asdExtremeBlueRatio  = pSrc->asdExtremeBlueRatio;
    pDst->snapshotIndicator    = pSrc->snapshotIndicator;
    pDst->touchEVIndicator     = pSrc->touchEVIndicator;
    pDst->LEDAFRequired        = pSrc->LEDAFRequired;
    std::memcpy(pDst->legacyYStats, pSrc->legacyYStats, sizeof(pDst->legacyYStats));
    pDst->LEDFDDelayRequired   = pSrc->LEDFDDelayRequired;
    pDst->DebugDataSizeWritten = pSrc->DebugDataSizeWritten;
    pDst->frameLuma            = pSrc->frameLuma;
    // pixCntRatioLEF lies beyond the least accepted size, see copyDataFrameControl.
    if (AEC_FIELD_FITS(AECAlgoFrameInfo, pixCntRatioLEF, dstSize))
    {
        pDst->pixCntRatioLEF = pSrc->pixCntRatioLEF;
    }
}

BOOL CAECInterfaceTranslator::copyDataExposureData(AECAlgoExposureSet* pDst, const AECAlgoExposureData* pSrc)
{
    if ((nullptr == pDst->pExposureInfo) || (pDst->exposureInfoCount < AECAlgoExposureCount) ||
        (pDst->exposureInfoSize < AECORE_EXPOSURE_INFO_MIN_SIZE))
    {
        AEC_VLOG_ERROR("Exposure set refused: pExposureInfo %p count %u size %u", static_cast<VOID*>(pDst->pExposureInfo),
                       pDst->exposureInfoCount, pDst->exposureInfoSize);
        return FALSE;
    }

    // A host stride below the entry size would make the entries overlap and the last one run past the
    // host's array, so each entry is cut to the stride.
    const SIZE_T stride     = pDst->exposureInfoSize;
    const SIZE_T entryBytes = (stride < sizeof(AECAlgoExposureInfo)) ? stride : sizeof(AECAlgoExposureInfo);
    UINT8*       pEntry     = reinterpret_cast<UINT8*>(pDst->pExposureInfo);
    for (UINT32 index = 0; index < static_cast<UINT32>(AECAlgoExposureCount); ++index)
    {
        AECAlgoExposureInfo info;
        std::memset(&info, 0, sizeof(info));
        info.exposureType = static_cast<AECAlgoExposureType>(index);
        info.exposureData = pSrc[index];
        std::memcpy(pEntry + (index * stride), &info, entryBytes);
    }
    pDst->exposureInfoOutputCount = AECAlgoExposureCount;
    pDst->exposureInfoOutputSize  = AECORE_EXPOSURE_INFO_OUTPUT_SIZE;
    return TRUE;
}

BOOL CAECInterfaceTranslator::canWrite(const VOID* pDst, UINT32 dstSize, UINT32 leastSize)
{
    return ((nullptr != pDst) && (dstSize >= leastSize)) ? TRUE : FALSE;
}

BOOL CAECInterfaceTranslator::copyRecordToHost(VOID* pDst, UINT32 dstSize, const VOID* pSrc, UINT32 srcSize)
{
    if (FALSE == canWrite(pDst, dstSize, srcSize))
    {
        return FALSE;
    }
    std::memcpy(pDst, pSrc, srcSize);
    return TRUE;
}
