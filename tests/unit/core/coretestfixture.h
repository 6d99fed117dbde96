// Fixture of the core tests: a core on mock modules with helpers for set parameters, queries and frames.
#ifndef TESTS_UNIT_CORE_CORETESTFIXTURE_H
#define TESTS_UNIT_CORE_CORETESTFIXTURE_H

#include <gtest/gtest.h>

#include <memory>

#include "unit/core/coretestsupport.h"

class CoreOnMocksTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_pCore = CAECCoreTestPeer::Create(m_factory);
        ASSERT_NE(nullptr, m_pCore);
        ASSERT_NE(nullptr, m_factory.pSkipCtrl);
    }

    void TearDown() override { m_pCore.reset(); }

    CAECCore&            Core() { return *m_pCore; }
    CAECCoreDataManager& Store() { return CAECCoreTestPeer::DataManager(*m_pCore); }

    KDKResult SetParameter(const AECCoreSetParam& rParam) { return m_pCore->setInput(&rParam); }

    KDKResult SetMode(AECAlgoOperationModeType mode)
    {
        AECCoreSetParam param = {};
        param.paramType       = AECAlgoSetParamOperationMode;
        param.data.opMode     = mode;
        return SetParameter(param);
    }

    KDKResult SetPipelineDelay(UINT8 delay)
    {
        AECCoreSetParam param = {};
        param.paramType       = AECAlgoSetParamPipelineDelay;
        param.data.sysLatency = delay;
        return SetParameter(param);
    }

    KDKResult SetCameraInfo(UINT32 cameraId, StatsAlgoRole role)
    {
        AECCoreSetParam param          = {};
        param.paramType                = AECAlgoSetParamCameraInfo;
        param.data.cameraInfo.cameraId = cameraId;
        param.data.cameraInfo.algoRole = role;
        return SetParameter(param);
    }

    KDKResult QueryStart()
    {
        AECMetadataQuery query = {};
        query.type             = AECAlgoGetParamStartExposure;
        const KDKResult result = m_pCore->queryMetaData(&query);
        m_startSetting         = query.output.frameSetting;
        return result;
    }

    // Streaming with its start exposure queried: the state in which frames are accepted.
    void StartStreaming()
    {
        ASSERT_EQ(0, SetMode(AECAlgoOperationModeStreaming));
        ASSERT_EQ(0, QueryStart());
    }

    KDKResult Process(UINT64 frameID)
    {
        m_input.frameID = frameID;
        return m_pCore->process(&m_input, &m_output);
    }

    // Declared first: the capture outlives the core, whose destruction may still log.
    CoreLogCapture            m_logs;
    MockModuleFactory         m_factory;
    std::unique_ptr<CAECCore> m_pCore;
    AECCoreInput              m_input        = {};
    AECCoreOutput             m_output       = {};
    AECFrameControl           m_startSetting = {};
};

#endif // TESTS_UNIT_CORE_CORETESTFIXTURE_H
