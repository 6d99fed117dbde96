/* Typed, sized entry lists through which the host creates, feeds, queries and destroys an instance. */
#ifndef AECORE_AECORE_LISTS_H
#define AECORE_AECORE_LISTS_H

#include "aecore/aecore_enums.h"
#include "aecore/aecore_types.h"

AECORE_EXTERN_C_BEGIN

/* Every entry is an untyped pointer to a payload, the payload's size in bytes and its type. */

/* ---- Create and destroy ---- */

typedef struct AECAlgoCreateParam
{
    VOID*                   pCreateParam;
    UINT32                  sizeOfCreateParam;
    AECAlgoCreateParamsType createParamType;
} AECAlgoCreateParam;

typedef struct AECAlgoCreateParamList
{
    AECAlgoCreateParam* pCreateParamList;
    UINT32              numberOfCreateParams;
} AECAlgoCreateParamList;

typedef struct AECAlgoDestroyParam
{
    AECAlgoDestroyParamType destroyParamType;
    VOID*                   pParam;
    UINT32                  sizeOfParam;
} AECAlgoDestroyParam;

typedef struct AECAlgoDestroyParamList
{
    AECAlgoDestroyParam* pParamList;
    UINT32               paramCount;
} AECAlgoDestroyParamList;

/* ---- Set parameters ---- */

typedef struct AECAlgoSetParam
{
    VOID*               pAECSetParam;
    UINT32              sizeOfAECSetParam;
    AECAlgoSetParamType setParamType;
} AECAlgoSetParam;

typedef struct AECAlgoSetParamList
{
    AECAlgoSetParam* pAECSetParamList;
    UINT32           numberOfAECSetParams;
} AECAlgoSetParamList;

/* ---- Process ---- */

typedef struct AECAlgoInput
{
    VOID*            pAECInput;
    UINT32           sizeOfAECInput;
    AECAlgoInputType inputType;
} AECAlgoInput;

typedef struct AECAlgoInputList
{
    AECAlgoInput* pAECInputList;
    UINT32        numberOfAECInputs;
} AECAlgoInputList;

/* sizeOfAECOutput is the host's capacity; the library reports what it wrote in sizeOfWrittenAECOutput. */
typedef struct AECAlgoOutput
{
    VOID*             pAECOutput;
    UINT32            sizeOfAECOutput;
    UINT32            sizeOfWrittenAECOutput;
    AECAlgoOutputType outputType;
} AECAlgoOutput;

typedef struct AECAlgoOutputList
{
    AECAlgoOutput* pAECOutputList;
    UINT32         numberOfAECOutputs;
} AECAlgoOutputList;

/* ---- Get parameters ---- */

typedef struct AECAlgoGetParamInput
{
    AECAlgoGetParamInputType inputType;
    VOID*                    pInputData;
    UINT32                   sizeOfInputData;
} AECAlgoGetParamInput;

typedef struct AECAlgoGetParamInputList
{
    AECAlgoGetParamInput* pAECGetParamList;
    UINT32                numberOfAECGetInputParams;
} AECAlgoGetParamInputList;

typedef struct AECAlgoGetParamOutput
{
    VOID*                     pOutputData;
    UINT32                    sizeOfOutputData;
    UINT32                    sizeOfWrittenOutputData;
    AECAlgoGetParamOutputType outputType;
} AECAlgoGetParamOutput;

typedef struct AECAlgoGetParamOutputList
{
    AECAlgoGetParamOutput* pAECOutputList;
    UINT32                 numberOfAECOutputs;
} AECAlgoGetParamOutputList;

typedef struct AECAlgoGetParam
{
    AECAlgoGetParamType       type;
    AECAlgoGetParamInputList  inputList;
    AECAlgoGetParamOutputList outputList;
} AECAlgoGetParam;

AECORE_EXTERN_C_END

#endif /* AECORE_AECORE_LISTS_H */
