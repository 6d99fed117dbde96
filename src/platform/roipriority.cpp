// Region list that ranks its regions by score and tracks the dominant one across updates.
#include "platform/roipriority.h"

#include <cmath>
#include <cstring>

VOID ROIPriority::SetTuningData(const ROIPriorityTuning* pTuning)
{
    m_hasTuning = (nullptr != pTuning) ? TRUE : FALSE;
    m_tuning    = (nullptr != pTuning) ? *pTuning : ROIPriorityTuning{};
}

FLOAT ROIPriority::ComputeScore(UINT32 index) const
{
    // Sizes are shares of the image, so tuning does not depend on the sensor resolution.
    AECAlgoROI roi  = GetNormalizeROI(index);
    FLOAT      size = roi.dx * roi.dy;
    if (FALSE == m_hasTuning)
    {
        return size;
    }
    FLOAT centerX   = roi.x + (roi.dx * 0.5F);
    FLOAT centerY   = roi.y + (roi.dy * 0.5F);
    FLOAT distance  = std::sqrt(((centerX - 0.5F) * (centerX - 0.5F)) + ((centerY - 0.5F) * (centerY - 0.5F)));
    FLOAT closeness = 1.0F - std::fmin(distance / 0.70710678F, 1.0F);
    return (m_tuning.sizeWeight * size) + (m_tuning.centerWeight * closeness);
}

VOID ROIPriority::UpdateROIData(const UnstabilizedROIInformation* pROIInfo)
{
    UINT32 previousID = m_dominantID;
    ROIsData::UpdateROIData(pROIInfo);

    m_dominantIndex = -1;
    m_dominantID    = InvalidID;
    FLOAT bestScore = -1.0F;
    std::memset(m_scores, 0, sizeof(m_scores));
    for (UINT32 i = 0; i < Size(); i++)
    {
        m_scores[i] = ComputeScore(i);
        if (m_scores[i] > bestScore)
        {
            bestScore       = m_scores[i];
            m_dominantIndex = static_cast<INT32>(i);
            m_dominantID    = m_ROIInfo.roi[i].roiID;
        }
    }
    m_dominantIDChanged = (previousID != m_dominantID) ? TRUE : FALSE;
}

FLOAT ROIPriority::GetScore(UINT32 index) const
{
    return (index < Size()) ? m_scores[index] : 0.0F;
}

INT32 ROIPriority::GetDominantIndex() const
{
    return (Size() > 0) ? m_dominantIndex : -1;
}

UINT32 ROIPriority::GetDominantID() const
{
    return (Size() > 0) ? m_dominantID : InvalidID;
}

BOOL ROIPriority::IsDominantIDChange() const
{
    return m_dominantIDChanged;
}

VOID ROIPriority::Clear()
{
    ROIsData::Clear();
    std::memset(m_scores, 0, sizeof(m_scores));
    m_dominantIndex     = -1;
    m_dominantIDChanged = FALSE;
    m_dominantID        = InvalidID;
}
