// Reads a JSON tuning source into the source model, reporting every problem with its file:line or JSON path.
#ifndef AECTUNE_CTUNESOURCEREADER_H
#define AECTUNE_CTUNESOURCEREADER_H

#include <map>
#include <string>

#include "ctunemessages.h"
#include "tunesourcemodel.h"

namespace AecTune
{

class CTuneSourceReader
{
public:
    explicit CTuneSourceReader(CTuneMessages* pMessages);

    // Parses JSON text (comments allowed) into a document; a syntax error is reported as line:column.
    bool ParseText(const std::string& text, Json* pDocument);
    // Builds the model from a parsed document. Values are checked later, when they are encoded.
    bool Read(const Json& document, TuneSource* pSource);

    // Finds the slot that a mode reference names: "[table:]label", "[table:]Default" or a path
    // "Usecase.Video|Scene.Portrait" (names or numbers, "@PIPELINE" for a group).
    static bool ResolveMode(const TuneSource& source, const std::string& reference, size_t* pTable, UINT32* pSlot,
                            std::string* pError);

    // The source's word for a scalar or string element type ("UINT16", "STRING"), or null.
    static const char* ScalarWordOf(ParameterDefinitionType type);
    // Sets kind, definition type and element size of a member from a scalar or string word; false if unknown.
    static bool SetScalar(const std::string& word, TuneMember* pMember);

private:
    // Where a declared type name leads: a record, an enumeration or a scalar word of a typedef.
    struct TypeName
    {
        TuneElementKind kind;
        size_t          index;
        std::string     scalarWord;
    };

    bool ReadHeader(const Json& header, const std::string& path, TuneSource* pSource);
    bool ReadTypes(const Json& types, const std::string& path, TuneSource* pSource);
    bool ReadEnum(const Json& values, const std::string& path, TuneEnum* pEnum);
    bool ReadMembers(const Json& members, const std::string& path, size_t structIndex, TuneSource* pSource);
    bool ReadMember(const Json& member, const std::string& path, TuneSource* pSource, TuneMember* pMember);
    bool ParseType(const std::string& text, const std::string& path, bool inlineRecord, TuneMember* pMember);
    bool ParseDims(const std::string& text, const std::string& path, TuneMember* pMember);
    bool FindType(const std::string& name, TypeName* pType) const;
    bool CheckNesting(const TuneSource& source);
    bool ReadModeTables(const Json& tables, const std::string& path, TuneSource* pSource);
    bool ReadModes(const Json& modes, const std::string& path, INT32 parentSlot, TuneModeTable* pTable,
                   std::vector<std::pair<std::string, std::string>>* pLinks);
    bool ReadModules(const Json& modules, const std::string& path, TuneSource* pSource);
    bool CheckKeys(const Json& object, const std::string& path, const std::vector<std::string>& allowed);
    bool GetString(const Json& object, const std::string& key, const std::string& path, bool required,
                   std::string* pValue);

    CTuneMessages*                  m_pMessages;
    std::map<std::string, TypeName> m_types;
};

} // namespace AecTune

#endif // AECTUNE_CTUNESOURCEREADER_H
