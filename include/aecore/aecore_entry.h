/* Callback tables exchanged with the host, the instance function table, and the exported entry points and data. */
#ifndef AECORE_AECORE_ENTRY_H
#define AECORE_AECORE_ENTRY_H

#include "aecore/aecore_lists.h"
#include "aecore/aecore_types.h"

#ifdef __cplusplus
#define AECORE_THREAD_LOCAL thread_local
#else
#define AECORE_THREAD_LOCAL _Thread_local
#endif

AECORE_EXTERN_C_BEGIN

typedef struct LYRAECAlgorithm LYRAECAlgorithm;

/* ---- Host callback table ---- */

/* The caller sets size to the record's size; on return vendorTagBase is the first id of the named component's tags. */
typedef struct LyrVendorTagBaseInfo
{
    UINT32      size;
    UINT32      vendorTagBase;
    const CHAR* pComponentName;
    const CHAR* pTagName;
} LyrVendorTagBaseInfo;

/* Host-defined signatures: metadata access by tag id. The library never calls these two. */
typedef KDKResult (*PFNLYRGETMETADATA)(UINT32 tagId, VOID** ppData);
typedef KDKResult (*PFNLYRSETMETADATA)(UINT32 tagId, const VOID* pData, UINT32 dataSize);
typedef KDKResult (*PFNLYRGETVENDORTAGBASE)(LyrVendorTagBaseInfo* pVendorTagBaseInfo);
typedef KDKResult (*PFNLYRQUERYVENDORTAGLOCATION)(const CHAR* pSectionName, const CHAR* pTagName, UINT32* pTagLocation);

typedef struct LyrAlgorithmInterface
{
    UINT32                       size;
    UINT32                       majorVersion;
    UINT32                       minorVersion;
    PFNLYRGETMETADATA            pGetMetadata;
    PFNLYRSETMETADATA            pSetMetaData;
    PFNLYRGETVENDORTAGBASE       pGetVendorTagBase;
    PFNLYRQUERYVENDORTAGLOCATION pQueryVendorTagLocation;
} LyrAlgorithmInterface;

/* ---- Library callback table ---- */

typedef struct LyrAlgorithmCapsInfo
{
    UINT32 size;
    UINT32 algorithmCapsMask;
} LyrAlgorithmCapsInfo;

typedef KDKResult (*PFNALGORITHMGETCAPABILITIES)(LyrAlgorithmCapsInfo* pCapsInfo);
/* Host-defined signature: the host's query for the vendor tags a library publishes; this library publishes none. */
typedef KDKResult (*PFNLYRQUERYVENDORTAG)(VOID* pVendorTagInfo);
typedef KDKResult (*CREATEAEC)(const AECAlgoCreateParamList* pCreateParams, LYRAECAlgorithm** ppAlgo);
typedef VOID (*PFLYRSETALGORITHMINTERFACE)(LyrAlgorithmInterface* pInterface);

/* Filled by LyrAECAlgorithmEntry; the versions and pfnQueryVendorTag stay as the host set them. */
typedef struct LyrAECAlgorithmCallbacks
{
    UINT32                      size;
    UINT32                      majorVersion;
    UINT32                      minorVersion;
    PFNALGORITHMGETCAPABILITIES pfnGetCapabilities;
    PFNLYRQUERYVENDORTAG        pfnQueryVendorTag;
    CREATEAEC                   pfnCreate;
    PFLYRSETALGORITHMINTERFACE  pfnSetAlgoInterface;
} LyrAECAlgorithmCallbacks;

/* ---- Instance ---- */

/* Function table at the head of every instance. AECGetFeatureCapability is never filled. */
struct LYRAECAlgorithm
{
    KDKResult (*AECProcess)(LYRAECAlgorithm* pAlgo, const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList);
    KDKResult (*AECGetParam)(LYRAECAlgorithm* pAlgo, AECAlgoGetParam* pGetParam);
    KDKResult (*AECSetParam)(LYRAECAlgorithm* pAlgo, const AECAlgoSetParamList* pSetParams);
    KDKResult (*AECGetFeatureCapability)(LYRAECAlgorithm* pAlgo, UINT64* pFeatures);
    VOID (*AECDestroy)(LYRAECAlgorithm* pAlgo, const AECAlgoDestroyParamList* pDestroyParams);
};

/* ---- Exported data ---- */

/* One LED setting of the fallback flash calibration: the current settings of LED 1 and LED 2. */
typedef struct AECLEDSettingPair
{
    INT32 LED1Setting;
    INT32 LED2Setting;
} AECLEDSettingPair;

#define AECORE_FAKE_FLASH_CALIB_COUNT 6

/* Log sink of the core; set from the logger entry of a create list. */
extern AECORE_API StatsLoggingFunction gStatsLogger;
/* LED settings the built-in flash tuning uses when the host supplies no tuning. */
extern AECORE_API const AECLEDSettingPair s_fakeFlashCalib[AECORE_FAKE_FLASH_CALIB_COUNT];
/* Camera id of the calling thread, for the host's own use; 0xFFFFFFFF until the host sets it. */
extern AECORE_API AECORE_THREAD_LOCAL UINT32 g_cameraId;

/* ---- Exported functions ---- */

AECORE_API VOID LyrAECAlgorithmEntry(LyrAECAlgorithmCallbacks* pCallbacks);
AECORE_API KDKResult AECGetCapabilities(LyrAlgorithmCapsInfo* pCapsInfo);
AECORE_API KDKResult CreateAECAlgorithm(const AECAlgoCreateParamList* pCreateParams, LYRAECAlgorithm** ppAlgo);
AECORE_API KDKResult CreateAECAlgoHandler(const AECAlgoCreateParamList* pCreateParams, LYRAECAlgorithm** ppAlgo);
AECORE_API KDKResult SetOperationModeTypeInit(LYRAECAlgorithm* pAlgo);
AECORE_API KDKResult AECProcess(LYRAECAlgorithm* pAlgo, const AECAlgoInputList* pInputList, AECAlgoOutputList* pOutputList);
AECORE_API KDKResult AECSetParam(LYRAECAlgorithm* pAlgo, const AECAlgoSetParamList* pSetParams);
AECORE_API KDKResult AECGetParam(LYRAECAlgorithm* pAlgo, AECAlgoGetParam* pGetParam);
AECORE_API VOID AECDestroy(LYRAECAlgorithm* pAlgo, const AECAlgoDestroyParamList* pDestroyParams);

#if defined(__LP64__)
AECORE_STATIC_ASSERT(sizeof(LyrAECAlgorithmCallbacks) == 48, "LyrAECAlgorithmCallbacks must be 48 bytes");
AECORE_STATIC_ASSERT(sizeof(LyrVendorTagBaseInfo) == 24, "LyrVendorTagBaseInfo must be 24 bytes");
AECORE_STATIC_ASSERT(sizeof(LyrAlgorithmCapsInfo) == 8, "LyrAlgorithmCapsInfo is 8 bytes");
AECORE_STATIC_ASSERT(sizeof(AECLEDSettingPair) == 8, "AECLEDSettingPair is 8 bytes");
#endif

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_ENTRY_H */
