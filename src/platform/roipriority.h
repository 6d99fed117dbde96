// Region list that ranks its regions by score and tracks the dominant one across updates.
#ifndef AECORE_PLATFORM_ROIPRIORITY_H
#define AECORE_PLATFORM_ROIPRIORITY_H

#include "platform/roisdata.h"

// Ranking knobs of the ROI priority; a null tuning means plain size ranking.
struct ROIPriorityTuning
{
    FLOAT sizeWeight;     // weight of the region's share of the image in its score
    FLOAT centerWeight;   // weight of closeness to the image centre in its score
};

class ROIPriority : public ROIsData
{
public:
    static constexpr UINT32 InvalidID = 0xFFFFFFFF;

    VOID SetTuningData(const ROIPriorityTuning* pTuning);

    // Takes over the list, scores every region and selects the dominant one.
    VOID UpdateROIData(const UnstabilizedROIInformation* pROIInfo);

    // Score of region i: its size as a share of the image, blended with centre closeness when tuned;
    // 0 beyond Size() or before the image resolution is known.
    FLOAT  GetScore(UINT32 index) const;
    // Index of the highest score, or -1 without regions.
    INT32  GetDominantIndex() const;
    // ID of the dominant region, or InvalidID without regions.
    UINT32 GetDominantID() const;
    // TRUE when the last update changed the dominant region's ID.
    BOOL   IsDominantIDChange() const;

    VOID Clear();

private:
    FLOAT ComputeScore(UINT32 index) const;

    ROIPriorityTuning m_tuning;
    BOOL              m_hasTuning;
    FLOAT             m_scores[MaxROICount];
    INT32             m_dominantIndex;
    UINT32            m_dominantID;
    BOOL              m_dominantIDChanged;
};

#endif // AECORE_PLATFORM_ROIPRIORITY_H
