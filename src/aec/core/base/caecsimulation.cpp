// Simulation mode of the core: an exposure traversal for tuning, dormant behind a build switch.
#include "aec/core/base/caecsimulation.h"

CAECSimulation::CAECSimulation()
    : m_pMetering(nullptr)
    , m_pMtrOut(nullptr)
    , m_pDataManager(nullptr)
{
}

BOOL CAECSimulation::IsEnabled()
{
    return FALSE;
}

VOID CAECSimulation::configure(IAECMetering* pMetering, IAECContext* pDataManager, AECMeteringFrameProcOutput* pMtrOut)
{
    m_pMetering    = pMetering;
    m_pDataManager = pDataManager;
    m_pMtrOut      = pMtrOut;
}

BOOL CAECSimulation::ConfigSimulationExp(const AECCoreInput* /*pInput*/, FLOAT& /*expIndex*/, FLOAT& /*digitalGain*/)
{
    // The traversal is not part of this build: nothing replaces the converged exposure.
    return IsEnabled();
}
