// The application's exposure table as the state store keeps it, readable by the modules through the context.
#ifndef AEC_CORE_INCLUDE_AECCUSTOMEXPOSURETABLE_H
#define AEC_CORE_INCLUDE_AECCUSTOMEXPOSURETABLE_H

#include "aecore/aecore.h"
#include "aec/core/include/iaeccontext.h"
#include "tuning_aecarbitration.h"

// Table ID that selects the application's table instead of a tuned one.
constexpr aecglobalelements::ExposureTableIDType CustomExposureTableID = 100;

// The application's exposure table in the tuned table's form; honoured only while isValid is 1.
struct AECCustomExposureTableInfo
{
    aecArbitration::ExposureTableType expTable;
    BOOL                              isValid;
};

#endif // AEC_CORE_INCLUDE_AECCUSTOMEXPOSURETABLE_H
