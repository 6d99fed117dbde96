// Simulation mode of the core: an exposure traversal for tuning, dormant behind a build switch.
#ifndef AEC_CORE_BASE_CAECSIMULATION_H
#define AEC_CORE_BASE_CAECSIMULATION_H

#include "aec/core/include/aeccorecommon.h"
#include "aec/core/include/aecmeteringrecords.h"
#include "aec/core/include/iaeccontext.h"
#include "aec/core/include/iaecmetering.h"

// Minimal form until the simulation stage lands: the build switch is off, so the core configures the object
// and never enters it. The traversal itself (states, similarity measure, capture list) comes with that stage.
class CAECSimulation
{
public:
    CAECSimulation();

    // The build switch of simulation mode; off in this build.
    static BOOL IsEnabled();

    VOID configure(IAECMetering* pMetering, IAECContext* pDataManager, AECMeteringFrameProcOutput* pMtrOut);

    // Exposure to use instead of the converged one; FALSE while the mode is disabled.
    BOOL ConfigSimulationExp(const AECCoreInput* pInput, FLOAT& expIndex, FLOAT& digitalGain);

private:
    IAECMetering*               m_pMetering;
    AECMeteringFrameProcOutput* m_pMtrOut;
    IAECContext*                m_pDataManager;
};

#endif // AEC_CORE_BASE_CAECSIMULATION_H
