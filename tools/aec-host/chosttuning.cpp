// The host's own tuning store: a main TuningSetManager over a parameter file, and the mode selectors sent with it.
#include "chosttuning.h"

#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <new>

#include "tuning/tuningsetmanager.h"

namespace
{

bool FileExists(const char* pPath)
{
    struct stat info = {};
    return (0 == stat(pPath, &info)) && S_ISREG(info.st_mode);
}

} // namespace

std::string DefaultTuningFile()
{
#ifdef AECORE_DEFAULT_TUNING_FILE
    if (FileExists(AECORE_DEFAULT_TUNING_FILE))
    {
        return AECORE_DEFAULT_TUNING_FILE;
    }
#endif
#ifdef AECORE_INSTALLED_TUNING_FILE
    if (FileExists(AECORE_INSTALLED_TUNING_FILE))
    {
        return AECORE_INSTALLED_TUNING_FILE;
    }
#endif
    return std::string();
}

CHostTuning::CHostTuning()
    : m_pStore(nullptr), m_how(HostTuningLoad::Buffer), m_selectors()
{
    for (UINT32 i = 0; i < HostTuningSelectorCount; i++)
    {
        m_selectors[i].mode          = static_cast<ModeType>(i);
        m_selectors[i].subMode.value = 0; // Usecase 0 is Preview; every other mode's 0 is its None
    }
}

CHostTuning::~CHostTuning()
{
    Release();
}

bool CHostTuning::Load(const std::string& path, HostTuningLoad how, std::string* pError)
{
    Release();
    m_how = how;
    if (path.empty())
    {
        return true;
    }
    TuningSetManager* pStore = new (std::nothrow) TuningSetManager("host");
    if (nullptr == pStore)
    {
        *pError = "no memory for the tuning store";
        return false;
    }
    bool loaded = false;
    if (HostTuningLoad::File == how)
    {
        loaded = pStore->LoadBinaryParameters(path.c_str());
    }
    else
    {
        std::ifstream file(path, std::ios::binary);
        m_buffer.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        if (!file.is_open() || (!file.good() && !file.eof()))
        {
            *pError = "cannot read tuning file " + path;
            delete pStore;
            return false;
        }
        loaded = !m_buffer.empty() && pStore->LoadBinaryParameters(m_buffer.data(), m_buffer.size());
    }
    if (!loaded)
    {
        const CHAR* pText = pStore->GetLastError();
        *pError = "cannot load tuning file " + path + ((nullptr != pText) && ('\0' != pText[0]) ? ": " : "") +
                  ((nullptr != pText) ? pText : "");
        delete pStore;
        m_buffer.clear();
        return false;
    }
    m_pStore = pStore;
    m_path   = path;
    return true;
}

void CHostTuning::Release()
{
    delete m_pStore;
    m_pStore = nullptr;
    m_buffer.clear();
    m_path.clear();
}

void CHostTuning::SetSubMode(ModeType mode, UINT16 subMode)
{
    const UINT32 index = static_cast<UINT32>(mode);
    if ((0 < index) && (index < HostTuningSelectorCount))
    {
        m_selectors[index].subMode.value = subMode;
    }
}

StatsTuningData CHostTuning::Data() const
{
    StatsTuningData data = {};
    if (nullptr != m_pStore)
    {
        data.pTuningSetManager    = m_pStore;
        data.pTuningModeSelectors = const_cast<TuningMode*>(m_selectors);
        data.numSelectors         = HostTuningSelectorCount;
    }
    return data;
}
