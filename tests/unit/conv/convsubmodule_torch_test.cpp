// The torch wrapper: switching to its fast converger on torch changes and back once settled.
#include <gtest/gtest.h>

#include "aec/core/modules/mod_conv/convslow.h"
#include "aec/core/modules/mod_conv/convtorch.h"
#include "unit/conv/convsubmoduletestsupport.h"

namespace
{
class ConvTorchTest : public ConvSubmoduleTest
{
protected:
    void SetUp() override
    {
        ConvSubmoduleTest::SetUp();
        m_pNormal = Create(ConvIDSlow);
        m_pTorch  = Create(ConvIDTorch);
        m_pTorch->SetSecondaryAlgo(m_pNormal.get());
        ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventInitialize));
    }

    ConvTorch* Torch() const { return static_cast<ConvTorch*>(m_pTorch.get()); }
    ConvSlow*  Normal() const { return static_cast<ConvSlow*>(m_pNormal.get()); }

    ConvergenceSubmoduleOutput Frame(BOOL torch, FLOAT target, FLOAT current, FLOAT matched)
    {
        ConvergenceSubmoduleInput input = Input(target, current, matched);
        m_convIn.bIsTorchAEC            = torch;
        ConvergenceSubmoduleOutput out  = {};
        EXPECT_EQ(AecSuccess, m_pTorch->Converge(&input, &out));
        return out;
    }

    SubmodulePtr m_pNormal;
    SubmodulePtr m_pTorch;
};
} // namespace

TEST_F(ConvTorchTest, NormalConvergerRunsWhileTheTorchStays)
{
    EXPECT_FALSE(Torch()->IsUsingFastConverger());
    // The video converger's unit step, not the fast converger's half of the distance.
    EXPECT_FLOAT_EQ(101.0F, Frame(FALSE, 150.0F, 100.0F, 100.0F).expIndices[AECAlgoExposureSafe]);
    EXPECT_TRUE(ConvLogContains("using torch normal convergence"));
}

TEST_F(ConvTorchTest, TorchSwitchHandsOverToTheFastConvergerAndBack)
{
    Frame(FALSE, 100.0F, 100.0F, 100.0F);
    ASSERT_GT(Normal()->GetContext().settledTime, 0.0F);
    const FLOAT afterSwitch = Frame(TRUE, 150.0F, 100.0F, 100.0F).expIndices[AECAlgoExposureSafe];
    EXPECT_TRUE(Torch()->IsUsingFastConverger());
    EXPECT_FLOAT_EQ(140.0F, afterSwitch); // 0.8 of the distance
    EXPECT_TRUE(ConvLogContains("using torch fast convergence"));
    // The normal converger kept running on the side: the jump out of its zone restarted its settled time.
    EXPECT_FLOAT_EQ(0.0F, Normal()->GetContext().settledTime);

    // Settled from now on, but the fast converger keeps the frames for its minimum count (5).
    for (UINT32 n = 2; n <= 5; n++)
    {
        Frame(TRUE, 150.0F, 150.0F, 150.0F);
        EXPECT_EQ(n < 5, Torch()->IsUsingFastConverger()) << n;
    }
}

TEST_F(ConvTorchTest, UnsettledFastConvergerKeepsChargePastItsMinimum)
{
    Frame(FALSE, 100.0F, 100.0F, 100.0F);
    Frame(TRUE, 150.0F, 100.0F, 100.0F);
    for (UINT32 n = 0; n < 8; n++)
    {
        Frame(TRUE, 150.0F, 140.0F, 100.0F);
    }
    EXPECT_TRUE(Torch()->IsUsingFastConverger());
}

TEST_F(ConvTorchTest, DisabledDirectionKeepsTheNormalConverger)
{
    Conv().torchConv.enableTorchOnOff = FALSE;
    Frame(TRUE, 100.0F, 100.0F, 100.0F);
    ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventInitialize));
    Frame(FALSE, 150.0F, 100.0F, 100.0F);
    EXPECT_FALSE(Torch()->IsUsingFastConverger());
    Frame(TRUE, 150.0F, 100.0F, 100.0F);
    EXPECT_TRUE(Torch()->IsUsingFastConverger());
    // Initialisation returns to the normal converger.
    ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventInitialize));
    EXPECT_FALSE(Torch()->IsUsingFastConverger());
}

TEST_F(ConvTorchTest, SpeedsAreCopiedToTheNormalConverger)
{
    m_pTorch->SetSpeedAdjust(0.5F);
    ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventSpeedAdjChanged));
    EXPECT_FLOAT_EQ(0.5F, m_pNormal->GetSpeedAdjust());
    m_pTorch->SetBaseSpeedOverride(1.0F);
    ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventSpeedBaseChanged));
    EXPECT_FLOAT_EQ(1.0F, m_pNormal->GetBaseSpeedOverride());
    EXPECT_FLOAT_EQ(1.25F, Normal()->GetContext().stepSize.stepRegular); // 0.5 * 1.0 on [0.5, 2.0]

    // The fast converger got them too: 0.5 * 1.0 of the distance.
    Frame(FALSE, 100.0F, 100.0F, 100.0F);
    EXPECT_FLOAT_EQ(125.0F, Frame(TRUE, 150.0F, 100.0F, 100.0F).expIndices[AECAlgoExposureSafe]);
}

TEST_F(ConvTorchTest, SkipTypeFollowsTheCurrentConverger)
{
    Conv().slowConv.frameSkipMethod       = aecglobalelements::SkipSystemLatency;
    Conv().torchConv.conv.frameSkipMethod = aecglobalelements::SkipSystemLatency;
    ASSERT_EQ(AecSuccess, m_pTorch->SetConvEvent(ConvEventInitialize));
    EXPECT_EQ(aecglobalelements::SkipOne, m_pTorch->GetSkipType());
    Frame(FALSE, 100.0F, 100.0F, 100.0F);
    Frame(TRUE, 100.0F, 100.0F, 100.0F);
    EXPECT_EQ(aecglobalelements::SkipSystemLatency, m_pTorch->GetSkipType());
}

TEST_F(ConvTorchTest, WithoutANormalConvergerTheFastOneStaysInCharge)
{
    SubmodulePtr pTorch = Create(ConvIDTorch);
    pTorch->SetSecondaryAlgo(nullptr);
    EXPECT_TRUE(ConvLogContains("torch conv: no usable normal converger"));
    EXPECT_TRUE(static_cast<ConvTorch*>(pTorch.get())->IsUsingFastConverger());
    ASSERT_EQ(AecSuccess, pTorch->SetConvEvent(ConvEventInitialize));
    ConvergenceSubmoduleInput  input = Input(150.0F, 100.0F, 100.0F);
    ConvergenceSubmoduleOutput out   = {};
    ASSERT_EQ(AecSuccess, pTorch->Converge(&input, &out));
    EXPECT_FLOAT_EQ(140.0F, out.expIndices[AECAlgoExposureSafe]);
}
