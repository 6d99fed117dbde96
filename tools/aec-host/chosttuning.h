// The host's own tuning store: a main TuningSetManager over a parameter file, and the mode selectors sent with it.
#ifndef AECORE_TOOLS_CHOSTTUNING_H
#define AECORE_TOOLS_CHOSTTUNING_H

#include <string>
#include <vector>

#include "aecore/aecore.h"
#include "tuning/parser/parametertypes.h"

class TuningSetManager;

// How the store reads the file: all of it from memory, or from the file kept open, mode by mode on demand.
enum class HostTuningLoad
{
    Buffer,
    File,
};

// The selectors a camera framework sends with its tuning: Default, then one per mode type in the order of ModeType.
constexpr UINT32 HostTuningSelectorCount = 7;

// The built default.bin, else the installed one; empty when neither exists (a host then runs on fake tuning).
std::string DefaultTuningFile();

// Owns the store the way a camera framework does with its own copy of the store code: the library only borrows the
// pointer it is handed, so the store must outlive every instance that was given it.
class CHostTuning
{
public:
    CHostTuning();
    ~CHostTuning();
    CHostTuning(const CHostTuning&)            = delete;
    CHostTuning& operator=(const CHostTuning&) = delete;

    // Reads a parameter file into a new store; an empty path leaves no store (the library's fake tuning). A failed
    // load leaves no store and says why, with the store's own error text.
    bool Load(const std::string& path, HostTuningLoad how, std::string* pError);
    void Release();

    TuningSetManager* Store() const { return m_pStore; }
    const std::string& Path() const { return m_path; }
    HostTuningLoad     How() const { return m_how; }

    // Sets the sub-mode of one mode type (Sensor to Effect); the Default selector stays as it is.
    void SetSubMode(ModeType mode, UINT16 subMode);
    const TuningMode* Selectors() const { return m_selectors; }

    // What AECAlgoSetParamSorentaData carries: the store and the seven selectors, or nothing without a store.
    StatsTuningData Data() const;

private:
    TuningSetManager*  m_pStore;
    std::vector<BYTE>  m_buffer;   // buffer mode: the file's bytes, kept as long as the store
    std::string        m_path;
    HostTuningLoad     m_how;
    TuningMode         m_selectors[HostTuningSelectorCount];
};

#endif // AECORE_TOOLS_CHOSTTUNING_H
