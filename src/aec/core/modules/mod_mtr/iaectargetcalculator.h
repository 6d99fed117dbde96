// Interface of the calculators that turn the frame lumas and statistics into one of the targets the metering module mixes.
#ifndef AEC_CORE_MODULES_MOD_MTR_IAECTARGETCALCULATOR_H
#define AEC_CORE_MODULES_MOD_MTR_IAECTARGETCALCULATOR_H

#include "aec/core/include/aecdebugdata.h"
#include "aec/core/modules/mod_mtr/meteringcalcrecords.h"

class CStatsProcessor;

class IAECTargetCalculator
{
public:
    explicit IAECTargetCalculator(CStatsProcessor* pStatsProc)
        : m_pStatsProc(pStatsProc)
    {
    }
    virtual ~IAECTargetCalculator() = default;

    virtual VOID initialize() = 0;
    // The module ignores the result: a calculator that fails leaves its fields as they are and the others run on.
    virtual AecResult calculateTarget(const AECTargetCalcInput* pInput, AECTargetCalcResult* pResult) = 0;
    virtual VOID      FillDebugData(AECDebugData* pDebugData)
    {
        (VOID) pDebugData;
    }
    virtual VOID UpdateDebugData()
    {
    }

    IAECTargetCalculator(const IAECTargetCalculator&)            = delete;
    IAECTargetCalculator& operator=(const IAECTargetCalculator&) = delete;

protected:
    CStatsProcessor* m_pStatsProc;
};

#endif // AEC_CORE_MODULES_MOD_MTR_IAECTARGETCALCULATOR_H
