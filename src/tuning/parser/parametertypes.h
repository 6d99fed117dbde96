// Basic records and enumerations shared by every part of the tuning parameter store.
#ifndef AECORE_TUNING_PARSER_PARAMETERTYPES_H
#define AECORE_TUNING_PARSER_PARAMETERTYPES_H

#include <atomic>
#include <mutex>

#include "aecore/aecore_types.h"

typedef uint8_t BYTE;

// Recursive, since loading a mode may unload trimmed modes of the same table from inside.
typedef std::recursive_mutex ParameterMutex;
// Reference counts are changed by camera and live tuning threads alike.
typedef std::atomic<UINT32> ParameterRefCount;

struct VersionStruct
{
    UINT16 Major;
    UINT16 Minor;
    UINT32 Patch;
};

// A file or module version, ordered by Major, then Minor, then Patch.
union VersionUnion
{
    UINT64        Value;
    VersionStruct Version;

    static VersionUnion Make(UINT16 major, UINT16 minor, UINT32 patch)
    {
        VersionUnion v;
        v.Value         = 0;
        v.Version.Major = major;
        v.Version.Minor = minor;
        v.Version.Patch = patch;
        return v;
    }

    INT32 Compare(const VersionUnion& other) const
    {
        if (Version.Major != other.Version.Major)
        {
            return (Version.Major > other.Version.Major) ? 1 : -1;
        }
        if (Version.Minor != other.Version.Minor)
        {
            return (Version.Minor > other.Version.Minor) ? 1 : -1;
        }
        if (Version.Patch != other.Version.Patch)
        {
            return (Version.Patch > other.Version.Patch) ? 1 : -1;
        }
        return 0;
    }

    bool operator==(const VersionUnion& o) const { return 0 == Compare(o); }
    bool operator!=(const VersionUnion& o) const { return 0 != Compare(o); }
    bool operator>(const VersionUnion& o) const { return Compare(o) > 0; }
    bool operator>=(const VersionUnion& o) const { return Compare(o) >= 0; }
    bool operator<(const VersionUnion& o) const { return Compare(o) < 0; }
    bool operator<=(const VersionUnion& o) const { return Compare(o) <= 0; }
};
static_assert(8 == sizeof(VersionUnion), "a version is 8 bytes in the file");

struct ModeStruct
{
    UINT16 Mode;
    UINT16 SubMode;
    UINT32 Group;
};

// A mode of the tree: mode, sub-mode and pipeline group (pipeline + 1, 0 for none).
union ModeUnion
{
    UINT64     Value;
    ModeStruct Mode;
};
static_assert(8 == sizeof(ModeUnion), "a mode is 8 bytes in the file");

// A value of a control variable by ID.
#pragma pack(push, 1)
struct ParameterCTValue
{
    UINT32 ID;
    double Value;
};
#pragma pack(pop)
static_assert(12 == sizeof(ParameterCTValue), "packed control value");

enum class ModeType : UINT32
{
    Default             = 0,
    Sensor              = 1,
    Usecase             = 2,
    Feature1            = 3,
    Feature2            = 4,
    Scene               = 5,
    Effect              = 6,
    EnumModeType_COUNT  = 7,
};

enum class ModeUsecaseSubModeType : UINT32
{
    Preview, Snapshot, Video, ZSL, Liveshot, SnapshotReprocess, IDEALRAW, IdealRawReprocess, COUNT
};

enum class ModeFeature1SubModeType : UINT32
{
    None, ISPHDR, ADRC, inSensorHDR3Exp, MFHDRPreFusion, MFHDRFusion, MFHDRPostFusion, COUNT
};

enum class ModeFeature2SubModeType : UINT32
{
    None, OISCapture, HLG, HDR10, MFNRBlend, MFNRPostFilter, AIDenoiserMFNRBlend, AIDenoiserMFNRPostFilter,
    ZLLMFNRBlend, ZLLMFNRPostFilter, ZLLPostFusion, FRNSEF, FRNLEF, SHDRRGB, SHDRIR, COUNT
};

enum class ModeSceneSubModeType : UINT32
{
    None, Landscape, Snow, Beach, Sunset, Night, Portrait, BackLight, Sports, AntiShake, Flowers, CandleLight,
    Fireworks, Party, NightPortrait, Theater, Action, AR, FacePriority, Barcode, BestShot, IR, COUNT
};

enum class ModeEffectSubModeType : UINT32
{
    None, Mono, Sepia, Negative, Solarize, Posterize, Aqua, Emboss, Sketch, Neon, Blackboard, Whiteboard, COUNT
};

// A sub-mode, read as the number or as the enumeration of its mode; 4 bytes like the host's selector field,
// whose low half is the number.
union ModeSubModeType
{
    UINT16                  value;
    ModeUsecaseSubModeType  usecase;
    ModeFeature1SubModeType feature1;
    ModeFeature2SubModeType feature2;
    ModeSceneSubModeType    scene;
    ModeEffectSubModeType   effect;
};

// One element of a mode branch; a branch starts with Default and descends.
struct TuningMode
{
    ModeType        mode;
    ModeSubModeType subMode;
};
static_assert(8 == sizeof(TuningMode), "a mode selector is two 32-bit fields");

enum class PipelineType : UINT32
{
    BYR, FRN, PST, SW_CONTROL, STATS, Preproc, PSTPreproc, Postproc, TLN, OFL, MISC
};

// Section types of the section table.
enum ParameterSectionType : UINT32
{
    ParameterSectionType_SymbolTable     = 0,
    ParameterSectionType_Data            = 1,
    ParameterSectionType_ModeTable       = 2,
    ParameterSectionType_DataTable       = 3,
    ParameterSectionType_DefinitionTable = 4,
};

// Where a section lies in the file.
struct SectionInfo
{
    UINT32 Offset;
    UINT32 Size;
};

// Packing of a mode ID: table index in the top byte, entry index in the low 24 bits.
inline UINT32 GetModeTableIndex(UINT32 modeId)
{
    return modeId >> 24;
}

inline UINT32 GetModeIDValue(UINT32 modeId)
{
    return modeId & 0xFFFFFFu;
}

// Sizes of the fixed text fields of the file.
static const UINT32 ParameterTagSize           = 28;
static const UINT32 ParameterCreatedBySize     = 48;
static const UINT32 ParameterBinaryTagSize     = 64;
static const UINT32 ParameterErrorTextSize     = 2048;
static const UINT32 ParameterFileNameSize      = 1024;
static const UINT32 ParameterModePathSize      = 128;
static const UINT32 ParameterTableNameSize     = 128;
static const UINT32 ParameterOldTableNameSize  = 32;
static const UINT32 ParameterFileHeaderReadSize = 3388;
static const UINT32 ParameterMinSections       = 2;
static const UINT32 ParameterNoLink            = 0xFFFFFFFEu;
static const UINT32 ParameterNoLinkAlt         = 0xFFFFFFFFu;

#endif // AECORE_TUNING_PARSER_PARAMETERTYPES_H
