// Exposure-index offset of an EV setting, from the EV compensation table of the metering tuning.
#ifndef AEC_CORE_MODULES_MOD_MTR_AECUTILEVOFFSET_H
#define AEC_CORE_MODULES_MOD_MTR_AECUTILEVOFFSET_H

#include "aec/core/include/aeccoredata.h"
#include "aectuningrecords.h"

// Number of entries of the EV compensation table.
constexpr INT32 AECEVCompTableSize = 49;

// Index offset (log10 of the table's luma multiplier times the index steps per decade) of desiredUIEV, the EV in UI
// steps, capped to the EV capabilities and to the table. 0 (no offset) when a record is missing or the table entry
// is not positive.
FLOAT AECUtilGetEVOffset(const EVContext* pEV, const aecMetering::EVLumaTargetType* pEVTuning, INT32 desiredUIEV);

#endif // AEC_CORE_MODULES_MOD_MTR_AECUTILEVOFFSET_H
