// Reader of Radiance RGBE (.hdr) pictures: flat, old run-length and new per-component run-length scanlines.
#ifndef AECORE_TOOLS_AECSIM_RGBEFILE_H
#define AECORE_TOOLS_AECSIM_RGBEFILE_H

#include <string>

#include "simtypes.h"

// Reads a Radiance picture in the usual "-Y height +X width" orientation into linear RGB; false with a message.
bool ReadRgbeFile(const std::string& path, SimImage* pOut, std::string* pError);

#endif // AECORE_TOOLS_AECSIM_RGBEFILE_H
