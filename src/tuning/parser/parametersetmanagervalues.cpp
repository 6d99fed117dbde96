// The parameter store: values and member descriptions of a module by text, for the live tuning link.
#include <cstring>
#include <string>

#include "platform/osutils.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"

namespace
{
const UINT32 MaxModuleName = 64;
const UINT32 ValueSize     = 4096;

// "rest.member", or either part alone.
std::string JoinPath(const CHAR* pRest, const CHAR* pMember)
{
    std::string path = (nullptr != pRest) ? pRest : "";
    if ((nullptr != pMember) && ('\0' != pMember[0]))
    {
        path += path.empty() ? "" : ".";
        path += pMember;
    }
    return path;
}

bool IsValueType(const CHAR* pType)
{
    return (nullptr == pType) || ((0 != std::strcmp(pType, "Module")) && (0 != std::strcmp(pType, "Structure")));
}
} // namespace

ParameterModule* ParameterSetManager::ResolveValueModule(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count,
                                                         const CHAR* pName, const CHAR*& pRest)
{
    pRest = "";
    if (nullptr == pName)
    {
        return nullptr;
    }
    CHAR         moduleName[MaxModuleName + 1];
    const UINT32 length = ParameterUtils::GetSubString(pName, '.', moduleName, sizeof(moduleName));
    pRest               = pName + length + (('.' == pName[length]) ? 1 : 0);
    return GetModuleInternal(tableIndex, moduleName, pBranch, count, nullptr, 0);
}

bool ParameterSetManager::GetValue(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName,
                                   const CHAR* pFields, CHAR* pOut, UINT32 size)
{
    if ((nullptr == pOut) || (0 == size))
    {
        return false;
    }
    pOut[0]                  = '\0';
    const CHAR*      pRest   = nullptr;
    ParameterModule* pModule = ResolveValueModule(tableIndex, pBranch, count, pName, pRest);
    if (nullptr == pModule)
    {
        return false;
    }
    std::string result;
    bool        ok = true;
    CHAR        value[ValueSize];
    auto        append = [&](const std::string& name, const std::string& text) {
        result += result.empty() ? "" : ";";
        result += name + "=" + text;
    };
    if ((nullptr != pFields) && ('\0' != pFields[0]))
    {
        std::string field;
        for (const CHAR* p = pFields;; p++)
        {
            if (('\0' != *p) && (',' != *p))
            {
                field += *p;
                continue;
            }
            const std::string path = JoinPath(pRest, field.c_str());
            value[0]               = '\0';
            ok                     = pModule->GetValue(path.c_str(), value, sizeof(value)) && ok;
            append(field, value);
            field.clear();
            if ('\0' == *p)
            {
                break;
            }
        }
    }
    else
    {
        PList<ParameterParserInfo> members;
        ok = pModule->GetInfo(pRest, members);
        for (UINT32 i = 0; ok && (i < members.Count()); i++)
        {
            const ParameterParserInfo& info = members[i];
            const CHAR*                pMember = (nullptr != info.Name) ? info.Name : "";
            if (!IsValueType(info.Type))
            {
                result += result.empty() ? "" : ";";
                result += pMember;
                continue;
            }
            const std::string path = JoinPath(pRest, pMember);
            if (info.isArray)
            {
                std::string values;
                for (UINT32 e = 0; e < info.Count; e++)
                {
                    const std::string element = path + "[" + std::to_string(e) + "]";
                    value[0]                  = '\0';
                    ok                        = pModule->GetValue(element.c_str(), value, sizeof(value)) && ok;
                    values += (0 == e) ? "" : ",";
                    values += value;
                }
                append(pMember, values);
            }
            else
            {
                value[0] = '\0';
                ok       = pModule->GetValue(path.c_str(), value, sizeof(value)) && ok;
                append(pMember, value);
            }
        }
    }
    ReleaseModule(pModule);
    if (Vela::OsUtils::StrLCpy(pOut, result.c_str(), size) >= size)
    {
        return false;
    }
    return ok;
}

bool ParameterSetManager::SetValue(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName,
                                   const CHAR* pField, const CHAR* pValue)
{
    const CHAR*      pRest   = nullptr;
    ParameterModule* pModule = ResolveValueModule(tableIndex, pBranch, count, pName, pRest);
    if (nullptr == pModule)
    {
        SetError("Dorvik SetValues failed: Module not found: \n");
        return false;
    }
    const std::string path = JoinPath(pRest, pField);
    const bool        ok   = pModule->SetValue(path.c_str(), pValue);
    if (ok)
    {
        Root()->m_changeCount++;
        // A changed mode must never be unloaded: unloading would lose the change.
        ProtectMode(pModule);
    }
    else
    {
        SetError("Dorvik SetValues failed: Variable not found: \n");
    }
    ReleaseModule(pModule);
    return ok;
}

bool ParameterSetManager::GetInfo(UINT32 tableIndex, const TuningMode* pBranch, UINT32 count, const CHAR* pName,
                                  PList<ParameterParserInfo>& list)
{
    if ((nullptr == pBranch) || (0 == count))
    {
        ParameterLogging::Write(this, Error, "GetInfo called with null or empty modeBranch\n");
        return false;
    }
    const CHAR*      pRest   = nullptr;
    ParameterModule* pModule = ResolveValueModule(tableIndex, pBranch, count, pName, pRest);
    if (nullptr == pModule)
    {
        return false;
    }
    const bool ok = pModule->GetInfo(pRest, list);
    ReleaseModule(pModule);
    return ok;
}

bool ParameterSetManager::GetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pFields,
                                   CHAR* pOut, UINT32 size)
{
    PList<TuningMode> branch;
    if (!GetModeBranchFromPath(pModePath, branch))
    {
        branch.Add(TuningMode{ModeType::Default, {0}});
    }
    return GetValue(tableIndex, branch.ToArray(), branch.Count(), pName, pFields, pOut, size);
}

bool ParameterSetManager::SetValue(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName, const CHAR* pField,
                                   const CHAR* pValue)
{
    PList<TuningMode> branch;
    if (!GetModeBranchFromPath(pModePath, branch))
    {
        branch.Add(TuningMode{ModeType::Default, {0}});
    }
    return SetValue(tableIndex, branch.ToArray(), branch.Count(), pName, pField, pValue);
}

bool ParameterSetManager::GetInfo(UINT32 tableIndex, const CHAR* pModePath, const CHAR* pName,
                                  PList<ParameterParserInfo>& list)
{
    PList<TuningMode> branch;
    if (!GetModeBranchFromPath(pModePath, branch))
    {
        branch.Add(TuningMode{ModeType::Default, {0}});
    }
    return GetInfo(tableIndex, branch.ToArray(), branch.Count(), pName, list);
}
