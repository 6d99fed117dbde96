// List of up to 16 host regions of interest (faces) with normalisation to the image or the crop window.
#ifndef AECORE_PLATFORM_ROISDATA_H
#define AECORE_PLATFORM_ROISDATA_H

#include "aecore/aecore.h"

// Regions arrive in the pixel coordinates of the image resolution; the crop window uses the same
// coordinates. The record is plain data, so state that embeds it may be zeroed and copied freely.
class ROIsData
{
public:
    static constexpr UINT32 MaxROICount = AECORE_MAX_FACE_ROIS;

    UINT32 Size() const;

    // Region i as fractions of the image resolution, clamped to [0, 1]; index beyond Size() gives a zero ROI.
    AECAlgoROI GetNormalizeROI(UINT32 index) const;

    // Region i as fractions of the crop window, clipped to it; without a crop window, as GetNormalizeROI.
    AECAlgoROI GetNormalizeROIInCrop(UINT32 index) const;

    VOID SetImageResolution(UINT32 width, UINT32 height);
    VOID SetCropWindow(const StatsRectangle* pCropWindow);
    VOID SetLogFunction(StatsLoggingFunction pLogFunction);

    // Takes over the host's list; more than MaxROICount entries keep the first MaxROICount and warn.
    VOID UpdateROIData(const UnstabilizedROIInformation* pROIInfo);

    // Forgets the regions; resolution, crop window and log function stay.
    VOID Clear();

protected:
    AECAlgoROI Normalize(const StatsRectangle& rect, FLOAT left, FLOAT top, FLOAT width, FLOAT height,
                         UINT32 weight) const;

    UnstabilizedROIInformation m_ROIInfo;
    UINT32                     m_imageWidth;
    UINT32                     m_imageHeight;
    StatsRectangle             m_cropWindow;
    StatsLoggingFunction       m_pLogFunction;
};

#endif // AECORE_PLATFORM_ROISDATA_H
