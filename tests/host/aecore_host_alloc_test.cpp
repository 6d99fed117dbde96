// Proves that a processed frame allocates nothing on the heap but its one frame-history node.
#include <gtest/gtest.h>

#include <string>

#include "allocationcounter.h"
#include "chostharness.h"

namespace
{

// A frame-history node carries the whole grid statistics of a frame, which no other per-frame object does.
const size_t kHistoryNodeMinimumSize = 3072 * sizeof(FLOAT);

VOID SilentLogger(const CHAR*, UINT32, const CHAR*, StatsLogGroup, StatsLog, const CHAR*, ...)
{
}

} // namespace

TEST(HostAllocation, ProcessedFrameAllocatesOnlyTheHistoryNode)
{
    CHostHarness harness;
    std::string  error;
    ASSERT_TRUE(harness.Load(AECORE_LIBRARY_PATH, &error)) << error;

    const HostSensorConfig sensor = DefaultSensor(0);
    LYRAECAlgorithm*       pAlgo  = nullptr;
    ASSERT_EQ(VelaResultSuccess, harness.Create(0, &pAlgo, &SilentLogger));
    ASSERT_EQ(VelaResultSuccess, harness.Configure(pAlgo, sensor, AECAlgoOperationModeStreaming));
    HostFrameResult frame = {};
    ASSERT_EQ(VelaResultSuccess, harness.QueryStartExposure(pAlgo, &frame));

    // Past the ten-entry history, so both the growing and the full history are covered.
    for (UINT64 id = 1; id <= 25; id++)
    {
        harness.PrepareFrame(sensor, id, 100.0F, &frame);
        AllocationCounter::Begin();
        KDKResult           result = harness.RunPreparedFrame(pAlgo, &frame);
        std::vector<size_t> sizes  = AllocationCounter::End();

        ASSERT_EQ(VelaResultSuccess, result) << "frame " << id;
        ASSERT_LE(sizes.size(), 1U) << "frame " << id << " allocated " << sizes.size() << " blocks, the first of "
                                    << (sizes.empty() ? 0 : sizes[0]) << " bytes, the last of " << sizes.back() << " bytes";
        if (id <= 10)
        {
            ASSERT_EQ(1U, sizes.size()) << "frame " << id << " should add one history node";
        }
        for (size_t size : sizes)
        {
            EXPECT_GE(size, kHistoryNodeMinimumSize) << "frame " << id << " allocated a block that is no history node";
        }
    }
    harness.Destroy(pAlgo, 0, true);
}
