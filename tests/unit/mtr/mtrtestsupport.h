// Shared fixture of the metering tests: default tuning, a mocked state store, a statistics processor fed with
// synthetic images, and calculator inputs filled as the metering module fills them.
#ifndef TESTS_UNIT_MTR_MTRTESTSUPPORT_H
#define TESTS_UNIT_MTR_MTRTESTSUPPORT_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"
#include "support/mockaeccontext.h"
#include "support/corelogcapture.h"
#include "support/syntheticstats.h"

// Every core log line while a test runs.
std::vector<std::string>& MtrLogs();
BOOL MtrLogContains(const std::string& text);

class MeteringTest : public ::testing::Test
{
protected:
    VOID SetUp() override;
    VOID TearDown() override;

    // A synthetic image of h x v regions (32 x 32 pixels each, 10 bits, RGGB, no saturation info).
    std::unique_ptr<CSyntheticStats> Image(UINT32 h = 16, UINT32 v = 12, UINT16 bitDepth = 10,
                                           BOOL sat = FALSE);
    // Builds the image's statistics into m_stats and parses them.
    AecResult Parse(CSyntheticStats& image, FLOAT drcGain = 1.0f);

    // The calculator inputs as the metering module fills them from the mocked state store.
    AECLumaCalcInput   LumaInput();
    AECTargetCalcInput TargetInput(const AECLumaCalcResult* pLuma);

    // Mutable tuning: change a value, then call ApplyTuning() so the statistics processor sees it.
    const TuningModulesPointers& Modules() const { return m_adapter.GetTuningModules(); }
    VOID ApplyTuning();

    // Frame history as the state store hands it out: entry 0 is the current frame, entry k the frame k ago.
    static constexpr UINT8 PipelineDelay = 2;
    AECFrameHistory        m_history[4];

    ::testing::NiceMock<MockAECContext> m_context;
    CTuningDataAdapter                  m_adapter;
    CoreModuleTuningData*               m_pTuning = nullptr;
    AECAlgoWhiteBalanceState            m_wb;
    EVContext                           m_ev;
    TouchROIProcInfo                    m_touch;
    std::unique_ptr<FaceROIProcInfo>    m_pFace;
    ModArbitrationContext               m_arbLimit;
    StatsBayerGridBayerExposureConfig   m_bgbe;
    AECCustomMeteringTable              m_customTable;
    AECAlgoOperationModeType            m_opMode   = AECAlgoOperationModeStreaming;
    AECAlgoMeteringModeType             m_mtrMode  = AECAlgoMeteringModeFrameAverage;
    FLOAT                               m_compensationRatio = 1.0f;
    std::unique_ptr<CStatsProcessor>    m_pProc;
    std::unique_ptr<AECStatistics>      m_pStats;
    std::unique_ptr<CoreLogCapture>     m_pLogs; // installed from SetUp to TearDown
};

#endif // TESTS_UNIT_MTR_MTRTESTSUPPORT_H
