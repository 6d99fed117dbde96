// Contact sheets of simulated frames: tone-mapped thumbnails of raw Bayer frames laid out in a labelled grid.
#ifndef AECORE_TOOLS_AECSIM_CCONTACTSHEET_H
#define AECORE_TOOLS_AECSIM_CCONTACTSHEET_H

#include <cstdint>
#include <string>
#include <vector>

#include "csimcanvas.h"
#include "simtypes.h"

class CContactSheet
{
public:
    static constexpr uint32_t kMaxSheetWidth = 1600; // columns are added while the sheet stays this narrow
    static constexpr int      kPadding       = 8;

    // Empty (width 0) when the frame has no whole 2x2 block, too few samples, or no range above black.
    static SimThumbnail MakeThumbnail(const SimRawFrame& frame, uint32_t frameNumber, uint32_t maxWidth,
                                      const std::string& label);
    static bool         Write(const std::string& path, const std::vector<SimThumbnail>& thumbnails,
                              std::string* pError);
    static SimColor     Background();
    // Height of the label band under each thumbnail: two lines, for the frame number and its events.
    static int          LabelHeight();

private:
    static int LineHeight();
    // sRGB transfer of a linear value in 0..1, as an 8-bit code.
    static uint8_t Encode(double linear);
};

#endif // AECORE_TOOLS_AECSIM_CCONTACTSHEET_H
