// Pictures of a simulation run: the plot of luma, target, exposure time and gain, and the contact sheet of frames.
#ifndef AECORE_TOOLS_AECSIM_SIMRENDER_H
#define AECORE_TOOLS_AECSIM_SIMRENDER_H

#include <string>
#include <vector>

#include "simtypes.h"

// Writes a PNG with three stacked panels over the frame number: luma with the target luma, exposure time (ms, log
// scale) and gain; events are marked as vertical lines with their labels.
bool WritePlotPng(const std::string& path, const std::string& title, const std::vector<SimFrameRecord>& records,
                  std::string* pError);

// A tone-mapped, demosaiced picture of a raw frame, at most maxWidth pixels wide.
SimThumbnail MakeThumbnail(const SimRawFrame& frame, uint32_t frameNumber, uint32_t maxWidth, const std::string& label);

// Writes the thumbnails as a grid with their labels.
bool WriteContactSheetPng(const std::string& path, const std::vector<SimThumbnail>& thumbnails, std::string* pError);

#endif // AECORE_TOOLS_AECSIM_SIMRENDER_H
