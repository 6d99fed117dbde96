// The parameter store: mode paths in number and name form, and the children of a mode as text.
#include <cstring>
#include <string>

#include "platform/osutils.h"
#include "tuning/parser/modenames.h"
#include "tuning/parser/parametersetmanager.h"
#include "tuning/parser/parameterutils.h"

namespace
{
const UINT32 MaxPieceLength = 9;

// Decimal digits only, at most 65535.
bool ParseNumber(const CHAR* pText, UINT32& value)
{
    value = 0;
    if ('\0' == *pText)
    {
        return false;
    }
    for (; '\0' != *pText; pText++)
    {
        if ((*pText < '0') || (*pText > '9'))
        {
            return false;
        }
        value = value * 10 + static_cast<UINT32>(*pText - '0');
        if (value > 0xFFFF)
        {
            return false;
        }
    }
    return true;
}

// Calls piece(text) for each part of text split at delimiter; stops when piece returns false.
template <typename Piece>
bool ForEachPiece(const CHAR* pText, CHAR delimiter, Piece piece)
{
    std::string part;
    for (const CHAR* p = pText;; p++)
    {
        if (('\0' == *p) || (delimiter == *p))
        {
            if (!piece(part))
            {
                return false;
            }
            part.clear();
            if ('\0' == *p)
            {
                return true;
            }
        }
        else
        {
            part += *p;
        }
    }
}

// "Mode.SubMode" in names: Default without sub-mode, an unknown sub-mode as its number.
std::string ModeText(UINT32 mode, UINT32 subMode)
{
    const CHAR* pMode = ModeNames::ModeName(mode);
    std::string text  = (nullptr != pMode) ? pMode : std::to_string(mode);
    if (0 != mode)
    {
        const CHAR* pSub = ModeNames::SubModeName(mode, subMode);
        text += ".";
        text += (nullptr != pSub) ? pSub : std::to_string(subMode);
    }
    return text;
}

bool CopyOut(const std::string& text, CHAR* pOut, UINT32 size)
{
    if ((nullptr == pOut) || (0 == size))
    {
        return false;
    }
    return Vela::OsUtils::StrLCpy(pOut, text.c_str(), size) < size;
}
} // namespace

bool ParameterSetManager::GetModeBranchFromPath(const CHAR* pPath, PList<TuningMode>& list)
{
    if ((nullptr == pPath) || ('\0' == pPath[0]))
    {
        return false;
    }
    UINT32     added = 0;
    const bool ok    = ForEachPiece(pPath, '|', [&](const std::string& whole) {
        const std::string piece = whole.substr(0, MaxPieceLength);
        const size_t      dot   = piece.find('.');
        UINT32            mode  = 0;
        UINT32            sub   = 0;
        if (!ParseNumber(piece.substr(0, dot).c_str(), mode) ||
            ((std::string::npos != dot) && !ParseNumber(piece.substr(dot + 1).c_str(), sub)))
        {
            return false;
        }
        TuningMode element;
        element.mode          = static_cast<ModeType>(mode);
        element.subMode.value = static_cast<UINT16>(sub);
        list.Add(element);
        added++;
        return true;
    });
    return ok && (added > 0);
}

bool ParameterSetManager::GetPathFromModeBranch(const TuningMode* pBranch, UINT32 count, CHAR* pOut, UINT32 size)
{
    std::string text;
    for (UINT32 i = 0; (nullptr != pBranch) && (i < count); i++)
    {
        CHAR piece[32];
        Vela::OsUtils::SNPrintF(piece, sizeof(piece), "%s%u.%u", (0 == i) ? "" : "|",
                                static_cast<UINT32>(pBranch[i].mode), static_cast<UINT32>(pBranch[i].subMode.value));
        text += piece;
    }
    return CopyOut(text, pOut, size);
}

UINT32 ParameterSetManager::GetModeIndex(const CHAR* pName)
{
    if (nullptr == pName)
    {
        return 0;
    }
    const SIZE_T length = std::strlen(pName);
    for (UINT32 mode = 0; nullptr != ModeNames::ModeName(mode); mode++)
    {
        const CHAR* pMode = ModeNames::ModeName(mode);
        if ((std::strlen(pMode) == length) && (0 == Vela::OsUtils::StrNICmp(pMode, pName, length)))
        {
            return mode;
        }
    }
    return 0;
}

UINT32 ParameterSetManager::GetSubModeIndex(UINT32 mode, const CHAR* pName)
{
    UINT32 value = 0;
    if (nullptr == pName)
    {
        return 0;
    }
    if (ParseNumber(pName, value))
    {
        return value;
    }
    const SIZE_T length = std::strlen(pName);
    for (UINT32 sub = 0; sub < ModeNames::SubModeCount(mode); sub++)
    {
        const CHAR* pSub = ModeNames::SubModeName(mode, sub);
        if ((std::strlen(pSub) == length) && (0 == Vela::OsUtils::StrNICmp(pSub, pName, length)))
        {
            return sub;
        }
    }
    return 0;
}

bool ParameterSetManager::GetModeShorthand(const CHAR* pText, CHAR* pOut, UINT32 size)
{
    if (nullptr == pText)
    {
        return false;
    }
    std::string result;
    ForEachPiece(pText, '|', [&](const std::string& piece) {
        const size_t      dot  = piece.find('.');
        const std::string name = piece.substr(0, dot);
        const UINT32      mode = GetModeIndex(name.c_str());
        if (!result.empty())
        {
            result += "|";
        }
        result += std::to_string(mode);
        if (std::string::npos != dot)
        {
            result += "." + std::to_string(GetSubModeIndex(mode, piece.substr(dot + 1).c_str()));
        }
        return true;
    });
    return CopyOut(result, pOut, size);
}

bool ParameterSetManager::GetDorvikModesString(const CHAR* pText, CHAR* pOut, UINT32 size)
{
    if (nullptr == pText)
    {
        return false;
    }
    std::string result;
    bool        firstList = true;
    ForEachPiece(pText, ';', [&](const std::string& list) {
        if (!firstList)
        {
            result += ";";
        }
        firstList       = false;
        bool firstPiece = true;
        ForEachPiece(list.c_str(), '|', [&](const std::string& piece) {
            if (piece.empty())
            {
                return true;
            }
            const size_t dot  = piece.find('.');
            UINT32       mode = 0;
            UINT32       sub  = 0;
            if (!ParseNumber(piece.substr(0, dot).c_str(), mode))
            {
                mode = GetModeIndex(piece.substr(0, dot).c_str());
            }
            if (std::string::npos != dot)
            {
                sub = GetSubModeIndex(mode, piece.substr(dot + 1).c_str());
            }
            result += firstPiece ? "" : "|";
            result += ModeText(mode, sub);
            firstPiece = false;
            return true;
        });
        return true;
    });
    return CopyOut(result, pOut, size);
}

UINT32 ParameterSetManager::GetChildModes(UINT32 tableIndex, const CHAR* pPath, CHAR* pOut, UINT32 size)
{
    if (!CheckTable(tableIndex, "GetChildModes"))
    {
        return 0;
    }
    ModeEntry* pMode = ((nullptr != pPath) && ('\0' != pPath[0])) ? GetModeEntry(tableIndex, pPath) : nullptr;
    if (nullptr == pMode)
    {
        pMode = Root()->m_modeTables[tableIndex]->RootMode.Entry;
    }
    std::string text;
    for (ModeEntry* pChild = (nullptr != pMode) ? pMode->Resolve()->FirstChild : nullptr; nullptr != pChild;
         pChild             = pChild->Next)
    {
        text += text.empty() ? "" : ",";
        text += ModeText(pChild->Mode.Mode.Mode, pChild->Mode.Mode.SubMode);
    }
    if ((nullptr == pOut) || (text.size() + 1 > size))
    {
        ParameterLogging::Write(this, Error, "Failed to write %lld bytes to binary offset %d, length %d\n",
                                static_cast<long long>(text.size() + 1), 0, static_cast<INT32>(size));
        return 0;
    }
    std::memcpy(pOut, text.c_str(), text.size() + 1);
    return static_cast<UINT32>(text.size() + 1);
}
