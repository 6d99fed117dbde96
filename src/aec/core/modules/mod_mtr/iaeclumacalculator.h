// Interface of the calculators that turn one frame's statistics into one of the lumas the metering module mixes.
#ifndef AEC_CORE_MODULES_MOD_MTR_IAECLUMACALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_IAECLUMACALCULATOR_H

#include "aec/core/include/aecdebugdata.h"
#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"

class CStatsProcessor;

class IAECLumaCalculator
{
public:
    explicit IAECLumaCalculator(CStatsProcessor* pStatsProc)
        : m_pStatsProc(pStatsProc)
    {
    }
    virtual ~IAECLumaCalculator() = default;

    virtual VOID Initialize() = 0;
    // The module ignores the result: a calculator that fails leaves its fields as they are and the others run on.
    virtual AecResult calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult) = 0;
    virtual VOID      FillDebugData(AECDebugData* pDebugData)
    {
        (VOID) pDebugData;
    }
    virtual VOID UpdateDebugData()
    {
    }

    IAECLumaCalculator(const IAECLumaCalculator&)            = delete;
    IAECLumaCalculator& operator=(const IAECLumaCalculator&) = delete;

protected:
    CStatsProcessor* m_pStatsProc;
};

#endif // AEC_CORE_MODULES_MOD_MTR_IAECLUMACALCULATOR_H
