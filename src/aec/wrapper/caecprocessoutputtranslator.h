// Translation of the core's AECCoreOutput into the host's per-frame output list, with the lens motor command queue.
#ifndef AEC_WRAPPER_CAECPROCESSOUTPUTTRANSLATOR_H
#define AEC_WRAPPER_CAECPROCESSOUTPUTTRANSLATOR_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccorecommon.h"
#include "aec/wrapper/caecinterfacetranslator.h"

class CAECProcessOutputTranslator : public CAECInterfaceTranslator
{
public:
    CAECProcessOutputTranslator();
    ~CAECProcessOutputTranslator();

    // Writes the owned record into the host's entries in list order. Null when an entry cannot take its record;
    // the entries before it stay written. The owned record is never zeroed after construction, so a frame the
    // core skipped hands over the previous frame's data.
    AECCoreOutput* translate(AECAlgoOutputList* pOutputList);

    // Hands the command queue to the host entry by pointer after replacing last frame's commands with this
    // frame's. Returns the larger of the entry's size and the queued payload bytes; 0 without a queue.
    UINT32 copyLDMQueue(AECAlgoOutput* pEntry);

private:
    // Writes one output entry; FALSE when the entry cannot take its record.
    BOOL writeOutput(AECAlgoOutput* pEntry);

    // Frees the payloads of all slots and marks them empty.
    VOID releaseCommands();

    // Appends a malloc copy of one command payload to the queue.
    VOID queueCommand(const VOID* pData, UINT32 sizeOfData, LDMSetStepMotorConfigType dataType);

    AECCoreOutput        m_OutputParam;
    LDMSetMotorInfoList* m_pLDMCmdQueue;
    // IR cut status the host may read through SetQueryInfo; one word for the translator's lifetime.
    UINT32               m_IRCutStatus;
};

#endif // AEC_WRAPPER_CAECPROCESSOUTPUTTRANSLATOR_H
