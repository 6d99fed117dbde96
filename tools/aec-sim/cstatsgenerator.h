// The statistics generator's pixel convention, shared with its users: black-level corrected grid and histogram codes.
#ifndef AECORE_TOOLS_AECSIM_CSTATSGENERATOR_H
#define AECORE_TOOLS_AECSIM_CSTATSGENERATOR_H

#include <cstdint>

#include "simmodel.h"

// A raw code as the statistics see it: the black level removed and the rest stretched back to the full code range
// of the bit depth, as the pipeline's black-level correction does before its statistics, so that black reads 0 and
// the clipped white reads (1 << bitDepth) - 1. Saturation thresholds are codes of this scale.
uint32_t StatsCode(uint32_t raw, uint32_t blackLevel, uint32_t bitDepth);

// Grid regions of the library's record report this many pixels per region side (the sensor's pixels the region
// covers, halved until a channel's count fits the record's 16 bits).
void StatsRegionSize(const SimSensorDesc& desc, uint32_t* pRegionWidth, uint32_t* pRegionHeight);

#endif // AECORE_TOOLS_AECSIM_CSTATSGENERATOR_H
