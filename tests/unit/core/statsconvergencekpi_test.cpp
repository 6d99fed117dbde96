// Tests of the convergence time measurement helpers.
#include <gtest/gtest.h>

#include "aec/core/base/statsconvergencekpi.h"
#include "unit/core/coretestsupport.h"

namespace
{

TEST(StatsConvergenceKPITest, FrameStartCountsOnlyWhileAMeasurementRuns)
{
    StatsConvergenceKPIType kpi = {};
    StatsConvergenceKPIMeasure(TRUE, &kpi, "T");
    StatsConvergenceKPIMeasure(TRUE, &kpi, "T");
    EXPECT_EQ(2u, kpi.frameCount);

    kpi.bStartInit = TRUE;
    StatsConvergenceKPIMeasure(TRUE, &kpi, "T");
    EXPECT_EQ(2u, kpi.frameCount);
}

TEST(StatsConvergenceKPITest, EndOfConvergenceIsReportedOnce)
{
    CoreLogCapture          logs;
    StatsConvergenceKPIType kpi = {};
    kpi.frameCount              = 4;
    StatsConvergenceKPIMeasure(FALSE, &kpi, "AEC CORE");
    EXPECT_TRUE(kpi.bStartInit);
    EXPECT_TRUE(kpi.bEndInit);
    EXPECT_EQ(kpi.endTime - kpi.startTime, kpi.totalTime);
    ASSERT_EQ(1u, logs.CountContaining("KPI:AEC CORE Convergence done (Convergence Time + Panning Time):"));
    EXPECT_EQ(1u, logs.CountContaining("Frames 4"));

    const UINT32 endTime = kpi.endTime;
    kpi.frameCount       = 9;
    StatsConvergenceKPIMeasure(FALSE, &kpi, "AEC CORE");
    EXPECT_EQ(endTime, kpi.endTime);
    EXPECT_EQ(1u, logs.CountContaining("KPI:"));
}

TEST(StatsConvergenceKPITest, RestartBeginsAtTheStartOfTheCurrentFrame)
{
    StatsConvergenceKPIType kpi = {};
    kpi.startTimeOfEachFrame    = 1234;
    kpi.frameCount              = 7;
    kpi.bStartInit              = TRUE;
    kpi.bEndInit                = TRUE;
    StatsRestartConvergenceKPI(&kpi);
    EXPECT_EQ(1234u, kpi.startTime);
    EXPECT_EQ(1u, kpi.frameCount);
    EXPECT_FALSE(kpi.bStartInit);
    EXPECT_FALSE(kpi.bEndInit);
}

} // namespace
