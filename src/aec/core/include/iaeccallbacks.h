// Interfaces through which each module writes its results back into the state store.
#ifndef AEC_CORE_INCLUDE_IAECCALLBACKS_H
#define AEC_CORE_INCLUDE_IAECCALLBACKS_H

#include "aecore/aecore.h"
#include "aec/core/include/aeccoredata.h"

// The state store implements these; nobody deletes it through them, hence the protected destructors.

class IMeteringCallback
{
public:
    virtual VOID SetAreFlashLowStatsSaved(BOOL areSaved) = 0;
    virtual VOID SetEVCapability(INT8 minEV, INT8 maxEV, INT8 stepsPerEV) = 0;
    virtual VOID SetRealDRCGain(FLOAT realDRCGain) = 0;

protected:
    ~IMeteringCallback() = default;
};

class IConvergenceCallback
{
public:
    virtual VOID SetConvFrameSkipCounter(UINT32 counter) = 0;

protected:
    ~IConvergenceCallback() = default;
};

class IArbitrationCallback
{
public:
    virtual VOID setSensitivity(FLOAT sensitivity) = 0;
    virtual VOID SetStreamingLimitation(ExposureLimitationType* pLimitation) = 0;
    // pLimitations points to one limitation per exposure of staggered HDR.
    virtual VOID SetSHDRStreamingLimitation(ExposureLimitationType* pLimitations) = 0;
    virtual VOID SetCurentFPS(FLOAT FPS) = 0;
    virtual VOID SetExpTableIdxOffsets(FLOAT* pStreamOffsets, FLOAT* pStillOffsets) = 0;
    virtual VOID SetStreamingMinExpIndexForATB(FLOAT minExpIndex) = 0;

protected:
    ~IArbitrationCallback() = default;
};

// Iris control reports nothing back yet; the slot keeps the interface shape of the other modules.
class IIrisCtrlCallback
{
public:
    virtual VOID IrisCtrlCallbackPlaceholder(BOOL placeholder) = 0;

protected:
    ~IIrisCtrlCallback() = default;
};

class IExtensionCallback
{
public:
    virtual VOID SetFlashMeasurementIndex(INT32 index) = 0;
    virtual VOID SetMaxFlashCurrent(UINT32 maxCurrent) = 0;

protected:
    ~IExtensionCallback() = default;
};

#endif // AEC_CORE_INCLUDE_IAECCALLBACKS_H
