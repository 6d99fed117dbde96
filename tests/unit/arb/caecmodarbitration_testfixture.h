// Fixture of the arbitration module tests: a module on the default tuning whose publications the store reads back.
#ifndef TESTS_UNIT_ARB_CAECMODARBITRATION_TESTFIXTURE_H
#define TESTS_UNIT_ARB_CAECMODARBITRATION_TESTFIXTURE_H

#include <cmath>
#include <memory>

#include "unit/arb/arbtestsupport.h"

// Records like RecordingArbitrationCallback and also writes into the store the module reads, as the state store
// does: the module converts indices with the offsets it published itself.
class StoringArbitrationCallback : public RecordingArbitrationCallback
{
public:
    explicit StoringArbitrationCallback(ModArbitrationContext* pStore) : m_pStore(pStore) {}

    VOID setSensitivity(FLOAT sensitivity) override
    {
        RecordingArbitrationCallback::setSensitivity(sensitivity);
        *m_pStore = m_published;
    }
    VOID SetStreamingLimitation(ExposureLimitationType* pLimitation) override
    {
        RecordingArbitrationCallback::SetStreamingLimitation(pLimitation);
        *m_pStore = m_published;
    }
    VOID SetCurentFPS(FLOAT FPS) override
    {
        RecordingArbitrationCallback::SetCurentFPS(FPS);
        *m_pStore = m_published;
    }
    VOID SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets) override
    {
        RecordingArbitrationCallback::SetExpTableIdxOffsets(pStreamOffsets, pStillOffsets);
        *m_pStore = m_published;
    }
    VOID SetStreamingMinExpIndexForATB(FLOAT minExpIndex) override
    {
        RecordingArbitrationCallback::SetStreamingMinExpIndexForATB(minExpIndex);
        *m_pStore = m_published;
    }

private:
    ModArbitrationContext* m_pStore;
};

class ArbModuleTest : public ArbitrationTest
{
protected:
    // Index offset of a table whose scale is factor times that of table 0, knees alike.
    static FLOAT OffsetForScale(DOUBLE factor) { return static_cast<FLOAT>(std::log10(1.0 / factor) * 77.89852905273438); }

    VOID SetUp() override
    {
        ArbitrationTest::SetUp();
        ON_CALL(m_context, getEVInfo()).WillByDefault(::testing::Return(&m_EV));
        ON_CALL(m_context, getExposureType()).WillByDefault(::testing::Invoke([this]() { return m_exposureType; }));
        m_pModule = std::make_unique<CAECModArbitration>(&m_context, &m_callback);
    }

    // Tuning, then the sensor mode, as a session starts.
    VOID TuneModule()
    {
        ASSERT_EQ(AecSuccess, m_pModule->OnTuningHeaderChange());
        ASSERT_EQ(AecSuccess, m_pModule->OnSensorInfoChange());
    }

    aecStartUp::StartUpArbitrationType* StartUpTuning() const
    {
        return const_cast<aecStartUp::StartUpArbitrationType*>(m_pTuning->arbTuningData.pStartUp);
    }
    aecFlash::FlashArbitrationType* FlashTuning() const
    {
        return const_cast<aecFlash::FlashArbitrationType*>(m_pTuning->arbTuningData.pFlash);
    }
    aecSnapshotCtrl::SnapshotCtrlArbitrationType* SnapshotTuning() const
    {
        return const_cast<aecSnapshotCtrl::SnapshotCtrlArbitrationType*>(m_pTuning->arbTuningData.pSnapshotCtrl);
    }

    CArbitrator& StreamArb() { return CAECModArbitrationTestPeer::Streaming(*m_pModule); }
    CArbitrator& StillArb() { return CAECModArbitrationTestPeer::Still(*m_pModule); }

    // A preview frame of the current mode at one index for all three exposures.
    ArbitrationStreamInput StreamInput(FLOAT index) const
    {
        ArbitrationStreamInput input = {};
        for (FLOAT& rIndex : input.expIndices)
        {
            rIndex = index;
        }
        input.refOpMode = m_opMode;
        return input;
    }

    // A still query at one index, referring to the streaming table.
    static ArbitrationStillInput StillInput(FLOAT index, AECAlgoSnapshotType kind = AECAlgoSnapshotNormal)
    {
        ArbitrationStillInput input = {};
        for (FLOAT& rIndex : input.expIndices)
        {
            rIndex = index;
        }
        input.snapshotQuery.queryType = kind;
        input.snapshotQuery.refOpMode = AECAlgoOperationModeStreaming;
        return input;
    }

    static VOID ExpectInitialOutput(const ArbitrationOutput& rOutput)
    {
        for (const AECAlgoExposureData& rSet : rOutput.expSets)
        {
            EXPECT_EQ(1000000U, rSet.exposureTime);
            EXPECT_FLOAT_EQ(1.0F, rSet.linearGain);
            EXPECT_FLOAT_EQ(1e6F, rSet.sensitivity);
            EXPECT_FLOAT_EQ(0.0F, rSet.deltaEVFromTarget);
        }
    }

    EVContext                           m_EV           = {};
    AECAlgoMultiCamExposureType         m_exposureType = AECAlgoExposureIndependent;
    StoringArbitrationCallback          m_callback{&m_published};
    std::unique_ptr<CAECModArbitration> m_pModule;
};

#endif // TESTS_UNIT_ARB_CAECMODARBITRATION_TESTFIXTURE_H
