// Records the simulator's parts hand each other: sensor description, scene image, raw frame, per-frame record.
#ifndef AECORE_TOOLS_AECSIM_SIMTYPES_H
#define AECORE_TOOLS_AECSIM_SIMTYPES_H

#include <cstdint>
#include <string>
#include <vector>

// A sensor as its description file states it. Times in nanoseconds.
struct SimSensorDesc
{
    std::string name            = "default";
    uint32_t    width           = 4000;   // active pixels the library is told about
    uint32_t    height          = 3000;
    uint32_t    simWidth        = 512;    // pixels actually simulated (Bayer, even); each stands for a block
    uint32_t    simHeight       = 384;
    uint32_t    bitDepth        = 10;     // 10, 12 or 14
    uint32_t    blackLevel      = 64;     // in raw codes
    float       fullWellElectrons = 6000.0F;
    float       readNoiseElectrons = 2.0F;
    bool        shotNoise       = true;
    uint64_t    lineTimeNs      = 33333;  // one line
    uint32_t    minLines        = 1;      // exposure from minLines to maxLines lines
    uint32_t    maxLines        = 1000;
    uint32_t    frameLines      = 1000;   // lines per frame at the highest rate
    float       minGain         = 1.0F;
    float       maxGain         = 16.0F;
    float       fNumber         = 2.0F;
    uint32_t    pipelineDelay   = 2;      // frames between choosing an exposure and the frame that shows it
    uint32_t    gridColumns     = 64;
    uint32_t    gridRows        = 48;
    uint32_t    histogramBins   = 256;    // 256 or 1024
    // Electrons per second per pixel of one cd/m2 of scene luminance at f/1.0: the sensitivity of the pixel.
    float       electronsPerNit = 5000.0F;
};

// Linear scene luminance in cd/m2, three channels (R, G, B) per pixel, row-major.
struct SimImage
{
    uint32_t           width  = 0;
    uint32_t           height = 0;
    std::vector<float> rgb;
};

// Mains light flicker of a scene: the luminance of lit parts follows |sin| at twice the mains frequency.
struct SimFlicker
{
    uint32_t mainsHz = 0;    // 0: steady light, 50 or 60
    float    depth   = 0.0F; // 0..1 share of the light that flickers
};

// The exposure the sensor applied to a frame.
struct SimExposure
{
    uint64_t exposureTime = 0; // ns
    float    gain         = 1.0F;
    float    fnumber      = 0.0F; // 0: the sensor's own
};

// One simulated raw frame, RGGB Bayer at simWidth x simHeight, black level included.
struct SimRawFrame
{
    uint32_t              width    = 0;
    uint32_t              height   = 0;
    uint32_t              bitDepth = 10;
    uint32_t              blackLevel = 0;
    std::vector<uint16_t> bayer;
};

// A small 8-bit RGB picture of a frame, for the contact sheet.
struct SimThumbnail
{
    uint32_t             frame  = 0;
    uint32_t             width  = 0;
    uint32_t             height = 0;
    std::vector<uint8_t> rgb;
    std::string          label;
};

// What the loop records for every frame.
struct SimFrameRecord
{
    uint32_t    frame          = 0;
    double      sceneEV        = 0.0;   // log2 of the scene's relative brightness at this frame
    uint64_t    appliedTime    = 0;     // exposure the sensor applied to this frame
    float       appliedGain    = 1.0F;
    uint64_t    chosenTime     = 0;     // safe exposure the library chose on this frame
    float       chosenGain     = 1.0F;
    float       chosenSensitivity = 0.0F;
    float       frameLuma      = 0.0F;  // the library's luma of this frame
    float       targetLuma     = 0.0F;  // the luma the library aims at (from its target index), 0 if unknown
    float       luxIndex       = 0.0F;
    bool        settled        = false;
    float       fps            = 0.0F;
    std::string event;                  // host events applied before this frame, "" if none
};

#endif // AECORE_TOOLS_AECSIM_SIMTYPES_H
