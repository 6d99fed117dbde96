// Neighbour exposures: a shorter, middle or longer exposure derived from a reference set by an index distance.
#include "aec/core/modules/mod_arb/carbitrator.h"

#include <algorithm>
#include <cmath>

#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{

// Float equality limit of arbitration; also the smallest ratio or gain worth dividing by.
constexpr FLOAT ArbEpsilon = 1e-7F;

// Lowers the reference by up to delta index units, never below minIndex. Gain is spent first, down to gainFloor,
// then time. Returns FALSE when there is nothing to derive; pOut is then a copy of the reference.
BOOL DeriveShorterExposure(FLOAT delta, FLOAT minIndex, FLOAT gainFloor, ExposureSetType* pOut,
                           const ExposureSetType* pIn)
{
    *pOut = *pIn;
    if (delta <= 0.0F)
    {
        return FALSE;
    }

    const FLOAT d = std::min(delta, pIn->expIndex - minIndex);
    const FLOAT r = powf(ExpIndexBase, d);
    if (r < ArbEpsilon)
    {
        return FALSE;
    }
    const FLOAT g = pIn->gain;
    if (g < ArbEpsilon)
    {
        // A reference without gain has no exposure to divide; it stays as it is.
        AEC_LOG_ERROR("Reference gain %f invalid, shorter exposure kept at the reference", g);
        return FALSE;
    }

    pOut->expIndex = pIn->expIndex - d;
    pOut->gain     = std::max(gainFloor, g / r);
    // Only the part of r that the gain could not absorb shortens the time.
    const FLOAT timeDivisor = std::max(gainFloor, r / g);
    if (std::fabs(timeDivisor - gainFloor) >= ArbEpsilon)
    {
        pOut->expTime = static_cast<UINT64>(static_cast<FLOAT>(pIn->expTime) / timeDivisor);
    }
    return TRUE;
}

// A derivation needs both sets; a missing one is refused with a log.
BOOL BothSetsGiven(const ExposureSetType* pOut, const ExposureSetType* pIn)
{
    if ((nullptr == pOut) || (nullptr == pIn))
    {
        AEC_LOG_ERROR("Invalid argument: out %p in %p", static_cast<const VOID*>(pOut), static_cast<const VOID*>(pIn));
        return FALSE;
    }
    return TRUE;
}

} // namespace

VOID CArbitrator::ArbitrateShortExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn)
{
    if (FALSE == BothSetsGiven(pOut, pIn))
    {
        return;
    }
    const ExposureLimitationType& rLimit = m_session.arbExpLimit;
    if (TRUE == DeriveShorterExposure(delta, rLimit.expIndex.min, rLimit.gain.min, pOut, pIn))
    {
        ArbitrateExposureAdjusting(pOut, AECAlgoExposureSafe, HDR, SHDRAECMODEDEFAULT);
    }
}

VOID CArbitrator::ArbitrateMiddleExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn)
{
    if (FALSE == BothSetsGiven(pOut, pIn))
    {
        return;
    }
    // The middle exposure of an in-sensor HDR frame never goes below unity gain, whatever the limit allows.
    if (TRUE == DeriveShorterExposure(delta, m_session.arbExpLimit.expIndex.min, 1.0F, pOut, pIn))
    {
        ArbitrateExposureAdjusting(pOut, AECAlgoExposureSafe, HDR, SHDRAECMODEDEFAULT);
    }
}

VOID CArbitrator::ArbitrateSafeExposureHDR3(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn)
{
    // In three-exposure HDR the safe exposure hangs below the long one exactly as the middle one below safe.
    ArbitrateMiddleExposure(delta, pOut, pIn);
}

VOID CArbitrator::ArbitrateLongExposure(FLOAT delta, ExposureSetType* pOut, ExposureSetType* pIn)
{
    if (FALSE == BothSetsGiven(pOut, pIn))
    {
        return;
    }
    *pOut = *pIn;
    if (delta <= 0.0F)
    {
        return;
    }
    const ExposureLimitationType& rLimit = m_session.arbExpLimit;
    if (rLimit.gain.max < ArbEpsilon)
    {
        // Without a gain range there is no way to split the longer exposure between gain and time.
        AEC_LOG_ERROR("Limit gain max %f invalid, longer exposure kept at the reference", rLimit.gain.max);
        return;
    }

    const FLOAT d = std::min(delta, rLimit.expIndex.max - pIn->expIndex);
    const FLOAT r = powf(ExpIndexBase, d);
    const FLOAT g = pIn->gain;

    pOut->expIndex = pIn->expIndex + d;
    pOut->gain     = std::min(g * r, rLimit.gain.max);
    // What the gain cannot take above its maximum lengthens the time.
    const FLOAT timeFactor = std::max(rLimit.gain.min, g * r / rLimit.gain.max);
    if (std::fabs(timeFactor - rLimit.gain.min) >= ArbEpsilon)
    {
        pOut->expTime = static_cast<UINT64>(static_cast<FLOAT>(pIn->expTime) * timeFactor);
    }
    ArbitrateExposureAdjusting(pOut, AECAlgoExposureSafe, HDR, SHDRAECMODEDEFAULT);
}
