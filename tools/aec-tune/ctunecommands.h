// The subcommands of aec-tune (compile, dump, verify) as calls that write to streams and return exit codes.
#ifndef AECTUNE_CTUNECOMMANDS_H
#define AECTUNE_CTUNECOMMANDS_H

#include <ostream>
#include <string>
#include <vector>

#include "ctunefilewriter.h"

namespace AecTune
{

// Exit codes of the tool.
enum TuneExitCode : int
{
    TuneExitSuccess = 0,
    TuneExitFailure = 1,    // bad source, unreadable or invalid file
    TuneExitUsage   = 2,    // bad command line
};

class CTuneCommands
{
public:
    CTuneCommands(std::ostream* pOut, std::ostream* pErr);

    // Source file to parameter file.
    int Compile(const std::string& sourcePath, const std::string& outputPath, const TuneFileOptions& options);
    // Source text to file bytes, for callers that keep both in memory; messages go to the error stream.
    bool CompileText(const std::string& sourceName, const std::string& text, const TuneFileOptions& options,
                     std::vector<UINT8>* pFile);

    // Prints a file as text or as JSON; sourcePath (may be empty) names members and lays out records.
    int Dump(const std::string& filePath, bool json, const std::string& sourcePath);
    // Checks a file and prints what is wrong with it; non-zero if anything is.
    int Verify(const std::string& filePath);

    static bool ReadFile(const std::string& path, std::string* pText);
    static bool WriteFile(const std::string& path, const std::vector<UINT8>& bytes);

private:
    bool LoadSource(const std::string& sourcePath, TuneSource* pSource);
    bool LoadFile(const std::string& filePath, std::vector<UINT8>* pBytes);

    std::ostream* m_pOut;
    std::ostream* m_pErr;
};

} // namespace AecTune

#endif // AECTUNE_CTUNECOMMANDS_H
