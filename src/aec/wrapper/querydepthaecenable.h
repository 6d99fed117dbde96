// Whether the tuning enables depth-assisted AEC, which decides if the depth vendor tags are requested.
#ifndef AEC_WRAPPER_QUERYDEPTHAECENABLE_H
#define AEC_WRAPPER_QUERYDEPTHAECENABLE_H

#include "aecore/aecore.h"

// The depth module's enable flag for the selected tuning modes; FALSE when the module is missing.
BOOL QueryDepthAECEnable(const StatsTuningData* pTuningData);

#endif // AEC_WRAPPER_QUERYDEPTHAECENABLE_H
