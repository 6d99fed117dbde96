// End-to-end tests of the exported entry points against the real core: callback tables, the instance table,
// creation, destruction, set and get dispatch and the dependent vendor tag query.
#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "aec/wrapper/zcaecalgorithminterface.h"
#include "platform/statslogger.h"
#include "unit/wrapper/wrapperlogcapture.h"

namespace
{

// ---- Host side stand-ins ----

std::vector<std::string> s_coreLines;

void CoreLogger(const CHAR*, UINT32, const CHAR*, StatsLogGroup, StatsLog, const CHAR* pFormat, ...)
{
    CHAR    line[1024];
    va_list args;
    va_start(args, pFormat);
    std::vsnprintf(line, sizeof(line), pFormat, args);
    va_end(args);
    s_coreLines.emplace_back(line);
}

void OtherLogger(const CHAR*, UINT32, const CHAR*, StatsLogGroup, StatsLog, const CHAR*, ...)
{
}

size_t CoreLinesStartingWith(const std::string& text)
{
    size_t count = 0;
    for (const std::string& line : s_coreLines)
    {
        count += (0 == line.compare(0, text.size(), text)) ? 1 : 0;
    }
    return count;
}

std::vector<std::string> s_queriedTags;
std::vector<std::string> s_queriedSections;
size_t                   s_failAtQuery = SIZE_MAX;

KDKResult QueryVendorTagLocation(const CHAR* pSectionName, const CHAR* pTagName, UINT32* pTagLocation)
{
    s_queriedSections.emplace_back(pSectionName);
    s_queriedTags.emplace_back(pTagName);
    if (s_queriedTags.size() - 1 == s_failAtQuery)
    {
        return VelaResultENoSuch;
    }
    *pTagLocation = 0x1000 + static_cast<UINT32>(s_queriedTags.size());
    return VelaResultSuccess;
}

LyrVendorTagBaseInfo s_baseInfo;
std::string          s_baseComponent;
KDKResult            s_baseResult = VelaResultSuccess;
int                  s_baseCalls  = 0;

KDKResult GetVendorTagBase(LyrVendorTagBaseInfo* pInfo)
{
    s_baseCalls++;
    s_baseInfo      = *pInfo;
    s_baseComponent = (nullptr != pInfo->pComponentName) ? pInfo->pComponentName : "";
    pInfo->vendorTagBase = 0x8000;
    return s_baseResult;
}

KDKResult QueryOwnVendorTags(VOID*)
{
    return VelaResultSuccess;
}

// ---- Lists ----

AECAlgoCreateParam CreateEntry(AECAlgoCreateParamsType type, void* pData, UINT32 size)
{
    AECAlgoCreateParam entry = {};
    entry.createParamType    = type;
    entry.pCreateParam       = pData;
    entry.sizeOfCreateParam  = size;
    return entry;
}

AECAlgoCreateParam LoggerEntry(StatsLoggingFunction pLogger)
{
    return CreateEntry(AECAlgoCreateParamsLoggerFunctionPtr, reinterpret_cast<void*>(pLogger), sizeof(void*));
}

AECAlgoSetParam SetEntry(AECAlgoSetParamType type, void* pData, UINT32 size)
{
    AECAlgoSetParam entry   = {};
    entry.setParamType      = type;
    entry.pAECSetParam      = pData;
    entry.sizeOfAECSetParam = size;
    return entry;
}

class AECAlgorithmInterfaceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_savedLogger = gStatsLogger;
        gStatsLogger  = nullptr;
        s_coreLines.clear();
        s_queriedTags.clear();
        s_queriedSections.clear();
        s_failAtQuery = SIZE_MAX;
        m_savedInterface = Vela::g_LyrAlgoInterface;
        LyrAECAlgorithmCallbacks callbacks = {};
        LyrAECAlgorithmEntry(&callbacks);
        m_pSetAlgoInterface = callbacks.pfnSetAlgoInterface;
    }

    void TearDown() override
    {
        for (UINT32 cameraId = 0; cameraId < 8; ++cameraId)
        {
            Destroy(cameraId, 1U << cameraId, nullptr);
        }
        gStatsLogger              = m_savedLogger;
        Vela::g_LyrAlgoInterface = m_savedInterface;
    }

    // Creates camera cameraId with the core logger first in a five-entry list.
    LYRAECAlgorithm* Create(UINT32 cameraId, KDKResult expected = VelaResultSuccess)
    {
        StatsCameraInfo                 info    = {StatsAlgoRoleDefault, cameraId};
        std::vector<AECAlgoCreateParam> entries = {
            LoggerEntry(&CoreLogger),
            CreateEntry(AECAlgoCreateParamTypeSessionHandle, nullptr, 0),
            CreateEntry(AECAlgoCreateParamTypeCameraOpenIndicator, nullptr, 0),
            CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info)),
            CreateEntry(AECCreateParamsTypeTuningData, nullptr, 0),
        };
        return CreateFrom(entries, expected);
    }

    LYRAECAlgorithm* CreateFrom(std::vector<AECAlgoCreateParam>& entries, KDKResult expected = VelaResultSuccess)
    {
        AECAlgoCreateParamList list = {entries.data(), static_cast<UINT32>(entries.size())};
        LYRAECAlgorithm*       pAlgo = reinterpret_cast<LYRAECAlgorithm*>(0x1);
        EXPECT_EQ(expected, CreateAECAlgorithm(&list, &pAlgo));
        return pAlgo;
    }

    static void Destroy(UINT32 cameraId, UINT32 mask, LYRAECAlgorithm* pAlgo)
    {
        StatsCameraInfo     info       = {StatsAlgoRoleDefault, cameraId};
        AECAlgoDestroyParam entries[2] = {
            {AECDestroyParamTypeCameraCloseIndicator, &mask, sizeof(mask)},
            {AECDestroyParamTypeCameraInfo, &info, sizeof(info)},
        };
        AECAlgoDestroyParamList list = {entries, 2};
        AECDestroy(pAlgo, &list);
    }

    static KDKResult SetOperationMode(LYRAECAlgorithm* pAlgo, AECAlgoOperationModeType mode)
    {
        AECAlgoSetParam     entry = SetEntry(AECAlgoSetParamOperationMode, &mode, sizeof(mode));
        AECAlgoSetParamList list  = {&entry, 1};
        return AECSetParam(pAlgo, &list);
    }

    // Asks for the dependent vendor tags with an optional fixed-focus input.
    KDKResult QueryDependentTags(LYRAECAlgorithm* pAlgo, const UINT32* pFixedFocus)
    {
        m_fixedFocusInput                 = {AECAlgoGetParamInputIsFixedFocus, const_cast<UINT32*>(pFixedFocus), 4};
        m_tagOutput                       = {};
        m_tagOutput.pOutputData           = &m_tagList;
        m_tagOutput.sizeOfOutputData      = sizeof(m_tagList);
        m_tagOutput.outputType            = AECGetParamOutputTypeDependentVendorTags;
        AECAlgoGetParam param             = {};
        param.type                        = AECAlgoGetParamDependentVendorTags;
        param.inputList.pAECGetParamList  = &m_fixedFocusInput;
        param.inputList.numberOfAECGetInputParams = (nullptr != pFixedFocus) ? 1 : 0;
        param.outputList.pAECOutputList   = &m_tagOutput;
        param.outputList.numberOfAECOutputs = 1;
        return AECGetParam(pAlgo, &param);
    }

    void InstallHostInterface()
    {
        LyrAlgorithmInterface host   = {};
        host.size                    = sizeof(host);
        host.pQueryVendorTagLocation = &QueryVendorTagLocation;
        m_pSetAlgoInterface(&host);
    }

    StatsLoggingFunction       m_savedLogger = nullptr;
    LyrAlgorithmInterface      m_savedInterface = {};
    PFLYRSETALGORITHMINTERFACE m_pSetAlgoInterface = nullptr;
    AECAlgoGetParamInput       m_fixedFocusInput = {};
    AECAlgoGetParamOutput      m_tagOutput = {};
    StatsVendorTagInfoList     m_tagList = {};
    WrapperLogCapture          m_logs;
};

} // namespace

// ---- Callback tables ----

TEST_F(AECAlgorithmInterfaceTest, EntryFillsItsCallbacksAndLeavesTheHostsFields)
{
    LyrAECAlgorithmCallbacks callbacks = {};
    callbacks.majorVersion             = 3;
    callbacks.minorVersion             = 4;
    callbacks.pfnQueryVendorTag        = &QueryOwnVendorTags;
    LyrAECAlgorithmEntry(&callbacks);

    EXPECT_EQ(48U, callbacks.size);
    EXPECT_EQ(3U, callbacks.majorVersion);
    EXPECT_EQ(4U, callbacks.minorVersion);
    EXPECT_EQ(&QueryOwnVendorTags, callbacks.pfnQueryVendorTag);
    EXPECT_EQ(&AECGetCapabilities, callbacks.pfnGetCapabilities);
    EXPECT_EQ(&CreateAECAlgorithm, callbacks.pfnCreate);
    EXPECT_NE(nullptr, callbacks.pfnSetAlgoInterface);

    LyrAECAlgorithmEntry(nullptr);
    EXPECT_TRUE(m_logs.Has("Algorithm callbacks are NULL"));
}

TEST_F(AECAlgorithmInterfaceTest, GetCapabilitiesLogsAndLeavesTheRecordUnchanged)
{
    LyrAlgorithmCapsInfo caps = {8, 0x5};
    EXPECT_EQ(VelaResultSuccess, AECGetCapabilities(&caps));
    EXPECT_EQ(8U, caps.size);
    EXPECT_EQ(0x5U, caps.algorithmCapsMask);
    EXPECT_TRUE(m_logs.Has("Get supported Capabilities size:8, algomaks: 5"));

    EXPECT_EQ(VelaResultEInvalidPointer, AECGetCapabilities(nullptr));
}

TEST_F(AECAlgorithmInterfaceTest, SetAlgoInterfaceKeepsTheHostTableAndAsksForTheFocusTagBase)
{
    LyrAlgorithmInterface host   = {};
    host.size                    = sizeof(host);
    host.majorVersion            = 7;
    host.pGetVendorTagBase       = &GetVendorTagBase;
    host.pQueryVendorTagLocation = &QueryVendorTagLocation;
    s_baseCalls                  = 0;
    s_baseResult                 = VelaResultSuccess;
    m_pSetAlgoInterface(&host);

    EXPECT_EQ(7U, Vela::g_LyrAlgoInterface.majorVersion);
    EXPECT_EQ(&QueryVendorTagLocation, Vela::g_LyrAlgoInterface.pQueryVendorTagLocation);
    EXPECT_EQ(&GetVendorTagBase, Vela::g_LyrAlgoInterface.pGetVendorTagBase);
    ASSERT_EQ(1, s_baseCalls);
    EXPECT_EQ(24U, s_baseInfo.size);
    EXPECT_EQ(0U, s_baseInfo.vendorTagBase);
    EXPECT_EQ("com.kvr.stats.af", s_baseComponent);
    EXPECT_EQ(nullptr, s_baseInfo.pTagName);
    EXPECT_TRUE(m_logs.Has("VendorTagBaseForAF: 32768"));

    // A failure is ignored and not logged.
    WrapperLogCapture logs;
    s_baseResult = VelaResultEFailed;
    m_pSetAlgoInterface(&host);
    EXPECT_EQ(2, s_baseCalls);
    EXPECT_FALSE(logs.Has("VendorTagBaseForAF: 32768"));
    s_baseResult = VelaResultSuccess;
}

// ---- Creation ----

TEST_F(AECAlgorithmInterfaceTest, CreateBuildsAnInstanceInInitMode)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    EXPECT_EQ(&AECProcess, pAlgo->AECProcess);
    EXPECT_EQ(&AECGetParam, pAlgo->AECGetParam);
    EXPECT_EQ(&AECSetParam, pAlgo->AECSetParam);
    EXPECT_EQ(&AECDestroy, pAlgo->AECDestroy);
    EXPECT_EQ(nullptr, pAlgo->AECGetFeatureCapability);
    EXPECT_NE(nullptr, static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->pAlgo);
    EXPECT_EQ(&CoreLogger, gStatsLogger);
    EXPECT_TRUE(m_logs.Has("New AEC Algo Instance Created"));
    EXPECT_TRUE(m_logs.Has("CreateAECAlgorithm result VelaResultSuccess"));
    // The core received exactly one set parameter: the initial operation mode.
    EXPECT_EQ(1U, CoreLinesStartingWith("AEC Set parameters"));
}

TEST_F(AECAlgorithmInterfaceTest, SecondCreateSharesTheInstanceAndKeepsTheLogger)
{
    LYRAECAlgorithm* pFirst = Create(2);
    ASSERT_NE(nullptr, pFirst);

    StatsCameraInfo                 info    = {StatsAlgoRoleDefault, 2};
    std::vector<AECAlgoCreateParam> entries = {
        LoggerEntry(&OtherLogger),
        CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info)),
    };
    WrapperLogCapture logs;
    EXPECT_EQ(pFirst, CreateFrom(entries));
    EXPECT_EQ(&CoreLogger, gStatsLogger);
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 2 already running"));
    EXPECT_FALSE(logs.Has("New AEC Algo Instance Created"));
}

TEST_F(AECAlgorithmInterfaceTest, ListWithoutCameraInfoInItsFirstFiveEntriesMakesCamera0)
{
    StatsCameraInfo                 info    = {StatsAlgoRoleDefault, 4};
    std::vector<AECAlgoCreateParam> entries = {
        LoggerEntry(&CoreLogger),
        CreateEntry(AECAlgoCreateParamTypeSessionHandle, nullptr, 0),
        CreateEntry(AECAlgoCreateParamTypeCameraOpenIndicator, nullptr, 0),
        CreateEntry(AECCreateParamsTypeTuningData, nullptr, 0),
        CreateEntry(AECAlgoCreateParamTypeSessionHandle, nullptr, 0),
        CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info)),
    };
    LYRAECAlgorithm* pAlgo = CreateFrom(entries);
    ASSERT_NE(nullptr, pAlgo);

    WrapperLogCapture logs;
    EXPECT_EQ(pAlgo, Create(0));
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 0 already running"));
}

TEST_F(AECAlgorithmInterfaceTest, CameraSearchStopsAtTheEndOfAShortList)
{
    StatsCameraInfo                 info    = {StatsAlgoRoleDefault, 3};
    std::vector<AECAlgoCreateParam> entries = {
        LoggerEntry(&CoreLogger),
        CreateEntry(AECAlgoCreateParamTypeSessionHandle, nullptr, 0),
        CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info)),
    };
    // The host says two entries: the camera info behind them is not the host's list any more.
    AECAlgoCreateParamList list  = {entries.data(), 2};
    LYRAECAlgorithm*       pAlgo = nullptr;
    ASSERT_EQ(VelaResultSuccess, CreateAECAlgorithm(&list, &pAlgo));

    WrapperLogCapture logs;
    EXPECT_EQ(pAlgo, Create(0));
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 0 already running"));

    // A null list is camera 0 as well.
    LYRAECAlgorithm* pSame = nullptr;
    EXPECT_EQ(VelaResultSuccess, CreateAECAlgorithm(nullptr, &pSame));
    EXPECT_EQ(pAlgo, pSame);
}

TEST_F(AECAlgorithmInterfaceTest, CameraIdOutsideTheTableIsRefused)
{
    for (UINT32 cameraId : {8U, 9U, 0xFFFFFFFFU})
    {
        WrapperLogCapture logs;
        EXPECT_EQ(nullptr, Create(cameraId, VelaResultEInvalidArg)) << "camera " << cameraId;
        EXPECT_TRUE(logs.Has("Camera id " + std::to_string(cameraId) + " out of range: at most 8 cameras"));
        EXPECT_TRUE(logs.Has("CreateAECAlgoHandler failed with result:VelaResultEInvalidArg"));
        EXPECT_TRUE(logs.Has("CreateAECAlgorithm result VelaResultEInvalidArg"));
        EXPECT_FALSE(logs.Has("New AEC Algo Instance Created"));
    }

    // A camera info entry without its record is refused the same way.
    std::vector<AECAlgoCreateParam> entries = {CreateEntry(AECAlgoCreateParamTypeCameraInfo, nullptr, 8)};
    EXPECT_EQ(nullptr, CreateFrom(entries, VelaResultEInvalidArg));
    EXPECT_EQ(VelaResultEInvalidPointer, CreateAECAlgorithm(nullptr, nullptr));
}

TEST_F(AECAlgorithmInterfaceTest, LoggerIsThePointerOfTheFirstValidLoggerEntry)
{
    StatsCameraInfo                 info    = {StatsAlgoRoleDefault, 1};
    std::vector<AECAlgoCreateParam> entries = {
        CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info)),
        CreateEntry(AECAlgoCreateParamsLoggerFunctionPtr, reinterpret_cast<void*>(&OtherLogger), 4),
        CreateEntry(AECAlgoCreateParamsLoggerFunctionPtr, nullptr, 8),
        LoggerEntry(&CoreLogger),
        LoggerEntry(&OtherLogger),
    };
    ASSERT_NE(nullptr, CreateFrom(entries));
    EXPECT_EQ(&CoreLogger, gStatsLogger);
}

TEST_F(AECAlgorithmInterfaceTest, CreateWithoutALoggerLeavesTheLoggerAlone)
{
    gStatsLogger                            = &OtherLogger;
    StatsCameraInfo                 info    = {StatsAlgoRoleDefault, 6};
    std::vector<AECAlgoCreateParam> entries = {CreateEntry(AECAlgoCreateParamTypeCameraInfo, &info, sizeof(info))};
    ASSERT_NE(nullptr, CreateFrom(entries));
    EXPECT_EQ(&OtherLogger, gStatsLogger);
}

namespace
{

std::vector<AECAlgoSetParam> s_setEntries;
UINT32                       s_setMode = 0xFFFF;
KDKResult                    s_setResult = VelaResultSuccess;

KDKResult RecordSetParam(LYRAECAlgorithm*, const AECAlgoSetParamList* pList)
{
    s_setEntries.assign(pList->pAECSetParamList, pList->pAECSetParamList + pList->numberOfAECSetParams);
    s_setMode = *static_cast<const UINT32*>(pList->pAECSetParamList[0].pAECSetParam);
    return s_setResult;
}

} // namespace

TEST(SetOperationModeTypeInitTest, SetsTheInitModeThroughTheInstancesOwnTable)
{
    LYRAECAlgorithm algo = {};
    algo.AECSetParam     = &RecordSetParam;
    s_setResult          = VelaResultEInvalidState;
    EXPECT_EQ(VelaResultEInvalidState, SetOperationModeTypeInit(&algo));
    ASSERT_EQ(1U, s_setEntries.size());
    EXPECT_EQ(AECAlgoSetParamOperationMode, s_setEntries[0].setParamType);
    EXPECT_EQ(4U, s_setEntries[0].sizeOfAECSetParam);
    EXPECT_EQ(static_cast<UINT32>(AECAlgoOperationModeInit), s_setMode);
    EXPECT_EQ(VelaResultEInvalidPointer, SetOperationModeTypeInit(nullptr));
}

// ---- Destruction ----

TEST_F(AECAlgorithmInterfaceTest, DestroyWithTheCloseBitClearKeepsTheInstance)
{
    LYRAECAlgorithm* pAlgo = Create(1);
    ASSERT_NE(nullptr, pAlgo);
    Destroy(1, ~(1U << 1), pAlgo);
    EXPECT_TRUE(m_logs.Has("overrideCameraClose is FALSE"));

    EXPECT_EQ(VelaResultSuccess, SetOperationMode(pAlgo, AECAlgoOperationModeStreaming));
    WrapperLogCapture logs;
    EXPECT_EQ(pAlgo, Create(1));
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 1 already running"));
}

TEST_F(AECAlgorithmInterfaceTest, DestroyTakesTheTablesInstanceNotThePassedOne)
{
    LYRAECAlgorithm* pFirst  = Create(1);
    LYRAECAlgorithm* pSecond = Create(2);
    ASSERT_NE(nullptr, pFirst);
    ASSERT_NE(nullptr, pSecond);

    Destroy(1, 1U << 1, pSecond);
    CHAR expected[128];
    std::snprintf(expected, sizeof(expected), "overrideCameraClose in AECDestroy 2, pAec(%p)", static_cast<void*>(pSecond));
    EXPECT_TRUE(m_logs.Has(expected));

    // Camera 2 keeps running on the passed instance; camera 1 is gone and comes back as a new instance.
    EXPECT_EQ(VelaResultSuccess, SetOperationMode(pSecond, AECAlgoOperationModeStreaming));
    WrapperLogCapture logs;
    EXPECT_EQ(pSecond, Create(2));
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 2 already running"));
    ASSERT_NE(nullptr, Create(1));
    EXPECT_TRUE(logs.Has("New AEC Algo Instance Created"));
}

TEST_F(AECAlgorithmInterfaceTest, DestroyRefusesListsItCannotRead)
{
    AECDestroy(nullptr, nullptr);
    EXPECT_TRUE(m_logs.Has("pDestroyParams is NULL"));

    LYRAECAlgorithm* pAlgo = Create(3);
    ASSERT_NE(nullptr, pAlgo);
    UINT32              mask       = 0xFF;
    StatsCameraInfo     info       = {StatsAlgoRoleDefault, 3};
    AECAlgoDestroyParam entries[2] = {
        {AECDestroyParamTypeCameraCloseIndicator, &mask, sizeof(mask)},
        {AECDestroyParamTypeCameraInfo, &info, sizeof(info)},
    };
    AECAlgoDestroyParamList oneEntry = {entries, 1};
    AECDestroy(pAlgo, &oneEntry);
    EXPECT_TRUE(m_logs.Has("Destroy list needs a close mask and a camera info (1 entries)"));

    entries[1].pParam = nullptr;
    AECAlgoDestroyParamList noInfo = {entries, 2};
    AECDestroy(pAlgo, &noInfo);
    EXPECT_TRUE(m_logs.Has("Destroy list needs a close mask and a camera info (2 entries)"));

    // Camera 3 survived all of it.
    WrapperLogCapture logs;
    EXPECT_EQ(pAlgo, Create(3));
    EXPECT_TRUE(logs.Has("Instance of AEC Algo for CameraID 3 already running"));

    Destroy(8, 0xFFFFFFFF, pAlgo);
    EXPECT_TRUE(logs.Has("Camera id 8 out of range: at most 8 cameras"));
    Destroy(5, 1U << 5, nullptr);
    EXPECT_TRUE(logs.Has("pAECAlgoHandler[5] is NULL"));
}

TEST_F(AECAlgorithmInterfaceTest, LibraryNeverTouchesTheCameraIdOfTheThread)
{
    ASSERT_EQ(0xFFFFFFFFU, g_cameraId);
    LYRAECAlgorithm* pAlgo = Create(4);
    ASSERT_NE(nullptr, pAlgo);
    Destroy(4, 1U << 4, pAlgo);
    EXPECT_EQ(0xFFFFFFFFU, g_cameraId);
}

// ---- Dispatch ----

TEST_F(AECAlgorithmInterfaceTest, NullArgumentsAreInvalidPointers)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    AECAlgoInputList    inputs  = {};
    AECAlgoOutputList   outputs = {};
    AECAlgoGetParam     get     = {};
    AECAlgoSetParamList empty   = {};
    EXPECT_EQ(VelaResultEInvalidPointer, AECProcess(nullptr, &inputs, &outputs));
    EXPECT_EQ(VelaResultEInvalidPointer, AECProcess(pAlgo, nullptr, &outputs));
    EXPECT_EQ(VelaResultEInvalidPointer, AECProcess(pAlgo, &inputs, nullptr));
    EXPECT_EQ(VelaResultEInvalidPointer, AECGetParam(nullptr, &get));
    EXPECT_EQ(VelaResultEInvalidPointer, AECGetParam(pAlgo, nullptr));
    EXPECT_EQ(VelaResultEInvalidPointer, AECSetParam(nullptr, &empty));
    EXPECT_EQ(VelaResultEInvalidPointer, AECSetParam(pAlgo, nullptr));

    // An instance without its handler is refused the same way.
    Vela::AECAlgorithm_Internal bare = {};
    EXPECT_EQ(VelaResultEInvalidPointer, AECProcess(&bare, &inputs, &outputs));
    EXPECT_EQ(VelaResultEInvalidPointer, AECGetParam(&bare, &get));
}

TEST_F(AECAlgorithmInterfaceTest, EmptySetListIsAnInvalidPointerNotSuccess)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    AECAlgoOperationModeType mode  = AECAlgoOperationModeStreaming;
    AECAlgoSetParam          entry = SetEntry(AECAlgoSetParamOperationMode, &mode, sizeof(mode));
    AECAlgoSetParamList      empty = {&entry, 0};
    EXPECT_EQ(VelaResultEInvalidPointer, AECSetParam(pAlgo, &empty));
    AECAlgoSetParamList noEntries = {nullptr, 1};
    EXPECT_EQ(VelaResultEInvalidPointer, AECSetParam(pAlgo, &noEntries));
}

TEST_F(AECAlgorithmInterfaceTest, FirstFailingSetEntryStopsTheList)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    s_coreLines.clear();

    AECAlgoOperationModeType mode    = AECAlgoOperationModeStreaming;
    StatsTuningData          tuning  = {};
    std::vector<AECAlgoSetParam> entries = {
        SetEntry(AECAlgoSetParamOperationMode, &mode, sizeof(mode)),
        SetEntry(AECAlgoSetParamSensorInfo, nullptr, sizeof(StatsSensorInfo)),
        SetEntry(AECAlgoSetParamSorentaData, &tuning, sizeof(tuning)),
    };
    AECAlgoSetParamList list = {entries.data(), static_cast<UINT32>(entries.size())};
    EXPECT_EQ(VelaResultEFailed, AECSetParam(pAlgo, &list));
    // The first entry reached the core, the failing one did not, and the tuning after it was not tried.
    EXPECT_EQ(1U, CoreLinesStartingWith("AEC Set parameters"));
    EXPECT_FALSE(m_logs.Has("bDepthAECEnable:0"));
}

TEST_F(AECAlgorithmInterfaceTest, InputListOfOnlyAVendorTagFailsTheFrame)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    StatsVendorTagList tags      = {};
    AECAlgoInput       input     = {&tags, sizeof(tags), AECAlgoInputVendorTag};
    AECAlgoInputList   inputs    = {&input, 1};
    AECAlgoFrameInfo   info      = {};
    info.frameLuma               = -5.0F;
    AECAlgoOutput      output    = {&info, sizeof(info), 0, AECAlgoOutputFrameInfo};
    AECAlgoOutputList  outputs   = {&output, 1};
    EXPECT_EQ(VelaResultEFailed, AECProcess(pAlgo, &inputs, &outputs));
    EXPECT_EQ(-5.0F, info.frameLuma);
    EXPECT_EQ(0U, output.sizeOfWrittenAECOutput);
}

// ---- Depth vendor tags ----

TEST_F(AECAlgorithmInterfaceTest, TuningWithoutTheDepthModuleRequestsNoDepthTags)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    InstallHostInterface();
    static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable = TRUE;

    UINT32          selectors[7] = {};
    StatsTuningData tuning       = {nullptr, selectors, 0};
    AECAlgoSetParam entry        = SetEntry(AECAlgoSetParamSorentaData, &tuning, sizeof(tuning));
    AECAlgoSetParamList list     = {&entry, 1};
    ASSERT_EQ(VelaResultSuccess, AECSetParam(pAlgo, &list));
    EXPECT_EQ(FALSE, static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable);
    EXPECT_TRUE(m_logs.Has("bDepthAECEnable:0"));

    m_tagList.vendorTagCount = 77;
    QueryDependentTags(pAlgo, nullptr);
    EXPECT_TRUE(s_queriedTags.empty());
    EXPECT_EQ(77U, m_tagList.vendorTagCount);
    EXPECT_TRUE(m_logs.Has("isFixedFocus:0 bDepthAECEnable:0"));
}

TEST_F(AECAlgorithmInterfaceTest, DepthAECAsksForThe13FocusTagsInOrder)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    InstallHostInterface();
    static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable = TRUE;

    QueryDependentTags(pAlgo, nullptr);
    const std::vector<std::string> expected = {
        "horiCountTag",     "vertCountTag",    "widthRegionTag",         "heightRegionTag",
        "horiOffsetTag",    "vertOffsetTag",   "PDMapTag",               "ConfidenceMapTag",
        "DefocusRangeNearMapTag", "DefocusRangeFarMapTag", "DefocusMapTag", "DistanceMapTag",
        "AFSelectionMapTag",
    };
    EXPECT_EQ(expected, s_queriedTags);
    for (const std::string& section : s_queriedSections)
    {
        EXPECT_EQ("com.kvr.stats.af", section);
    }
    ASSERT_EQ(13U, m_tagList.vendorTagCount);
    for (UINT32 index = 0; index < 13; ++index)
    {
        EXPECT_EQ(0x1001U + index, m_tagList.vendorTag[index].vendorTagId);
        EXPECT_EQ(1U, m_tagList.vendorTag[index].appliedDelay);
    }
    EXPECT_TRUE(m_logs.Has("isFixedFocus:0 bDepthAECEnable:1"));
}

TEST_F(AECAlgorithmInterfaceTest, UnknownFocusTagStopsTheQueryWithNoTags)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    InstallHostInterface();
    static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable = TRUE;

    s_failAtQuery            = 4;
    m_tagList.vendorTagCount = 77;
    QueryDependentTags(pAlgo, nullptr);
    EXPECT_EQ(5U, s_queriedTags.size());
    EXPECT_EQ(0U, m_tagList.vendorTagCount);
    EXPECT_TRUE(m_logs.Has("Failed to retrieve Vendor Tag com.kvr.stats.af.horiOffsetTag"));
    EXPECT_EQ(Vela::Log::LevelError, m_logs.LevelOf("Failed to retrieve Vendor Tag com.kvr.stats.af.horiOffsetTag"));

    // With tracing of the group on, the failure is also a trace mark.
    const UINT32 savedTrace = Vela::g_traceInfo;
    Vela::g_traceInfo |= Vela::Log::GroupStatsAEC;
    s_queriedTags.clear();
    s_failAtQuery = 0;
    QueryDependentTags(pAlgo, nullptr);
    Vela::g_traceInfo = savedTrace;
    bool traced = false;
    for (const std::string& line : m_logs.All())
    {
        traced = traced || (std::string::npos != line.find("|[ERROR]Failed to retrieve Vendor Tag com.kvr.stats.af.horiCountTag"));
    }
    EXPECT_TRUE(traced);
}

TEST_F(AECAlgorithmInterfaceTest, FixedFocusSensorNeedsNoDepthTags)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    InstallHostInterface();
    static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable = TRUE;

    const UINT32 fixedFocus  = 1;
    m_tagList.vendorTagCount = 77;
    QueryDependentTags(pAlgo, &fixedFocus);
    EXPECT_TRUE(s_queriedTags.empty());
    EXPECT_EQ(77U, m_tagList.vendorTagCount);
    EXPECT_TRUE(m_logs.Has("isFixedFocus:1 bDepthAECEnable:1"));
}

// ---- Frames end to end ----

namespace
{

// Puts an instance into streaming with its start exposure queried, so that it accepts frames.
void StartStreaming(LYRAECAlgorithm* pAlgo)
{
    AECAlgoOperationModeType mode  = AECAlgoOperationModeStreaming;
    AECAlgoSetParam          entry = SetEntry(AECAlgoSetParamOperationMode, &mode, sizeof(mode));
    AECAlgoSetParamList      list  = {&entry, 1};
    ASSERT_EQ(VelaResultSuccess, AECSetParam(pAlgo, &list));

    AECAlgoFrameControl   control = {};
    AECAlgoGetParamOutput output  = {&control, sizeof(control), 0, AECAlgoGetParamOutputFrameControl};
    AECAlgoGetParam       query   = {};
    query.type                    = AECAlgoGetParamStartExposure;
    query.outputList              = {&output, 1};
    ASSERT_EQ(VelaResultSuccess, AECGetParam(pAlgo, &query));
    EXPECT_EQ(68U, output.sizeOfWrittenOutputData);
    EXPECT_EQ(1.0F, control.LEDInfluenceRatio);
}

} // namespace

TEST_F(AECAlgorithmInterfaceTest, FrameBeforeTheStartQueryFailsAndWritesNoOutput)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    ASSERT_EQ(VelaResultSuccess, SetOperationMode(pAlgo, AECAlgoOperationModeStreaming));

    AECAlgoInputStatsInfo info    = {1, FALSE, {0, 0}, FALSE};
    AECAlgoInput          input   = {&info, sizeof(info), AECAlgoInputStatisticInfo};
    AECAlgoInputList      inputs  = {&input, 1};
    AECAlgoFrameControl   control = {};
    control.luxIndex              = -1.0F;
    AECAlgoOutput         output  = {&control, sizeof(control), 0, AECAlgoOutputFrameControl};
    AECAlgoOutputList     outputs = {&output, 1};
    EXPECT_EQ(VelaResultEFailed, AECProcess(pAlgo, &inputs, &outputs));
    EXPECT_EQ(-1.0F, control.luxIndex);
    EXPECT_EQ(0U, output.sizeOfWrittenAECOutput);
}

TEST_F(AECAlgorithmInterfaceTest, TwoExposureEntriesFailTheFrameAfterTheEarlierOutputs)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    StartStreaming(pAlgo);

    AECAlgoInputStatsInfo info     = {1, FALSE, {0, 0}, FALSE};
    AECAlgoInput          input    = {&info, sizeof(info), AECAlgoInputStatisticInfo};
    AECAlgoInputList      inputs   = {&input, 1};
    AECAlgoFrameControl   control  = {};
    control.LEDInfluenceRatio      = -1.0F;
    AECAlgoExposureInfo   infos[3] = {};
    AECAlgoExposureSet    sets     = {infos, 2, sizeof(AECAlgoExposureInfo), 0, 0};
    UINT32                currents[2] = {7, 7};
    AECAlgoOutput         entries[3] = {
        {&control, sizeof(control), 0, AECAlgoOutputFrameControl},
        {&sets, sizeof(sets), 0, AECAlgoOutputExposureSets},
        {currents, sizeof(currents), 0, AECAlgoOutputLEDCurrents},
    };
    AECAlgoOutputList outputs = {entries, 3};
    EXPECT_EQ(VelaResultEFailed, AECProcess(pAlgo, &inputs, &outputs));
    EXPECT_EQ(68U, entries[0].sizeOfWrittenAECOutput);
    EXPECT_EQ(1.0F, control.LEDInfluenceRatio);
    EXPECT_EQ(0U, sets.exposureInfoOutputCount);
    EXPECT_EQ(0U, entries[2].sizeOfWrittenAECOutput);
    EXPECT_EQ(7U, currents[0]);
}

TEST_F(AECAlgorithmInterfaceTest, FrameWithOnlyIgnoredOutputsSucceedsAndWritesNothing)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    StartStreaming(pAlgo);

    AECAlgoInputStatsInfo info   = {1, FALSE, {0, 0}, FALSE};
    AECAlgoInput          input  = {&info, sizeof(info), AECAlgoInputStatisticInfo};
    AECAlgoInputList      inputs = {&input, 1};
    UINT8                 untouched[16];
    std::memset(untouched, 0x3C, sizeof(untouched));
    AECAlgoOutput entries[4] = {
        {untouched, sizeof(untouched), 0, AECAlgoOutputAdditionalInfo},
        {untouched, sizeof(untouched), 0, AECAlgoOutputVendorTag},
        {untouched, sizeof(untouched), 0, AECAlgoOutputStretchControl},
        {untouched, sizeof(untouched), 0, AECAlgoOutputSkipStatsParse},
    };
    AECAlgoOutputList outputs = {entries, 4};
    EXPECT_EQ(VelaResultSuccess, AECProcess(pAlgo, &inputs, &outputs));
    for (const AECAlgoOutput& entry : entries)
    {
        EXPECT_EQ(0U, entry.sizeOfWrittenAECOutput);
    }
    for (UINT8 byte : untouched)
    {
        EXPECT_EQ(0x3C, byte);
    }
}

TEST_F(AECAlgorithmInterfaceTest, DependentTagQueryReturnsTheCoresResult)
{
    LYRAECAlgorithm* pAlgo = Create(0);
    ASSERT_NE(nullptr, pAlgo);
    InstallHostInterface();
    static_cast<Vela::AECAlgorithm_Internal*>(pAlgo)->bDepthAECEnable = TRUE;

    // In the initial mode the core refuses every query, after the tags were filled all the same.
    EXPECT_EQ(VelaResultEFailed, QueryDependentTags(pAlgo, nullptr));
    EXPECT_EQ(13U, m_tagList.vendorTagCount);

    ASSERT_EQ(VelaResultSuccess, SetOperationMode(pAlgo, AECAlgoOperationModeStreaming));
    EXPECT_EQ(VelaResultSuccess, QueryDependentTags(pAlgo, nullptr));
    EXPECT_TRUE(m_logs.Has("Unhandled Get Output type: 12."));
}
