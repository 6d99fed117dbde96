// Shared fixture of the convergence submodule tests: default tuning, captured core logs, frame inputs and a
// small sensor model that closes the loop between commanded exposure, statistics and the metering target.
#ifndef TESTS_UNIT_CONV_CONVSUBMODULETESTSUPPORT_H
#define TESTS_UNIT_CONV_CONVSUBMODULETESTSUPPORT_H

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "aec/core/base/ctuningdataadapter.h"
#include "aec/core/base/aecobjectalloc.h"
#include "support/corelogcapture.h"
#include "aec/core/modules/mod_conv/convergencesubmodule.h"

// Every core log line while a test runs.
std::vector<std::string>& ConvLogs();
bool                      ConvLogContains(const std::string& text);

// Submodules of the factory live in the platform allocator's memory.
struct SubmoduleDeleter
{
    void operator()(ConvergenceSubmodule* pSubmodule) const { AECDestroyObject(pSubmodule); }
};
typedef std::unique_ptr<ConvergenceSubmodule, SubmoduleDeleter> SubmodulePtr;

class ConvSubmoduleTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // Mutable default tuning of this test's camera.
    aecConvergence::AECCoreConvergenceType& Conv() const { return *m_adapter.GetTuningModules().modConv; }
    aecStartUp::AECStartUpType&             StartUp() const { return *m_adapter.GetTuningModules().modStartUp; }
    aecFlash::AECFlashType&                 Flash() const { return *m_adapter.GetTuningModules().modFlash; }
    ConvergenceTuningDataType&              Tuning() const { return m_pTuning->convTuningData; }

    SubmodulePtr Create(ConvAlgoIdentity identity) const;

    // A frame with all three targets at target, all exposures last commanded at current and shown in the
    // statistics at matched, no previous adjustment, table range [0, 500], 30 fps.
    ConvergenceSubmoduleInput Input(FLOAT target, FLOAT current, FLOAT matched);

    FLOAT                 m_targets[AECAlgoExposureCount] = {};
    ConvergenceInput      m_convIn                        = {};
    CTuningDataAdapter    m_adapter;
    CoreModuleTuningData* m_pTuning = nullptr;
    std::unique_ptr<CoreLogCapture> m_pLogs; // installed from SetUp to TearDown
};

// Closed loop of one submodule against a sensor: the index a frame commands shows in the statistics
// pipelineDelay frames later, luma is proportional to 1.03^index times the scene brightness, and the metering
// derives the target index from that luma.
class SensorLoop
{
public:
    static constexpr FLOAT kIndexPerDecade = 77.89852905273438F;
    static constexpr FLOAT kLumaTarget     = 50.0F;

    // The scene at brightness 1.0 needs startTarget; the exposure starts settled on start.
    SensorLoop(const ConvergenceTuningDataType* pTuning, UINT32 pipelineDelay, FLOAT startTarget, FLOAT start);

    // Runs one frame; returns the submodule's output.
    ConvergenceSubmoduleOutput Step(ConvergenceSubmodule* pSubmodule);

    void  SetSceneBrightness(FLOAT brightness) { m_scene = brightness; }
    void  SetTorch(BOOL torch) { m_convIn.bIsTorchAEC = torch; }
    FLOAT LastTarget() const { return m_lastTarget; }
    FLOAT LastCommanded() const { return m_commanded.back(); }

private:
    // Index commanded n frames ago (0 is the last frame's command).
    FLOAT CommandedAgo(UINT32 n) const;

    const ConvergenceTuningDataType* m_pTuning;
    UINT32                           m_pipelineDelay;
    FLOAT                            m_lumaScale; // luma of index 0 at scene brightness 1.0
    FLOAT                            m_scene = 1.0F;
    FLOAT                            m_lastTarget = 0.0F;
    std::vector<FLOAT>               m_commanded;
    FLOAT                            m_targets[AECAlgoExposureCount] = {};
    ConvergenceInput                 m_convIn                        = {};
};

// What a trace after a scene step showed.
struct StepTrace
{
    FLOAT  finalTarget;
    FLOAT  finalIndex;
    UINT32 crossings;     // sign changes of commanded minus target
    INT32  targetFrames;  // first frame (0 = the first showing the new scene) from which the commanded index
                          // stays within the tolerance of the final target; -1 if it does not end there
    INT32  settleFrames;  // first frame from which the safe flag stays up; -1 if it is down at the end
};

// Runs frames frames after the scene changed to brightness (relative to the start scene).
StepTrace RunStep(SensorLoop& loop, ConvergenceSubmodule* pSubmodule, FLOAT brightness, UINT32 frames,
                  FLOAT tolerance);

#endif // TESTS_UNIT_CONV_CONVSUBMODULETESTSUPPORT_H
