// Translation of the host's per-frame input list into the core's AECCoreInput.
#ifndef AEC_WRAPPER_CAECPROCESSINPUTTRANSLATOR_H
#define AEC_WRAPPER_CAECPROCESSINPUTTRANSLATOR_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/wrapper/caecinterfacetranslator.h"

class CAECProcessInputTranslator : public CAECInterfaceTranslator
{
public:
    CAECProcessInputTranslator();
    ~CAECProcessInputTranslator() = default;

    // Zeroes the owned record and fills it from the list, so nothing survives from the previous frame.
    // Null when an entry is short or missing its data, or when a reference entry comes before any data entry.
    AECCoreInput* translate(const AECAlgoInputList* pInputList);

private:
    // Applies one entry; copiedSize is the size of the last entry that copied anything. FALSE fails the frame.
    BOOL translateEntry(const AECAlgoInput* pEntry, SIZE_T* pCopiedSize);

    AECCoreInput m_InputParam;
};

#endif // AEC_WRAPPER_CAECPROCESSINPUTTRANSLATOR_H
