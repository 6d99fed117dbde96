// Tests of the module stand-ins, their factories, the simulation switch and the exported fallback LED table.
#include <gtest/gtest.h>

#include "aec/core/base/aecmodulecreator.h"
#include "aec/core/base/aecobjectalloc.h"
#include "aec/core/base/caeccoredatamanager.h"
#include "aec/core/base/caecsimulation.h"
#include "aecore/aecore.h"

namespace
{

class ModulesTest : public ::testing::Test
{
protected:
    CAECCoreDataManager m_store;
};

TEST(FakeFlashCalibTest, HoldsTheSixFallbackLEDSettings)
{
    const INT32 expected[AECORE_FAKE_FLASH_CALIB_COUNT][2] = {{4, 0}, {4, 5}, {4, 10}, {2, 0}, {2, 5}, {2, 10}};
    for (UINT32 i = 0; i < AECORE_FAKE_FLASH_CALIB_COUNT; i++)
    {
        EXPECT_EQ(expected[i][0], s_fakeFlashCalib[i].LED1Setting) << i;
        EXPECT_EQ(expected[i][1], s_fakeFlashCalib[i].LED2Setting) << i;
    }
}

TEST_F(ModulesTest, CreatorMakesEveryModuleAndTheyDestroyCleanly)
{
    IAECIR*          pIR          = AECModuleCreator::CreateModuleIR(&m_store);
    IAECMetering*    pMetering    = AECModuleCreator::CreateModuleMetering(&m_store, &m_store);
    IAECConvergence* pConvergence = AECModuleCreator::CreateModuleConvergence(&m_store, &m_store);
    IAECArbitration* pArbitration = AECModuleCreator::CreateModuleArbitration(&m_store, &m_store);
    IAECIrisCtrl*    pIrisCtrl    = AECModuleCreator::CreateModuleIrisControl(&m_store, &m_store);
    IAECExtension*   pExtension   = AECModuleCreator::CreateModuleExtension(&m_store, &m_store);
    IAECDiagnostic*  pDiagnostic  = AECModuleCreator::CreateModuleDiagnostic(&m_store);
    IAECSkipCtrl*    pSkipCtrl    = AECModuleCreator::CreateModuleSkipCtrl(&m_store);
    EXPECT_NE(nullptr, pIR);
    EXPECT_NE(nullptr, pMetering);
    EXPECT_NE(nullptr, pConvergence);
    EXPECT_NE(nullptr, pArbitration);
    EXPECT_NE(nullptr, pIrisCtrl);
    EXPECT_NE(nullptr, pExtension);
    EXPECT_NE(nullptr, pDiagnostic);
    EXPECT_NE(nullptr, pSkipCtrl);
    // A store that has seen no tuning yet has none to give: metering refuses the change instead of reading it.
    EXPECT_EQ(AecError, pMetering->OnTuningHeaderChange());
    AECDestroyObject(pIR);
    AECDestroyObject(pMetering);
    AECDestroyObject(pConvergence);
    AECDestroyObject(pArbitration);
    AECDestroyObject(pIrisCtrl);
    AECDestroyObject(pExtension);
    AECDestroyObject(pDiagnostic);
    AECDestroyObject(pSkipCtrl);
    EXPECT_EQ(nullptr, pMetering);
}

TEST_F(ModulesTest, ExtensionOffEstimateResetsTheLEDFields)
{
    IAECExtension*  pExtension = AECModuleCreator::CreateModuleExtension(&m_store, &m_store);
    AECFrameControl control    = {};
    control.flashState         = AECAlgoFlashStatePre;
    control.LEDCurrents[0]     = 300;
    control.LEDCurrents[1]     = 400;
    control.LEDRGRatio         = 2.0F;
    control.LEDBGRatio         = 3.0F;
    control.LEDInfluenceRatio  = 5.0F;
    EXPECT_FLOAT_EQ(0.0F, pExtension->GetFlashCurrentEstimate(Off, &control, FALSE));
    EXPECT_EQ(AECAlgoFlashStateOff, control.flashState);
    EXPECT_EQ(0u, control.LEDCurrents[0]);
    EXPECT_EQ(0u, control.LEDCurrents[1]);
    EXPECT_FLOAT_EQ(1.0F, control.LEDFirstEntryRatio);
    EXPECT_FLOAT_EQ(0.0F, control.LEDLastEntryRatio);
    EXPECT_FLOAT_EQ(-1.0F, control.LEDRGRatio);
    EXPECT_FLOAT_EQ(-1.0F, control.LEDBGRatio);
    EXPECT_FLOAT_EQ(5.0F, control.LEDInfluenceRatio) << "the influence ratio is the core's";

    AECAlgoFlashMeasurementConfig config = {};
    EXPECT_EQ(AecSuccess, pExtension->GetFlashMeasurementConfig(&config));
    EXPECT_EQ(-1, config.measurementsCount);
    AECYHistStretchData stretch = {};
    EXPECT_EQ(AecSuccess, pExtension->GetHistStretchData(&stretch));
    EXPECT_FALSE(stretch.enable);
    EXPECT_FLOAT_EQ(1.0F, stretch.scaling);
    AECDestroyObject(pExtension);
}

TEST_F(ModulesTest, StandInsAreNeutral)
{
    IAECIrisCtrl*   pIrisCtrl   = AECModuleCreator::CreateModuleIrisControl(&m_store, &m_store);
    IAECDiagnostic* pDiagnostic = AECModuleCreator::CreateModuleDiagnostic(&m_store);
    IAECSkipCtrl*   pSkipCtrl   = AECModuleCreator::CreateModuleSkipCtrl(&m_store);
    IAECConvergence* pConvergence = AECModuleCreator::CreateModuleConvergence(&m_store, &m_store);
    EXPECT_TRUE(pIrisCtrl->QueryPIrisSettleInfo());
    EXPECT_EQ(Inactive, pDiagnostic->GetDiagStatus().status);
    AECCoreInput input = {};
    EXPECT_FALSE(pSkipCtrl->CheckSkipFrame(&input));

    const FLOAT       targets[3] = {10.0F, 20.0F, 30.0F};
    ConvergenceInput  convIn     = {};
    ConvergenceOutput convOut;
    convIn.pTargetIndices = targets;
    // Convergence is no stand-in any more; without tuning or history it still answers with neutral gains.
    EXPECT_EQ(AecSuccess, pConvergence->ConvergeFrameExposure(&convIn, &convOut));
    EXPECT_FLOAT_EQ(1.0F, convOut.predictiveGain);
    EXPECT_FLOAT_EQ(1.0F, convOut.predictiveADRC);

    AECDestroyObject(pIrisCtrl);
    AECDestroyObject(pDiagnostic);
    AECDestroyObject(pSkipCtrl);
    AECDestroyObject(pConvergence);
}

TEST(CAECSimulationTest, IsDisabledAndReplacesNothing)
{
    CAECSimulation simulation;
    EXPECT_FALSE(CAECSimulation::IsEnabled());
    AECCoreInput input       = {};
    FLOAT        expIndex    = 5.0F;
    FLOAT        digitalGain = 1.0F;
    EXPECT_FALSE(simulation.ConfigSimulationExp(&input, expIndex, digitalGain));
    EXPECT_FLOAT_EQ(5.0F, expIndex);
    EXPECT_FLOAT_EQ(1.0F, digitalGain);
}

} // namespace
