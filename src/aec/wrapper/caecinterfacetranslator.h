// Base of the interface translators: the one core record a translator owns and the copy rules between host and core records.
#ifndef AEC_WRAPPER_CAECINTERFACETRANSLATOR_H
#define AEC_WRAPPER_CAECINTERFACETRANSLATOR_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccorecommon.h"

class CAECInterfaceTranslator
{
public:
    // Address of the owned core record.
    VOID* getDataAddress() const;

    // Zeroes the owned core record.
    VOID reset();

protected:
    CAECInterfaceTranslator();
    ~CAECInterfaceTranslator() = default;

    CAECInterfaceTranslator(const CAECInterfaceTranslator&)            = delete;
    CAECInterfaceTranslator& operator=(const CAECInterfaceTranslator&) = delete;

    // Registers the derived class's record, so that reset and getDataAddress act on it.
    VOID updatePrivateData(VOID* pData, SIZE_T dataSize);

    // Host-to-core copy: a source shorter than copySize copies nothing and returns 0, a longer one aborts
    // ("copySize >= srcSize"), an equal one is copied and copySize returned. A null pointer copies nothing.
    static SIZE_T copyData(VOID* pDst, SIZE_T copySize, const VOID* pSrc, SIZE_T srcSize);

    // Takes frameID, prepareBeforePreflash and, when the entry is long enough, bIsTorchAEC from a statistics-info
    // entry of at least AECORE_INPUT_STATS_INFO_MIN_SIZE bytes. Returns the bytes taken over or 0.
    static SIZE_T copyDataStatsInfo(AECCoreInput* pInput, const VOID* pSrc, SIZE_T srcSize);

    // Takes isMoving and motorCurPosition of a host motor status. Returns the bytes taken over or 0.
    static SIZE_T copyMotorStatusData(LDMMotorStatusInfo* pDst, const VOID* pSrc);

    // Core-to-host copies of the per-frame and query records.
    // dstSize is the host's entry size: fields that lie beyond it are left unwritten.
    static VOID copyDataFrameControl(AECAlgoFrameControl* pDst, UINT32 dstSize, const AECFrameControl* pSrc);
    static VOID copyDataFrameInfo(AECAlgoFrameInfo* pDst, UINT32 dstSize, const AECFrameInfo* pSrc);

    // Writes the three exposures into the host's exposure array; FALSE when the array cannot take them.
    static BOOL copyDataExposureData(AECAlgoExposureSet* pDst, const AECAlgoExposureData* pSrc);

    // TRUE when a host output entry exists and holds at least leastSize bytes.
    static BOOL canWrite(const VOID* pDst, UINT32 dstSize, UINT32 leastSize);

    // Core-to-host copy of a plain record; FALSE, with nothing written, when canWrite refuses the entry.
    static BOOL copyRecordToHost(VOID* pDst, UINT32 dstSize, const VOID* pSrc, UINT32 srcSize);

private:
    VOID*  m_pData;
    SIZE_T m_dataSize;
};

#endif // AEC_WRAPPER_CAECINTERFACETRANSLATOR_H
