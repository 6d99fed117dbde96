// The sensor model's helpers beyond simmodel.h: the rolling-shutter light integral of a flickering lamp.
#ifndef AECORE_TOOLS_AECSIM_CSIMSENSOR_H
#define AECORE_TOOLS_AECSIM_CSIMSENSOR_H

#include <cstdint>

#include "simmodel.h"

// Mean brightness factor of a scene's light seen by one row exposed over [startNs, startNs + durationNs]: 1.0 for
// steady light; with flicker, (1 - depth) + depth * the window's mean of |sin(2 pi mains t)| normalised to mean 1.
// A zero duration gives the instantaneous factor.
double FlickerWindowFactor(const SimFlicker& flicker, uint64_t startNs, uint64_t durationNs);

#endif // AECORE_TOOLS_AECSIM_CSIMSENSOR_H
