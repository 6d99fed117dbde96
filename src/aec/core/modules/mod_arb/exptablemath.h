// Exposure index arithmetic shared by the exposure table steps: ratio to index delta, knee ratios, time growth.
#ifndef AEC_CORE_MODULES_MOD_ARB_EXPTABLEMATH_H
#define AEC_CORE_MODULES_MOD_ARB_EXPTABLEMATH_H

#include "aecore/aecore.h"

// Index units per decade of sensitivity: the single-precision 77.89853 widened, not the exact 1 / log10(1.03), so
// that indices agree with the tables tuned against it.
constexpr DOUBLE ExpIndexPerDecade = 77.89852905273438;

// Sensitivity gained by one index unit (3 percent).
constexpr FLOAT ExpIndexBase = 1.03F;

// Index delta of a sensitivity ratio, computed in double precision and narrowed.
FLOAT ExpIndexDeltaFromRatio(DOUBLE ratio);

// num / den of two knee quantities; a zero den (a knee without time or gain) counts as no change, ratio 1.
FLOAT KneeRatio(FLOAT num, FLOAT den);
DOUBLE KneeRatio(UINT64 num, UINT64 den);

// time + trunc(growth * time) in single precision. An increment that is negative or not a number adds nothing and
// one beyond the 64-bit range saturates, as the float-to-unsigned conversion of the target does.
UINT64 GrowExpTime(UINT64 time, FLOAT growth);

#endif // AEC_CORE_MODULES_MOD_ARB_EXPTABLEMATH_H
