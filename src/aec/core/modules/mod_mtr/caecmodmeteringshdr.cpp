// Metering module: the staggered-HDR exposure pair (short and long index, exposure ratio).
#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/modules/mod_mtr/caecmodmetering.h"
#include "platform/statslogger.h"
#include "tuning_aecshdr.h"

// Minimal until the staggered-HDR metering stage lands: the input checks and the switch are in place, and an
// enabled SHDR reports no decision (Enable 0), so the frame runs on the ordinary target indices.
VOID CAECModMetering::AdjustShdrExposure(const AECMeteringFrameProcInput* pInput,
                                         const MeteringTuningDataType* pTuning, AECShdrResult* pResult)
{
    if ((nullptr == pInput) || (nullptr == pTuning) || (nullptr == pTuning->pShdr))
    {
        AEC_LOG_ERROR("Input param or SHDR tuning is NULL");
        return;
    }
    const AECAlgoOverrideSettingParam* pOverride = m_aecContext->getOverrideSetting();
    AEC_LOG_VERBOSE("[AdjustShdrExposure] shdrmode=%d enableShdr=%d",
                    (nullptr != pOverride) ? static_cast<INT32>(pOverride->shdrmode) : 0, pTuning->pShdr->enableShdr);
    pResult->Enable = 0;
    if (0 != pTuning->pShdr->enableShdr)
    {
        AEC_LOG_WARN("SHDR exposure decision is not supported in this build; ordinary target indices used");
    }
}
