// Convergence time measurement: from the first unsettled frame to the frame on which exposure settles.
#include "aec/core/base/statsconvergencekpi.h"

#include "platform/statslogger.h"
#include "platform/z3a_platform.h"

VOID StatsConvergenceKPIMeasure(BOOL isFrameStart, StatsConvergenceKPIType* pKPI, const CHAR* pName)
{
    if (TRUE == isFrameStart)
    {
        if (FALSE == pKPI->bStartInit)
        {
            pKPI->frameCount++;
        }
        // Taken on every frame, so that a restart begins at the frame that lost the settled state.
        pKPI->startTimeOfEachFrame = z3a_get_time_ms();
    }
    else if (FALSE == pKPI->bEndInit)
    {
        pKPI->bStartInit = TRUE;
        pKPI->bEndInit   = TRUE;
        pKPI->endTime    = z3a_get_time_ms();
        pKPI->totalTime  = pKPI->endTime - pKPI->startTime;
        AEC_LOG_INFO("KPI:%s Convergence done (Convergence Time + Panning Time):%u ms StartTime:%u EndTime %u Frames %u",
                     pName, pKPI->totalTime, pKPI->startTime, pKPI->endTime, pKPI->frameCount);
    }
}

VOID StatsRestartConvergenceKPI(StatsConvergenceKPIType* pKPI)
{
    pKPI->startTime  = pKPI->startTimeOfEachFrame;
    pKPI->frameCount = 1;
    pKPI->bStartInit = FALSE;
    pKPI->bEndInit   = FALSE;
}
