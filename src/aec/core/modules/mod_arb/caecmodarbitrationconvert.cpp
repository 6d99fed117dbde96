// Arbitration module conversions: ISO and gain, exposure time and frame rate, sensitivity and index, Exif values.
#include <cmath>
#include <limits>

#include "aec/core/modules/mod_arb/caecmodarbitration.h"
#include "aec/core/modules/mod_arb/exptablemath.h"
#include "platform/statslogger.h"

namespace
{
// log2 from log10: APEX values are base-2 logarithms.
constexpr DOUBLE Log2PerLog10 = 3.321928024291992;

// Core arbitration tuning, null before the tuning header arrives.
const aecArbitration::AECCoreArbitrationType* CoreTuningOf(const ArbitrationTuningDataType* pTuning)
{
    return (nullptr != pTuning) ? pTuning->pCore : nullptr;
}

// Float to ISO: a value that is not a number or negative becomes 0, one beyond the UINT32 range saturates, so a
// degenerate gain never reaches an undefined float-to-integer conversion.
UINT32 ToISO(FLOAT value)
{
    if (!(value > 0.0F))
    {
        return 0U;
    }
    if (value >= static_cast<FLOAT>(std::numeric_limits<UINT32>::max()))
    {
        return std::numeric_limits<UINT32>::max();
    }
    return static_cast<UINT32>(value);
}

// Reported ISO on the tuned quantisation grid: the quantised value of the first threshold above iso.
UINT32 QuantizeISO(UINT32 iso, const aecArbitration::ISODataType& rISO)
{
    const UINT32 thresCount = rISO.thresQuantizationISOValueCount;
    const UINT32 quantCount = rISO.quantizedISOValueCount;
    if ((0U == thresCount) || (0U == quantCount) || (nullptr == rISO.thresQuantizationISOValue) ||
        (nullptr == rISO.quantizedISOValue))
    {
        AEC_LOG_WARN("ISO quantization without thresholds (%u) or values (%u), iso %u kept", thresCount, quantCount,
                     iso);
        return iso;
    }
    if (iso > rISO.thresQuantizationISOValue[thresCount - 1U])
    {
        return rISO.quantizedISOValue[quantCount - 1U];
    }
    for (UINT32 i = 0U; i < thresCount; i++)
    {
        if (rISO.thresQuantizationISOValue[i] > iso)
        {
            return rISO.quantizedISOValue[(i < quantCount) ? i : (quantCount - 1U)];
        }
    }
    return iso;
}
} // namespace

FLOAT CAECModArbitration::QueryISO2Gain(UINT32 ISOValue, BOOL isStill)
{
    if (nullptr == CoreTuningOf(m_pTuning))
    {
        return static_cast<FLOAT>(ISOValue) / 100.0F;
    }
    return UtilISO2Gain(ISOValue, (TRUE == isStill) ? m_tableIDStill : m_tableIDStreaming);
}

FLOAT CAECModArbitration::QueryExpTime2FPS(UINT64 exposureTime)
{
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
    const UINT64 blanking   = (nullptr != pCore) ? pCore->minPreviewVertBlankTime : 0U;
    const UINT64 frameTime  = exposureTime + blanking;
    const FLOAT  maxFPS     = m_aecContext->getMaxFPS();
    if (0U == frameTime)
    {
        // A zero frame time has no rate of its own; the configured top rate is what the sensor would run at.
        AEC_LOG_WARN("exposure time 0 without blanking, frame rate taken as max fps %f", maxFPS);
        return maxFPS;
    }
    const FLOAT FPS = static_cast<FLOAT>(1.0e9 / static_cast<DOUBLE>(static_cast<FLOAT>(frameTime)));
    return (FPS < maxFPS) ? FPS : maxFPS;
}

AecResult CAECModArbitration::QuerySensitivity2ExpIndex(const FLOAT*             pSensitivities,
                                                        AECAlgoOperationModeType mode,
                                                        FLOAT*                   pExpIndices)
{
    if ((nullptr == pSensitivities) || (nullptr == pExpIndices))
    {
        AEC_LOG_ERROR("Error: Argument Null");
        return AecError;
    }

    aecglobalelements::ExposureTableIDType tableID = 0;
    const aecArbitration::ExposureTableType* pTable = nullptr;
    if (nullptr != CoreTuningOf(m_pTuning))
    {
        tableID = UtilGetExpTableID(mode, nullptr);
        pTable  = m_aecContext->getExposureTableFromTableID(tableID);
    }
    if ((nullptr == pTable) || (0U == pTable->expKneeEntriesCount) || (nullptr == pTable->expKneeEntries))
    {
        AEC_LOG_ERROR("Look up Fail. Invalid Tuning");
        return AecError;
    }

    const aecArbitration::ExposureKneeType& rKnee0 = pTable->expKneeEntries[0];
    const FLOAT scale = pTable->sensitivityCorrectionFactor * rKnee0.gain * static_cast<FLOAT>(rKnee0.expTime);
    if (!(scale > 0.0F))
    {
        // The first knee anchors the index scale; without a positive sensitivity there is no index to give.
        AEC_LOG_ERROR("table %d has no sensitivity scale: correction %f gain %f time %llu", tableID,
                      pTable->sensitivityCorrectionFactor, rKnee0.gain,
                      static_cast<unsigned long long>(rKnee0.expTime));
        return AecError;
    }
    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        if (!(pSensitivities[i] > 0.0F))
        {
            AEC_LOG_ERROR("sensitivity %u is %f, no exposure index for it", i, pSensitivities[i]);
            return AecError;
        }
    }

    for (UINT32 i = 0U; i < AECAlgoExposureCount; i++)
    {
        const FLOAT ratio = pSensitivities[i] / scale;
        pExpIndices[i]    = static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(ratio)) * ExpIndexPerDecade) +
                         rKnee0.expIndex;
    }
    return AecSuccess;
}

UINT32 CAECModArbitration::UtilGain2ISO(FLOAT                                  gain,
                                        aecglobalelements::ExposureTableIDType tableA,
                                        aecglobalelements::ExposureTableIDType tableB)
{
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
    FLOAT ref   = 1.0F;
    FLOAT ratio = 1.0F;
    if (nullptr == pCore)
    {
        AEC_LOG_WARN("Converting Gain to ISO without tuning, iso = gain * 100");
    }
    else
    {
        ref = pCore->ISOData.previewISO100Gain;
        if (tableA != tableB)
        {
            const FLOAT sensA = SensitivityCorrectionOf(tableA);
            if (sensA > 0.0F)
            {
                ratio = SensitivityCorrectionOf(tableB) / sensA;
            }
            else
            {
                AEC_LOG_ERROR("table %d has sensitivity correction %f, ISO stated without table ratio", tableA,
                              sensA);
            }
        }
    }

    const FLOAT scale = ratio * ref;
    if (!(scale > 0.0F))
    {
        AEC_LOG_ERROR("ISO scale %f (ratio %f, ISO 100 gain %f) is not positive, ISO 0", scale, ratio, ref);
        return 0U;
    }

    const UINT32 iso = ToISO(gain * 100.0F / scale);
    if ((nullptr != pCore) && (TRUE == pCore->ISOData.enableISOQuantization))
    {
        return QuantizeISO(iso, pCore->ISOData);
    }
    return iso;
}

FLOAT CAECModArbitration::UtilISO2Gain(UINT32 ISOValue, aecglobalelements::ExposureTableIDType table)
{
    FLOAT ratio = 1.0F;
    if (0 != table)
    {
        const FLOAT sens0 = SensitivityCorrectionOf(0);
        if (sens0 > 0.0F)
        {
            ratio = SensitivityCorrectionOf(table) / sens0;
        }
        else
        {
            AEC_LOG_ERROR("table 0 has sensitivity correction %f, gain of ISO %u without table ratio", sens0,
                          ISOValue);
        }
    }
    const aecArbitration::AECCoreArbitrationType* pCore = CoreTuningOf(m_pTuning);
    const FLOAT ref  = (nullptr != pCore) ? pCore->ISOData.previewISO100Gain : 1.0F;
    const FLOAT gain = ratio * ref * static_cast<FLOAT>(ISOValue) / 100.0F;
    return (gain > 1.0F) ? gain : 1.0F;
}

VOID CAECModArbitration::CalculateExifInfo(AECExifInfo*                           pExif,
                                           const AECAlgoExposureData*             pExpSets,
                                           aecglobalelements::ExposureTableIDType refTable,
                                           aecglobalelements::ExposureTableIDType stillTable,
                                           FLOAT                                  EV)
{
    if ((nullptr == pExif) || (nullptr == pExpSets))
    {
        AEC_LOG_ERROR("Exif without output %p or exposure sets %p", static_cast<VOID*>(pExif),
                      static_cast<const VOID*>(pExpSets));
        return;
    }
    const AECAlgoExposureData& rShort = pExpSets[AECAlgoExposureShort];
    const AECAlgoExposureData& rSafe  = pExpSets[AECAlgoExposureSafe];

    // The short gain carried up to the safe sensitivity: the ISO of the exposure the picture is metered for.
    FLOAT gain = rShort.linearGain;
    if (rShort.sensitivity > 0.0F)
    {
        gain = rShort.linearGain * rSafe.sensitivity / rShort.sensitivity;
    }
    else
    {
        AEC_LOG_ERROR("short sensitivity %f, Exif ISO from the short gain alone", rShort.sensitivity);
    }
    pExif->ISOValue = UtilGain2ISO(gain, refTable, stillTable);

    AECAlgoAPEXData& rAPEX = pExif->APEXValues;

    const AECAlgoSensorInfo* pSensorInfo = m_aecContext->getSensorInfo();
    const FLOAT              fNumber     = (nullptr != pSensorInfo) ? pSensorInfo->fNumber : 0.0F;
    if (fNumber > 0.0F)
    {
        rAPEX.apertureValue =
            static_cast<FLOAT>(std::log10(static_cast<DOUBLE>(fNumber * fNumber)) * Log2PerLog10);
    }
    else
    {
        AEC_LOG_ERROR("sensor f-number %f, Exif aperture value 0", fNumber);
        rAPEX.apertureValue = 0.0F;
    }

    if (0U != pExif->ISOValue)
    {
        rAPEX.speedValue = static_cast<FLOAT>(
            std::log10(static_cast<DOUBLE>(static_cast<FLOAT>(pExif->ISOValue)) * 0.3) * Log2PerLog10);
    }
    else
    {
        AEC_LOG_ERROR("ISO 0, Exif speed value 0");
        rAPEX.speedValue = 0.0F;
    }

    rAPEX.timeValue = 0.0F;
    if (0U != rShort.exposureTime)
    {
        rAPEX.timeValue = static_cast<FLOAT>(
            std::log10(1.0e9 / static_cast<DOUBLE>(static_cast<FLOAT>(rShort.exposureTime))) * Log2PerLog10);
    }

    rAPEX.exposureValue   = EV;
    rAPEX.brightnessValue = rAPEX.apertureValue - rAPEX.speedValue + rAPEX.timeValue - rSafe.deltaEVFromTarget;
}

FLOAT CAECModArbitration::SensitivityCorrectionOf(aecglobalelements::ExposureTableIDType table)
{
    const aecArbitration::ExposureTableType* pTable = m_aecContext->getExposureTableFromTableID(table);
    return (nullptr != pTable) ? pTable->sensitivityCorrectionFactor : 0.0F;
}
