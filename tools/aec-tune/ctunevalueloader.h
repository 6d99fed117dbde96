// Reads the values of one module instance through the parameter store's member readers, for a given record layout.
#ifndef AECTUNE_CTUNEVALUELOADER_H
#define AECTUNE_CTUNEVALUELOADER_H

#include "tunesourcemodel.h"
#include "tuning/parser/parameterfilesymboltable.h"

namespace AecTune
{

class CTuneValueLoader
{
public:
    // pLayout holds the records the values are read as (the "code side"); the table holds the file.
    CTuneValueLoader(const TuneSource* pLayout, ParameterFileSymbolTable* pTable);

    // Reads the module of a symbol ID as record structIndex; the file's definitions, if any, settle differences.
    bool LoadModule(UINT32 id, UINT64 nameHash, size_t structIndex, Json* pValues);

private:
    // What the store's record readers fill: one per record, the loader hangs its values on it.
    struct LoadedRecord
    {
        Json* pValue;
    };

    bool LoadRecord(ParameterLoadParameters& params, size_t structIndex, Json* pValue);
    bool LoadMember(const TuneMember& member, ParameterLoadParameters& members, Json* pValue);
    bool LoadScalars(const TuneMember& member, ParameterLoadParameters& members, Json* pValue);
    template <typename T>
    bool LoadTyped(const TuneMember& member, ParameterLoadParameters& members, Json* pValue);
    bool LoadStrings(const TuneMember& member, ParameterLoadParameters& members, Json* pValue);
    bool LoadRecords(const TuneMember& member, ParameterLoadParameters& members, Json* pValue);
    Json RecordsToJson(LoadedRecord* pRecords, UINT32 count);
    template <typename T>
    Json ScalarToJson(const TuneMember& member, T value) const;
    // Gives back a block the store allocated, unless another member still shares it.
    void Release(void* pBlock);

    // The store's reader callbacks know no loader; the loader and record of the call in progress are kept here.
    static bool  LoadArray(ParameterLoadParameters& params, void* pDest, UINT32 count);
    static void* AllocArray(UINT32 count);

    const TuneSource*         m_pLayout;
    ParameterFileSymbolTable* m_pTable;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEVALUELOADER_H
