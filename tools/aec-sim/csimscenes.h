// Luminance helpers that every scene shares: the luminance of a linear RGB image and its scaling to a given mean.
#ifndef AECORE_TOOLS_AECSIM_CSIMSCENES_H
#define AECORE_TOOLS_AECSIM_CSIMSCENES_H

#include "simmodel.h"

// Luminance of linear RGB with the Rec. 709 weights, in the unit of the channels (cd/m2 for scenes).
float PixelLuminance(const float* pRgb);

// Mean luminance of the rows [firstRow, endRow) of an image; the whole image when endRow is 0.
double MeanLuminance(const SimImage& image, uint32_t firstRow = 0, uint32_t endRow = 0);

// Multiplies every channel by one factor.
void ScaleImage(SimImage* pImage, double factor);

// The share of a scene's light that follows the mains when its lamps flicker: tubes flicker deeply, most other
// lamps of a room or street about half.
constexpr float FluorescentFlickerDepth = 0.8F;
constexpr float LampFlickerDepth        = 0.5F;

#endif // AECORE_TOOLS_AECSIM_CSIMSCENES_H
