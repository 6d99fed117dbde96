// Fixture and sensor loop of the convergence submodule tests.
#include "unit/conv/convsubmoduletestsupport.h"

#include <cmath>

#include "platform/statslogger.h"

std::vector<std::string>& ConvLogs()
{
    return CoreLogCapture::Lines();
}

bool ConvLogContains(const std::string& text)
{
    return (CoreLogCapture::CountContaining(text) > 0) ? true : false;
}

void ConvSubmoduleTest::SetUp()
{
    m_pLogs = std::make_unique<CoreLogCapture>();
    // No tuning store: the adapter serves the embedded default tuning, whose records the tests may change.
    StatsTuningData tuning = {};
    m_adapter.SetSorenta(&tuning, &m_pTuning);
    ASSERT_NE(nullptr, m_pTuning);
    ASSERT_NE(nullptr, m_pTuning->convTuningData.pCore);
}

void ConvSubmoduleTest::TearDown()
{
    m_pLogs.reset();
}

SubmodulePtr ConvSubmoduleTest::Create(ConvAlgoIdentity identity) const
{
    return SubmodulePtr(ConvergenceSubmodule::CreateInstance(identity, &Tuning()));
}

ConvergenceSubmoduleInput ConvSubmoduleTest::Input(FLOAT target, FLOAT current, FLOAT matched)
{
    for (FLOAT& t : m_targets)
    {
        t = target;
    }
    m_convIn                 = {};
    m_convIn.pTargetIndices  = m_targets;
    m_convIn.settleType      = AECAlgoSettleCompute;
    ConvergenceSubmoduleInput input = {};
    input.pConvIn            = &m_convIn;
    input.pTuning            = &Tuning();
    input.expTableRange      = {0.0F, 500.0F};
    input.currentFPS         = 30.0F;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        input.expIndices[i]      = current;
        input.expIndexMatched[i] = matched;
    }
    return input;
}

SensorLoop::SensorLoop(const ConvergenceTuningDataType* pTuning, UINT32 pipelineDelay, FLOAT startTarget,
                       FLOAT start)
    : m_pTuning(pTuning)
    , m_pipelineDelay(pipelineDelay)
    , m_lumaScale(kLumaTarget / std::pow(1.03F, startTarget))
    , m_commanded(pipelineDelay + 1U, start)
{
    m_convIn.pTargetIndices = m_targets;
    m_convIn.settleType     = AECAlgoSettleCompute;
}

FLOAT SensorLoop::CommandedAgo(UINT32 n) const
{
    return m_commanded[m_commanded.size() - 1U - n];
}

ConvergenceSubmoduleOutput SensorLoop::Step(ConvergenceSubmodule* pSubmodule)
{
    // The statistics in hand were taken with the exposure commanded pipelineDelay frames ago.
    const FLOAT matched = CommandedAgo(m_pipelineDelay - 1U);
    const FLOAT luma    = m_lumaScale * std::pow(1.03F, matched) * m_scene;
    m_lastTarget        = matched + std::log10(kLumaTarget / luma) * kIndexPerDecade;
    for (FLOAT& t : m_targets)
    {
        t = m_lastTarget;
    }

    ConvergenceSubmoduleInput input = {};
    input.pConvIn                   = &m_convIn;
    input.pTuning                   = m_pTuning;
    input.expTableRange             = {0.0F, 500.0F};
    input.currentFPS                = 30.0F;
    for (UINT32 i = 0; i < AECAlgoExposureCount; i++)
    {
        input.expIndices[i]          = CommandedAgo(0);
        input.expIndexMatched[i]     = matched;
        input.expIndexPreviousAdj[i] = CommandedAgo(0) - CommandedAgo(1);
    }
    ConvergenceSubmoduleOutput output = {};
    EXPECT_EQ(AecSuccess, pSubmodule->Converge(&input, &output));
    m_commanded.push_back(output.expIndices[AECAlgoExposureSafe]);
    return output;
}

StepTrace RunStep(SensorLoop& loop, ConvergenceSubmodule* pSubmodule, FLOAT brightness, UINT32 frames,
                  FLOAT tolerance)
{
    loop.SetSceneBrightness(brightness);
    std::vector<FLOAT> indices;
    std::vector<BOOL>  settled;
    StepTrace          trace = {};
    for (UINT32 n = 0; n < frames; n++)
    {
        const ConvergenceSubmoduleOutput output = loop.Step(pSubmodule);
        indices.push_back(output.expIndices[AECAlgoExposureSafe]);
        settled.push_back(output.isSettled[AECAlgoExposureSafe]);
    }
    trace.finalTarget = loop.LastTarget();
    trace.finalIndex  = indices.back();

    INT32 lastSign = 0;
    for (FLOAT index : indices)
    {
        const FLOAT d    = index - trace.finalTarget;
        const INT32 sign = (d > 1e-3F) ? 1 : ((d < -1e-3F) ? -1 : 0);
        if ((0 != sign) && (0 != lastSign) && (sign != lastSign))
        {
            trace.crossings += 1;
        }
        if (0 != sign)
        {
            lastSign = sign;
        }
    }
    trace.targetFrames = -1;
    for (INT32 n = static_cast<INT32>(indices.size()) - 1;
         (n >= 0) && (std::fabs(indices[n] - trace.finalTarget) <= tolerance); n--)
    {
        trace.targetFrames = n;
    }
    trace.settleFrames = -1;
    for (INT32 n = static_cast<INT32>(settled.size()) - 1; (n >= 0) && (0 != settled[n]); n--)
    {
        trace.settleFrames = n;
    }
    return trace;
}
