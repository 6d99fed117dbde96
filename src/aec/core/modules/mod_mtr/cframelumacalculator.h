// Frame luma: the weighted mean of the grid regions by metering table, with bright and dark regions de-weighted.
#ifndef AEC_CORE_MODULES_MOD_MTR_CFRAMELUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CFRAMELUMACALCULATOR_H

#include "aec/core/include/iaeccontext.h"
#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

// Runs after the lux calculators: the lux index of this frame selects the region adjustment zone.
class CFrameLumaCalculator final : public IAECLumaCalculator
{
public:
    CFrameLumaCalculator(CStatsProcessor* pStatsProc, IAECContext* pContext);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;
    // Copies the region adjustment record of the last UpdateDebugData into regionInfo.
    VOID FillDebugData(AECDebugData* pDebugData) override;
    VOID UpdateDebugData() override;

private:
    IAECContext*                     m_aecContext;
    const MeteringTuningDataType*    m_pTuning;
    FLOAT                            m_frameLuma;
    FLOAT                            m_LuxIndex;
    UINT16                           m_brightRgnCnt;
    UINT16                           m_darkRgnCnt;
    aecMetering::RgnAdjZoneDataType  m_curZoneData;
    AECDebugDataStatsLumaRegionType  m_debugData;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CFRAMELUMACALCULATOR_H
