// Interface of the convergence module: next exposure indices, settle flags and start indices of a mode.
#ifndef AEC_CORE_INCLUDE_IAECCONVERGENCE_H
#define AEC_CORE_INCLUDE_IAECCONVERGENCE_H

#include "aec/core/include/aecconvergencerecords.h"
#include "aec/core/include/iaeccomponent.h"
#include "aecore/aecore.h"

class IAECConvergence : public IAECComponent
{
public:
    virtual AecResult ConvergeFrameExposure(const ConvergenceInput* pInput, ConvergenceOutput* pOutput) = 0;
    // Fills three start indices and the start lux index of the mode; a non-zero refuseFastStart ignores a
    // host-provided fast-convergence start.
    virtual AecResult GetStartExposureIndices(FLOAT* pIndices, FLOAT* pLuxIndex, BOOL refuseFastStart) = 0;

    // Set once a host-provided start setting has been used; it is used only once per module lifetime.
    BOOL m_isStartSettingUsed = FALSE;
};

#endif // AEC_CORE_INCLUDE_IAECCONVERGENCE_H
