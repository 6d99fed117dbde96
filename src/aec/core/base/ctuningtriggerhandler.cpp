// Zone data blending of the tuning zone lookup for zone data that is a single value.
#include "aec/core/base/ctuningtriggerhandler.h"

FLOAT CTuningTriggerHandler::Blend(FLOAT a, FLOAT b, FLOAT ratio)
{
    return std::fmaf(ratio, b - a, a);
}

VOID CTuningTriggerHandler::InterpolateZone(FLOAT* pOut, const FLOAT* pZoneA, const FLOAT* pZoneB, FLOAT ratio)
{
    *pOut = Blend(*pZoneA, *pZoneB, ratio);
}
