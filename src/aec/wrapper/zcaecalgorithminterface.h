// Exported entry points of the library: the per-camera instance record and the copy of the host's callbacks.
#ifndef AEC_WRAPPER_ZCAECALGORITHMINTERFACE_H
#define AEC_WRAPPER_ZCAECALGORITHMINTERFACE_H

#include "aecore/aecore.h"
#include "aec/wrapper/iaecinterfacehandler.h"

namespace Vela
{

// One camera's instance. The host's function table comes first, so the LYRAECAlgorithm* the host holds is
// this record.
struct AECAlgorithm_Internal : public LYRAECAlgorithm
{
    IAECInterfaceHandler* pAlgo;           // translators and core of this camera
    VOID*                 pLogs;           // freed with the instance when set
    BOOL                  bDepthAECEnable; // the tuning enables depth AEC, so the depth vendor tags are needed
};

// The host's callback table as it was last handed over; one for the whole library.
extern LyrAlgorithmInterface g_LyrAlgoInterface;

} // namespace Vela

#endif // AEC_WRAPPER_ZCAECALGORITHMINTERFACE_H
