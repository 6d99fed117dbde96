// Whether the tuning enables depth-assisted AEC, which decides if the depth vendor tags are requested.
#include "aec/wrapper/querydepthaecenable.h"

#include "platform/velalog.h"
#include "tuning/tuningsetmanager.h"

BOOL QueryDepthAECEnable(const StatsTuningData* pTuningData)
{
    // Without a store or without selectors there is no depth module to ask: depth AEC off.
    if ((nullptr == pTuningData) || (nullptr == pTuningData->pTuningSetManager) ||
        (nullptr == pTuningData->pTuningModeSelectors))
    {
        AEC_VLOG_INFO("No tuning store or mode selectors to ask for the depth module: depth AEC off");
        return FALSE;
    }
    TuningSetManager*       pStore = static_cast<TuningSetManager*>(pTuningData->pTuningSetManager);
    aecDepth::AECDepthType* pDepth = pStore->GetModule_aecDepth(
        static_cast<const TuningMode*>(pTuningData->pTuningModeSelectors), pTuningData->numSelectors, nullptr);
    if (nullptr == pDepth)
    {
        return FALSE;
    }
    const BOOL enable = pDepth->enableFlag;
    // Only the flag was wanted: the reference the fetch took goes back at once.
    pDepth->Release();
    return enable;
}
