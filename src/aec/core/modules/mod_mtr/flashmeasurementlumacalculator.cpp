// Central-window luma and colour ratios for the LED measurement sequence.
#include "aec/core/modules/mod_mtr/flashmeasurementlumacalculator.h"

#include "aec/core/modules/mod_mtr/cstatsprocessor.h"
#include "platform/statslogger.h"

FlashMeasurementLumaCalculator::FlashMeasurementLumaCalculator(CStatsProcessor* pStatsProc)
    : IAECLumaCalculator(pStatsProc)
{
}

VOID FlashMeasurementLumaCalculator::Initialize()
{
    // Nothing is kept from frame to frame.
}

AecResult FlashMeasurementLumaCalculator::calculateLuma(const AECLumaCalcInput* pInput, AECLumaCalcResult* pResult)
{
    // An eighth of the frame on each axis, centred; the far corner is pulled in so the window never takes the
    // next region row or column.
    constexpr FLOAT FlashMeasHFraction        = 0.125f;
    constexpr FLOAT FlashMeasVFraction        = 0.125f;
    constexpr FLOAT RoundDown                 = 0.01f;
    constexpr FLOAT FlashMeasSatPctThres      = 0.05f;
    constexpr FLOAT FlashMeasSatDarkLumaThres = 20.0f;
    constexpr FLOAT hOff                      = (1.0f - FlashMeasHFraction) / 2.0f;
    constexpr FLOAT vOff                      = (1.0f - FlashMeasVFraction) / 2.0f;
    constexpr FLOAT hEnd                      = hOff + FlashMeasHFraction - RoundDown;
    constexpr FLOAT vEnd                      = vOff + FlashMeasVFraction - RoundDown;

    (VOID) pInput;
    if ((nullptr == pResult) || (nullptr == m_pStatsProc))
    {
        AEC_LOG_ERROR("flashMeas: missing result or statistics");
        return AecError;
    }
    m_pStatsProc->ReprocessBGStats(BGStatsIterationMode::Exhaustive, hOff, vOff, hEnd, vEnd);
    BGStatsIterator it =
        m_pStatsProc->GetStatsProcessingResult()->GetBGStatsIterator(BGStatsIterationMode::Exhaustive, hOff, vOff,
                                                                     hEnd, vEnd);

    FLOAT lumaAcc      = 0.0f;
    INT32 lumaCounter  = 0;
    FLOAT RGAcc        = 0.0f;
    FLOAT BGAcc        = 0.0f;
    INT32 counter      = 0;
    BOOL  bIsFlashMeasDark = TRUE;
    while (FALSE != it.HasNext())
    {
        const ParsedBGRegionType* pRgn = it.Next();
        if (nullptr == pRgn)
        {
            break;
        }
        lumaAcc += pRgn->rgnLuma;
        lumaCounter++;
        if (pRgn->rgnSatRatio > FlashMeasSatPctThres)
        {
            AEC_LOG_VERBOSE("flashmeas: exposure too bright for this tile, sat ratio: %f thres: %f",
                            pRgn->rgnSatRatio, FlashMeasSatPctThres);
            bIsFlashMeasDark = FALSE;
        }
        else if (pRgn->rgnLuma < FlashMeasSatDarkLumaThres)
        {
            AEC_LOG_VERBOSE("flashmeas: exposure too dark for this tile, tile luma: %f, thres: %f", pRgn->rgnLuma,
                            FlashMeasSatDarkLumaThres);
        }
        else
        {
            RGAcc += pRgn->RGRatio;
            BGAcc += pRgn->BGRatio;
            counter++;
            bIsFlashMeasDark = FALSE;
        }
    }
    pResult->bIsFlashMeasDark = bIsFlashMeasDark;

    if (0 != counter)
    {
        pResult->RGRatio = RGAcc / static_cast<FLOAT>(counter);
        pResult->BGRatio = BGAcc / static_cast<FLOAT>(counter);
        AEC_LOG_INFO("flashMeas: rg %f bg %f counter: %d", pResult->RGRatio, pResult->BGRatio, counter);
    }
    else
    {
        pResult->RGRatio = -1.0f;
        pResult->BGRatio = -1.0f;
        AEC_LOG_INFO("flashMeas: no region was properly exposed to make a measurement!");
    }

    if (0 != lumaCounter)
    {
        pResult->averageLumaFlashMeas = lumaAcc / static_cast<FLOAT>(lumaCounter);
        AEC_LOG_INFO("flashMeas: average central luma: %f", pResult->averageLumaFlashMeas);
    }
    else
    {
        pResult->averageLumaFlashMeas = 0.0f;
        AEC_LOG_INFO("flashMeas: luma counter is zero: issue with ROI size");
    }
    return AecSuccess;
}
