// Exposure-index offset of an EV setting.
#include "aec/core/modules/mod_mtr/aecutilevoffset.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"
#include "platform/statslogger.h"

FLOAT AECUtilGetEVOffset(const EVContext* pEV, const aecMetering::EVLumaTargetType* pEVTuning, INT32 desiredUIEV)
{
    if ((nullptr == pEV) || (nullptr == pEVTuning))
    {
        AEC_LOG_ERROR("EV offset without EV context %p or EV tuning %p: no offset", static_cast<const void*>(pEV),
                      static_cast<const void*>(pEVTuning));
        return 0.0f;
    }

    const INT32 steps = pEV->capabilities.stepsPerEV;
    const INT32 lo    = pEV->capabilities.minEV * steps;
    const INT32 hi    = pEV->capabilities.maxEV * steps;
    // Capabilities with min above max cap to the minimum rather than leave an empty range.
    const INT32 ev    = std::max(std::min(desiredUIEV, hi), lo);
    // The table starts at the lowest EV; capabilities wider than the table take its end entries.
    const INT32 index = std::max(0, std::min(ev - lo, AECEVCompTableSize - 1));
    const FLOAT mult  = pEVTuning->EVCompTable.EVCompTableElements[index];
    if (!(mult > 0.0f))
    {
        // A multiplier without a logarithm would put an infinite or undefined offset into the exposure index.
        AEC_LOG_ERROR("EV table entry %d is %f: no EV offset", index, mult);
        return 0.0f;
    }
    const FLOAT offset = static_cast<FLOAT>(std::log10(static_cast<double>(mult)) * MeteringIndexPerDecade);
    AEC_LOG_VERBOSE("capped desired EV %d min %d max %d; luma idx %d luma mult %f EV offset %f", ev, lo, hi,
                    index, mult, offset);
    return offset;
}
