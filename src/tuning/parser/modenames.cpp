// Names of the modes and sub-modes of the tree, as the tuning tool shows them.
#include "tuning/parser/modenames.h"

#include <iterator>

namespace
{
const CHAR* const s_modes[]    = {"Default", "Sensor", "Usecase", "Feature1", "Feature2", "Scene", "Effect"};
const CHAR* const s_usecase[]  = {"Preview", "Snapshot", "Video", "ZSL", "Liveshot", "SnapshotReprocess", "IDEALRAW",
                                 "IdealRawReprocess"};
const CHAR* const s_feature1[] = {"None", "ISPHDR", "ADRC", "inSensorHDR3Exp", "MFHDRPreFusion", "MFHDRFusion",
                                  "MFHDRPostFusion"};
const CHAR* const s_feature2[] = {"None", "OISCapture", "HLG", "HDR10", "MFNRBlend", "MFNRPostFilter",
                                  "AIDenoiserMFNRBlend", "AIDenoiserMFNRPostFilter", "ZLLMFNRBlend",
                                  "ZLLMFNRPostFilter", "ZLLPostFusion", "FRNSEF", "FRNLEF", "SHDRRGB", "SHDRIR"};
const CHAR* const s_scene[]    = {"None", "Landscape", "Snow", "Beach", "Sunset", "Night", "Portrait", "BackLight",
                               "Sports", "AntiShake", "Flowers", "CandleLight", "Fireworks", "Party",
                               "NightPortrait", "Theater", "Action", "AR", "FacePriority", "Barcode", "BestShot",
                               "IR"};
const CHAR* const s_effect[]   = {"None", "Mono", "Sepia", "Negative", "Solarize", "Posterize", "Aqua", "Emboss",
                                "Sketch", "Neon", "Blackboard", "Whiteboard"};

struct SubModeList
{
    const CHAR* const* Names;
    UINT32             Count;
};

SubModeList SubModes(UINT32 mode)
{
    switch (mode)
    {
        case 2: return {s_usecase, static_cast<UINT32>(std::size(s_usecase))};
        case 3: return {s_feature1, static_cast<UINT32>(std::size(s_feature1))};
        case 4: return {s_feature2, static_cast<UINT32>(std::size(s_feature2))};
        case 5: return {s_scene, static_cast<UINT32>(std::size(s_scene))};
        case 6: return {s_effect, static_cast<UINT32>(std::size(s_effect))};
        default: return {nullptr, 0};
    }
}
} // namespace

const CHAR* ModeNames::ModeName(UINT32 mode)
{
    return (mode < std::size(s_modes)) ? s_modes[mode] : nullptr;
}

const CHAR* ModeNames::SubModeName(UINT32 mode, UINT32 subMode)
{
    const SubModeList list = SubModes(mode);
    return (subMode < list.Count) ? list.Names[subMode] : nullptr;
}

UINT32 ModeNames::SubModeCount(UINT32 mode)
{
    return SubModes(mode).Count;
}
