// Helpers shared by the luma calculators: metering bias tables and elliptic (centre-weighted) ROI sums.
#ifndef AEC_CORE_MODULES_MOD_MTR_LUMACALCULATORUTIL_H
#define AEC_CORE_MODULES_MOD_MTR_LUMACALCULATORUTIL_H

#include "aec/core/include/coremoduletuningdata.h"
#include "aec/core/include/iprocessedstats.h"
#include "aecore/aecore.h"

// The 16 x 16 weight table of a metering mode; null means every region weighs 1 (frame average, unknown mode).
const FLOAT* UtilGetBiasTable(AECAlgoMeteringModeType mode, const aecMetering::MtrTableType* pTables,
                              const AECCustomMeteringTable* pCustom);

// Side of the square metering weight tables, in regions.
constexpr INT MtrTableSide = 16;
// Range of a frame-type luma on the 8-bit scale.
constexpr FLOAT MinFrameLuma = 0.1f;
constexpr FLOAT MaxFrameLuma = 255.0f;

// Entry of a 16 x 16 weight table under the normalised region centre (xPos, yPos); positions outside are capped.
UINT32 UtilGetMtrTableIndex(FLOAT xPos, FLOAT yPos);

// A frame-type luma limited to MinFrameLuma .. MaxFrameLuma.
FLOAT UtilClampFrameLuma(FLOAT luma);

// Normalised squared distance of (x, y) from (cx, cy): 1 lies on the ellipse inscribed in a w x h box; 0 for an
// empty box.
FLOAT UtilCalcDistSquare(FLOAT x, FLOAT y, FLOAT cx, FLOAT cy, FLOAT w, FLOAT h);

// Sums of the regions inside the ellipse inscribed in pROI, each weighted max(1 - d * strength, 0), where d is the
// normalised squared distance from the ROI centre. Both sums are written (0 when no region lies inside).
VOID UtilCalcCircularROILuma(IProcessedStats* pStats, const AECAlgoROI* pROI, FLOAT strength, FLOAT* pLumaSum,
                             FLOAT* pWeightSum);

// As above, but the window (from the ROI's top left) and the ellipse are dx * roiFactor by dy * roiFactor while the
// centre stays that of the unscaled ROI; used for HDR faces.
VOID UtilCalcCircularROILuma(IProcessedStats* pStats, const AECAlgoROI* pROI, FLOAT strength, FLOAT* pLumaSum,
                             FLOAT* pWeightSum, FLOAT roiFactor);

#endif // AEC_CORE_MODULES_MOD_MTR_LUMACALCULATORUTIL_H
