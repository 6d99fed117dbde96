// Tests of the core's common records: defaults, zero-fill safety and the default module events.
#include <type_traits>

#include <gtest/gtest.h>

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aeccoredata.h"
#include "aec/core/include/iaeccallbacks.h"
#include "aec/core/include/iaeccomponent.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/include/iaeccore.h"

namespace
{

// Records that are zero-filled through VelaCalloc or memset must be trivial.
static_assert(std::is_trivial<AECCoreInput>::value, "AECCoreInput must be zero-fillable");
static_assert(std::is_trivial<AECCoreOutput>::value, "AECCoreOutput must be zero-fillable");
static_assert(std::is_trivial<AECCoreSetParam>::value, "AECCoreSetParam must be zero-fillable");
static_assert(std::is_trivial<AECMetadataQuery>::value, "AECMetadataQuery must be zero-fillable");
static_assert(std::is_trivial<AECMultiCamInfo>::value, "AECMultiCamInfo must be zero-fillable");
static_assert(std::is_trivial<ModArbitrationContext>::value, "ModArbitrationContext must be zero-fillable");
static_assert(std::is_trivial<AECLockContext>::value, "AECLockContext must be zero-fillable");
static_assert(std::is_trivial<AECDebugData>::value, "AECDebugData must be zero-fillable");
static_assert(std::is_trivial<AECConvergenceKPIType>::value, "AECConvergenceKPIType must be zero-fillable");
// History entries are copied around as plain bytes (debug data, mode history).
static_assert(std::is_trivially_copyable<AECFrameHistory>::value, "AECFrameHistory must copy as bytes");
static_assert(std::is_trivially_copyable<AECModeHistory>::value, "AECModeHistory must copy as bytes");

TEST(AECFrameHistoryTest, DeclaredEntryStartsFromNeutralDefaults)
{
    const AECFrameHistory history;

    EXPECT_EQ(history.frameID, 0U);
    EXPECT_EQ(history.isStartConfig, FALSE);
    EXPECT_EQ(history.bisAECSettled, FALSE);
    EXPECT_FLOAT_EQ(history.previewEV, 0.0F);
    EXPECT_FLOAT_EQ(history.tableSensitivity, 1.0F);
    EXPECT_FLOAT_EQ(history.predictiveGain, 1.0F);
    EXPECT_FLOAT_EQ(history.predictiveADRC, 1.0F);
    EXPECT_EQ(history.postRawGain, 100);
    EXPECT_EQ(history.isSnapshotQuery, FALSE);
    for (UINT32 i = 0; i < AECAlgoExposureCount; ++i)
    {
        EXPECT_FLOAT_EQ(history.expIndices[i], 0.0F);
        EXPECT_EQ(history.expTime[i], 0U);
    }
    for (UINT32 i = 0; i < AECMaxBGStatsRegions; ++i)
    {
        ASSERT_FLOAT_EQ(history.BGStats[i], 0.0F) << "region " << i;
    }
}

TEST(AECModeHistoryTest, StartsInvalidWithDefaultEntries)
{
    const AECModeHistory modeHistory;

    EXPECT_EQ(modeHistory.isValid, FALSE);
    EXPECT_FLOAT_EQ(modeHistory.lastFrame.tableSensitivity, 1.0F);
    EXPECT_EQ(modeHistory.lastFrameOrig.postRawGain, 100);
}

TEST(AECCurrentModeInfoTest, StartsWithoutStartConfigAndEmptyHistory)
{
    const AECCurrentModeInfo modeInfo;

    EXPECT_EQ(modeInfo.isStartConfigSaved, FALSE);
    EXPECT_EQ(modeInfo.isCurFrameIDValid, FALSE);
    EXPECT_TRUE(modeInfo.frameHistories.empty());
}

// A module that overrides no event at all.
class CMinimalComponent : public IAECComponent
{
public:
    explicit CMinimalComponent(IAECContext* pContext)
        : IAECComponent(pContext)
    {
    }
};

TEST(IAECComponentTest, EveryEventSucceedsUnlessOverridden)
{
    CMinimalComponent component(nullptr);
    IAECComponent*    pComponent = &component;

    using Event = AecResult (IAECComponent::*)();
    const Event events[] = {
        &IAECComponent::OnOperationModeChange,       &IAECComponent::OnMeteringModeChange,
        &IAECComponent::OnExposureCompChange,        &IAECComponent::OnFlickerCompModeChange,
        &IAECComponent::OnManualSettingChange,       &IAECComponent::OnFPSChange,
        &IAECComponent::OnLEDModeChange,             &IAECComponent::OnFlashMeasKindChange,
        &IAECComponent::OnFrameDimChange,            &IAECComponent::OnTouchROIChange,
        &IAECComponent::OnFaceROIChange,             &IAECComponent::OnSensorInfoChange,
        &IAECComponent::OnZoomInfoChange,            &IAECComponent::OnDiagTestConfigChange,
        &IAECComponent::OnTuningHeaderChange,        &IAECComponent::OnAECLockChange,
        &IAECComponent::OnDebugDataUpdate,           &IAECComponent::OnMultiExposureSensorModeChange,
        &IAECComponent::OnDCGModeChange,             &IAECComponent::OnCustomExposureTableChange,
        &IAECComponent::OnCustomMeteringTableChange, &IAECComponent::OnDynamicConvergenceSpeedChange,
        &IAECComponent::OnIRStateChange,             &IAECComponent::OnIRSystemConfigChange,
        &IAECComponent::OnFnManualChange,
    };
    for (const Event event : events)
    {
        EXPECT_EQ((pComponent->*event)(), AecSuccess);
    }
}

// Only the event a module overrides changes its answer.
class CFailingTuningComponent : public IAECComponent
{
public:
    AecResult OnTuningHeaderChange() override { return AecError; }
};

TEST(IAECComponentTest, OverriddenEventIsDispatchedThroughTheBase)
{
    CFailingTuningComponent component;
    IAECComponent*          pComponent = &component;

    EXPECT_EQ(pComponent->OnTuningHeaderChange(), AecError);
    EXPECT_EQ(pComponent->OnFPSChange(), AecSuccess);
}

} // namespace
