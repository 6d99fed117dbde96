// Depth-assisted luma: the luma of what autofocus selected, from depth maps; disabled in this system.
#ifndef AEC_CORE_MODULES_MOD_MTR_CDEPTHASSISLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_CDEPTHASSISLUMACALCULATOR_H

#include "aec/core/modules/mod_mtr/iaeclumacalculator.h"

enum DepthLumaMeteringModeType
{
    MtrModeDisabled  = 0,
    MtrModeInit      = 1,
    MtrModeTracking  = 2,
    MtrModeRebasing  = 3,
};

// The calculator keeps its place in the streaming list and its state so that depth metering can be enabled later;
// today every frame reports no depth luma (-1) and no weight, so aggregation never takes the depth branch. The
// tracking and rebasing helpers of an enabled depth metering are not built: no path would call them.
class CDepthAssisLumaCalculator final : public IAECLumaCalculator
{
public:
    static constexpr UINT32 MapSize = 256;

    explicit CDepthAssisLumaCalculator(CStatsProcessor* pStatsProc);

    VOID      Initialize() override;
    AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) override;

private:
    FLOAT                     m_confidenceMap[MapSize];
    FLOAT                     m_distanceMap[MapSize];
    FLOAT                     m_AFSelectMap[MapSize];
    DepthLumaMeteringModeType m_curDepthLumaMtrMode;
    DepthLumaMeteringModeType m_prevDepthLumaMtrMode;
    FLOAT                     m_validDepthLuma;
    FLOAT                     m_depthWeightAdjustment;
    FLOAT                     m_curDepthLuma;
};

#endif // AEC_CORE_MODULES_MOD_MTR_CDEPTHASSISLUMACALCULATOR_H
