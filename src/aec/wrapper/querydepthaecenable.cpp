// Whether the tuning enables depth-assisted AEC, which decides if the depth vendor tags are requested.
#include "aec/wrapper/querydepthaecenable.h"

BOOL QueryDepthAECEnable(const StatsTuningData* pTuningData)
{
    // WAITING FOR THE PARAMETER STORE: the lookup becomes
    //   TuningSetManager::GetModule_aecDepth(pTuningSetManager, pTuningModeSelectors, numSelectors, NULL)
    // with the module's enableFlag as the answer. Until the store exists every tuning lacks the depth
    // module, which is reported the same way as a store without it: depth AEC off.
    static_cast<VOID>(pTuningData);
    return FALSE;
}
