// List of up to 16 host regions of interest (faces) with normalisation to the image or the crop window.
#include "platform/roisdata.h"

#include <algorithm>
#include <cstring>

namespace
{

FLOAT Clamp01(FLOAT value)
{
    return std::min(std::max(value, 0.0F), 1.0F);
}

} // namespace

UINT32 ROIsData::Size() const
{
    return std::min(m_ROIInfo.roiCount, MaxROICount);
}

AECAlgoROI ROIsData::Normalize(const StatsRectangle& rect, FLOAT left, FLOAT top, FLOAT width, FLOAT height,
                               UINT32 weight) const
{
    AECAlgoROI roi = {};
    if ((width <= 0.0F) || (height <= 0.0F))
    {
        return roi;
    }
    FLOAT x0 = Clamp01((static_cast<FLOAT>(rect.left) - left) / width);
    FLOAT y0 = Clamp01((static_cast<FLOAT>(rect.top) - top) / height);
    FLOAT x1 = Clamp01((static_cast<FLOAT>(rect.left) + static_cast<FLOAT>(rect.width) - left) / width);
    FLOAT y1 = Clamp01((static_cast<FLOAT>(rect.top) + static_cast<FLOAT>(rect.height) - top) / height);
    roi.x      = x0;
    roi.y      = y0;
    roi.dx     = x1 - x0;
    roi.dy     = y1 - y0;
    roi.weight = static_cast<FLOAT>(weight);
    return roi;
}

AECAlgoROI ROIsData::GetNormalizeROI(UINT32 index) const
{
    if (index >= Size())
    {
        return AECAlgoROI{};
    }
    const StatsROIData& data = m_ROIInfo.roi[index];
    return Normalize(data.rect, 0.0F, 0.0F, static_cast<FLOAT>(m_imageWidth), static_cast<FLOAT>(m_imageHeight),
                     data.weight);
}

AECAlgoROI ROIsData::GetNormalizeROIInCrop(UINT32 index) const
{
    if ((0 == m_cropWindow.width) || (0 == m_cropWindow.height))
    {
        return GetNormalizeROI(index);
    }
    if (index >= Size())
    {
        return AECAlgoROI{};
    }
    const StatsROIData& data = m_ROIInfo.roi[index];
    return Normalize(data.rect, static_cast<FLOAT>(m_cropWindow.left), static_cast<FLOAT>(m_cropWindow.top),
                     static_cast<FLOAT>(m_cropWindow.width), static_cast<FLOAT>(m_cropWindow.height), data.weight);
}

VOID ROIsData::SetImageResolution(UINT32 width, UINT32 height)
{
    m_imageWidth  = width;
    m_imageHeight = height;
}

VOID ROIsData::SetCropWindow(const StatsRectangle* pCropWindow)
{
    m_cropWindow = (nullptr != pCropWindow) ? *pCropWindow : StatsRectangle{};
}

VOID ROIsData::SetLogFunction(StatsLoggingFunction pLogFunction)
{
    m_pLogFunction = pLogFunction;
}

VOID ROIsData::UpdateROIData(const UnstabilizedROIInformation* pROIInfo)
{
    if (nullptr == pROIInfo)
    {
        Clear();
        return;
    }
    m_ROIInfo = *pROIInfo;
    if (m_ROIInfo.roiCount > MaxROICount)
    {
        if (nullptr != m_pLogFunction)
        {
            m_pLogFunction(__FILE__, __LINE__, __func__, StatsLogGroupAEC, StatsLogWarning,
                           "ROI count %u exceeds %u, extra ROIs dropped", m_ROIInfo.roiCount, MaxROICount);
        }
        m_ROIInfo.roiCount = MaxROICount;
    }
}

VOID ROIsData::Clear()
{
    std::memset(&m_ROIInfo, 0, sizeof(m_ROIInfo));
}
