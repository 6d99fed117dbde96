// The tuning data adapter's parsing of the parameter extension list into the core's extension records.
#include <cmath>
#include <cstring>
#include <limits>

#include "aec/core/base/ctuningdataadapter.h"
#include "platform/statslogger.h"

namespace
{

typedef statsglobalelements::statsExtensionParamType ExtensionEntry;

// AECParameterExtensionID: the IDs the extension entries carry.
enum AECParameterExtensionID : INT32
{
    ParamExtIDPreditive       = 0,
    ParamExtIDDepthAEC        = 1,
    ParamExtIDADRCSatCtrl     = 2,
    ParamExtIDGyroExpCtrl     = 3,
    ParamExtIDHistCtrl        = 4,
    ParamExtIDInsensorHDRCtrl = 5,
};

// Data counts of the recognised entries.
constexpr UINT32 PredictiveDataCount  = 2;
constexpr UINT32 DepthAECDataCount    = 6;
constexpr UINT32 ADRCSatDataCount     = 1;
constexpr UINT32 GyroAECDataCount     = 101;
constexpr UINT32 HistExtDataCount     = 4;
constexpr UINT32 InsensorHDRDataCount = 2;
constexpr UINT32 LLSDataCount         = 2;

// Gyro entry layout: five scalars, then the two key levels' zones as start, end pairs, then the trigger data.
constexpr UINT32 GyroZonesOffset       = 5;
constexpr UINT32 GyroTriggerDataOffset = GyroZonesOffset + 4 * GyroExpCtrlMaxTriggerZones;

// Float to integer by truncation, saturating at both ends: an out-of-range conversion is undefined. NaN gives 0.
INT ToIntTruncated(FLOAT value)
{
    if (std::isnan(value))
    {
        return 0;
    }
    constexpr FLOAT lowest  = static_cast<FLOAT>(std::numeric_limits<INT>::min());
    constexpr FLOAT highest = static_cast<FLOAT>(std::numeric_limits<INT>::max());
    if (value <= lowest)
    {
        return std::numeric_limits<INT>::min();
    }
    return (value >= highest) ? std::numeric_limits<INT>::max() : static_cast<INT>(value);
}

// TRUE when the entry has its name and ID (a negative ID: the name alone decides).
BOOL IsEntry(const ExtensionEntry& rEntry, INT32 ID, const CHAR* pName)
{
    return ((ID < 0) || (ID == rEntry.ID)) && (0 == std::strcmp(rEntry.Name, pName)) ? TRUE : FALSE;
}

// TRUE when a recognised entry has the data count of its kind; else logs the kind's message.
BOOL HasDataCount(const ExtensionEntry& rEntry, UINT32 index, UINT32 dataCount, const CHAR* pSkipFormat)
{
    if (dataCount == rEntry.dataCount)
    {
        return TRUE;
    }
    AEC_LOG_WARN(pSkipFormat, index, rEntry.ID, rEntry.Name, rEntry.dataCount);
    return FALSE;
}

VOID LoadPredictive(const ExtensionEntry& rEntry, ParamExtPredictive* pPredictive)
{
    pPredictive->enable                  = rEntry.enableFlag;
    pPredictive->enableCombineDarkBright = ToIntTruncated(rEntry.data[0]);
    pPredictive->ADRCWeight              = rEntry.data[1];
    AEC_LOG_INFO("found predictive parameter extension %d %d %f", pPredictive->enable,
                 pPredictive->enableCombineDarkBright, pPredictive->ADRCWeight);
}

VOID LoadDepthAEC(const ExtensionEntry& rEntry, ParamExtDepthAEC* pDepth)
{
    pDepth->enable                       = rEntry.enableFlag;
    pDepth->LumaDiffThres                = rEntry.data[0];
    pDepth->DecisionMapValidGridCntThres = rEntry.data[1];
    pDepth->ConsecInvalidFrameCntThres   = ToIntTruncated(rEntry.data[2]);
    pDepth->InitValidFrameCntThres       = ToIntTruncated(rEntry.data[3]);
    pDepth->SelectMapValidGridCntThres   = rEntry.data[4];
    pDepth->DisplayDebugMsg              = ToIntTruncated(rEntry.data[5]);
    AEC_LOG_INFO("found depth AEC parameter extension %d %f %f %d %d %f %d", pDepth->enable, pDepth->LumaDiffThres,
                 pDepth->DecisionMapValidGridCntThres, pDepth->ConsecInvalidFrameCntThres,
                 pDepth->InitValidFrameCntThres, pDepth->SelectMapValidGridCntThres, pDepth->DisplayDebugMsg);
}

VOID LoadADRCSat(const ExtensionEntry& rEntry, ParamExtADRCSatCtrl* pSaturation)
{
    pSaturation->enableADRCSatCtrl       = rEntry.enableFlag;
    pSaturation->enablePredictiveSatCtrl = ToIntTruncated(rEntry.data[0]);
    AEC_LOG_INFO("found ADRC saturation parameter extension %d %d", pSaturation->enableADRCSatCtrl,
                 pSaturation->enablePredictiveSatCtrl);
}

// Zones of one key level from their start, end pairs.
VOID LoadGyroZones(const FLOAT* pData, ParamExtGyroExpCtrlTriggerZoneType* pZones)
{
    for (UINT32 zone = 0; zone < GyroExpCtrlMaxTriggerZones; zone++)
    {
        pZones[zone].start = pData[2 * zone];
        pZones[zone].end   = pData[2 * zone + 1];
    }
}

VOID LoadGyroAEC(const ExtensionEntry& rEntry, ParamExtGyroExpCtrl* pGyro)
{
    pGyro->enableGyroExpCtrl         = rEntry.enableFlag;
    pGyro->movingAvgFilterLength     = ToIntTruncated(rEntry.data[0]);
    pGyro->keyLevel2ZoneType         = static_cast<GyroExpCtrlKeyLevel2ZoneType>(ToIntTruncated(rEntry.data[1]));
    pGyro->triggerDataType           = static_cast<GyroExpCtrlTriggerDataType>(ToIntTruncated(rEntry.data[2]));
    pGyro->numOfKeyLevel1TriggerZone = ToIntTruncated(rEntry.data[3]);
    pGyro->numOfKeyLevel2TriggerZone = ToIntTruncated(rEntry.data[4]);
    LoadGyroZones(&rEntry.data[GyroZonesOffset], pGyro->keyLevel1TriggerZone);
    LoadGyroZones(&rEntry.data[GyroZonesOffset + 2 * GyroExpCtrlMaxTriggerZones], pGyro->keyLevel2TriggerZone);

    const INT rows    = pGyro->numOfKeyLevel1TriggerZone;
    const INT columns = pGyro->numOfKeyLevel2TriggerZone;
    const INT maxZone = static_cast<INT>(GyroExpCtrlMaxTriggerZones);
    if ((rows < 1) || (rows > maxZone) || (columns < 1) || (columns > maxZone))
    {
        AEC_LOG_WARN("Not valid numOfKeyLevel1TriggerZone %d or numOfKeyLevel2TriggerZone %d", rows, columns);
    }
    else
    {
        // Packed: row after row of the used columns only.
        const FLOAT* pPacked = &rEntry.data[GyroTriggerDataOffset];
        for (INT row = 0; row < rows; row++)
        {
            for (INT column = 0; column < columns; column++)
            {
                pGyro->triggerData[row][column] = pPacked[row * columns + column];
            }
        }
    }
    AEC_LOG_INFO("Gyro AEC extensions parameters are loaded");
}

VOID LoadHistExt(const ExtensionEntry& rEntry, ParamExtHistogramCtrl* pHistogram)
{
    pHistogram->enableHist       = rEntry.enableFlag;
    pHistogram->maxDarkBoostGain = rEntry.data[0];
    pHistogram->maxDRCGain       = rEntry.data[1];
    pHistogram->maxADRCGainFace  = rEntry.data[2];
    pHistogram->useLegacyTargets = ToIntTruncated(rEntry.data[3]);
    AEC_LOG_INFO("Histogram parameter extension: enable %d maxDarkBoostGain %f maxADRCGainFace %f maxDRCGain %f "
                 "useLegacyTargets %d",
                 pHistogram->enableHist, pHistogram->maxDarkBoostGain, pHistogram->maxADRCGainFace,
                 pHistogram->maxDRCGain, pHistogram->useLegacyTargets);
}

VOID LoadInsensorHDR(const ExtensionEntry& rEntry, ParamExtInsensorHDRCtrl* pInsensorHDR)
{
    pInsensorHDR->enableInsensorHDR = rEntry.enableFlag;
    pInsensorHDR->compenADRCGain    = rEntry.data[0];
    pInsensorHDR->DRCGainThresh     = rEntry.data[1];
    AEC_LOG_INFO("Insensor HDR snapshot parameter extension: enable %d Exp Time factor %f",
                 pInsensorHDR->enableInsensorHDR, pInsensorHDR->compenADRCGain);
}

VOID LoadLLS(const ExtensionEntry& rEntry, ParamExtLLS* pLLS)
{
    pLLS->enable          = rEntry.enableFlag;
    pLLS->bLLSEnableADRC  = ToIntTruncated(rEntry.data[0]);
    pLLS->bEnableLLSMaxSI = ToIntTruncated(rEntry.data[1]);
    AEC_LOG_INFO("LLS parameter extension: enable %d bLLSEnableADRC %d bEnableLLSMaxSI %d", pLLS->enable,
                 pLLS->bLLSEnableADRC, pLLS->bEnableLLSMaxSI);
}

// Takes one entry into its record when its name (and ID) is recognised and its data count fits.
VOID ParseEntry(const ExtensionEntry& rEntry, UINT32 index, CoreModuleTuningData* pData)
{
    if (TRUE == IsEntry(rEntry, ParamExtIDPreditive, "Predictive"))
    {
        if (TRUE == HasDataCount(rEntry, index, PredictiveDataCount,
                                 "not loading predictive extension: index %d ID %d name is %s data count %d"))
        {
            LoadPredictive(rEntry, &pData->convTuningData.extPredictive);
        }
    }
    else if (TRUE == IsEntry(rEntry, ParamExtIDDepthAEC, "Depth AEC"))
    {
        if (TRUE == HasDataCount(rEntry, index, DepthAECDataCount,
                                 "not loading depth AEC extension: index %d ID %d name is %s data count %d"))
        {
            LoadDepthAEC(rEntry, &pData->mtrTuningData.extDepthAEC);
        }
    }
    else if (TRUE == IsEntry(rEntry, ParamExtIDADRCSatCtrl, "ADRCSat"))
    {
        if (TRUE == HasDataCount(rEntry, index, ADRCSatDataCount,
                                 "not loading ADRC Saturation AEC extension: index %d ID %d name is %s data count %d"))
        {
            LoadADRCSat(rEntry, &pData->mtrTuningData.ADRCSaturation);
        }
    }
    else if (TRUE == IsEntry(rEntry, ParamExtIDGyroExpCtrl, "GyroAEC"))
    {
        if (TRUE == HasDataCount(rEntry, index, GyroAECDataCount,
                                 " not loading Gyro AEC extension: index %d ID %d name is %s data count %d"))
        {
            LoadGyroAEC(rEntry, &pData->arbTuningData.extGyroExpCtrl);
        }
    }
    else if (TRUE == IsEntry(rEntry, ParamExtIDHistCtrl, "HistExt"))
    {
        if (TRUE == HasDataCount(rEntry, index, HistExtDataCount,
                                 "not valid Histogram extension: index %d ID %d name is %s data count %d"))
        {
            LoadHistExt(rEntry, &pData->mtrTuningData.extHistogram);
        }
    }
    else if (TRUE == IsEntry(rEntry, ParamExtIDInsensorHDRCtrl, "InsensorHDRExt"))
    {
        if (TRUE == HasDataCount(rEntry, index, InsensorHDRDataCount,
                                 "not valid Insensor HDR snapshot extension: index %d ID %d name is %s data count %d"))
        {
            LoadInsensorHDR(rEntry, &pData->mtrTuningData.extInsensorHDR);
        }
    }
    else if (TRUE == IsEntry(rEntry, -1, "LLS"))
    {
        if (TRUE == HasDataCount(rEntry, index, LLSDataCount,
                                 "not valid LLS extension: index %d ID %d name is %s data count %d"))
        {
            LoadLLS(rEntry, &pData->arbTuningData.paramExtLLS);
        }
    }
}

} // namespace

VOID CTuningDataAdapter::ParseParamExtension(const aecParamExtension::ParamExtensionType* pParamExt,
                                             CoreModuleTuningData*                        pCoreTuningData)
{
    if (nullptr == pCoreTuningData)
    {
        return;
    }
    MeteringTuningDataType& rMtr       = pCoreTuningData->mtrTuningData;
    rMtr.extDepthAEC                   = ParamExtDepthAEC{};
    rMtr.ADRCSaturation                = ParamExtADRCSatCtrl{};
    rMtr.extHistogram                  = ParamExtHistogramCtrl{};
    rMtr.extHistogram.maxDarkBoostGain = 1.5F;
    rMtr.extHistogram.maxDRCGain       = 16.0F;
    rMtr.extHistogram.maxADRCGainFace  = 6.0F;
    rMtr.extInsensorHDR                = ParamExtInsensorHDRCtrl{};
    rMtr.extInsensorHDR.compenADRCGain = 1.0F;
    rMtr.extInsensorHDR.DRCGainThresh  = 8.0F;
    pCoreTuningData->convTuningData.extPredictive = ParamExtPredictive{};
    pCoreTuningData->arbTuningData.extGyroExpCtrl = ParamExtGyroExpCtrl{};
    pCoreTuningData->arbTuningData.paramExtLLS    = ParamExtLLS{};

    if (nullptr == pParamExt)
    {
        return;
    }
    if ((0 != pParamExt->extensionParamCount) && (nullptr == pParamExt->extensionParam))
    {
        AEC_LOG_ERROR("Parameter extension list of %u entries has no entries: none loaded",
                      pParamExt->extensionParamCount);
        return;
    }
    for (UINT32 index = 0; index < pParamExt->extensionParamCount; index++)
    {
        const ExtensionEntry& rEntry = pParamExt->extensionParam[index];
        // Without a name the entry cannot be recognised, and without data its values cannot be read.
        if ((nullptr == rEntry.Name) || ((0 != rEntry.dataCount) && (nullptr == rEntry.data)))
        {
            AEC_LOG_ERROR("Parameter extension %u (ID %d) skipped: name %p, %u values at %p", index, rEntry.ID,
                          rEntry.Name, rEntry.dataCount, rEntry.data);
            continue;
        }
        ParseEntry(rEntry, index, pCoreTuningData);
    }
}
