// What the live tuning link asks of the parameter store: tables, modes and values by text.
#ifndef AECORE_TUNING_PARSER_IPARAMETERDATAAPI_H
#define AECORE_TUNING_PARSER_IPARAMETERDATAAPI_H

#include "aecore/aecore_types.h"
#include "tuning/parser/parameterlogging.h"
#include "tuning/parser/parametermodule.h"
#include "tuning/parser/parametertypes.h"
#include "tuning/parser/plist.h"

class ModeEntry;

class IParameterDataAPI : public IParameterLoggingAPI
{
public:
    virtual UINT32     GetModeTableCount()                                   = 0;
    virtual bool       GetModeTableNames(PList<const CHAR*>& names)          = 0;
    virtual bool       GetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pFields,
                                CHAR* pOut, UINT32 size)                     = 0;
    virtual bool       SetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pField,
                                const CHAR* pValue)                          = 0;
    virtual bool       GetInfo(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName,
                               PList<ParameterParserInfo>& list)             = 0;
    virtual bool       GetActiveModes(UINT32 tableIndex, CHAR* pOut, UINT32 size) = 0;
    virtual bool       GetModeShorthand(const CHAR* pText, CHAR* pOut, UINT32 size) = 0;
    virtual ModeEntry* GetModeEntry(UINT32 tableIndex, const CHAR* pPath)   = 0;
    virtual ModeEntry* GetModeEntry(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count) = 0;
    virtual UINT32     GetChildModes(UINT32 tableIndex, const CHAR* pPath, CHAR* pOut, UINT32 size) = 0;
};

#endif // AECORE_TUNING_PARSER_IPARAMETERDATAAPI_H
