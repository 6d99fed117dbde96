// The subcommands of aec-tune (compile, dump, verify) as calls that write to streams and return exit codes.
#include "ctunecommands.h"

#include <fstream>
#include <sstream>

#include "ctunedumper.h"
#include "ctunefilereader.h"
#include "ctunemessages.h"
#include "ctunesourcereader.h"
#include "ctuneverifier.h"

namespace AecTune
{

CTuneCommands::CTuneCommands(std::ostream* pOut, std::ostream* pErr)
    : m_pOut(pOut)
    , m_pErr(pErr)
{
}

bool CTuneCommands::ReadFile(const std::string& path, std::string* pText)
{
    std::ifstream stream(path, std::ios::binary);
    if (!stream)
    {
        return false;
    }
    std::ostringstream text;
    text << stream.rdbuf();
    *pText = text.str();
    return !stream.bad();
}

bool CTuneCommands::WriteFile(const std::string& path, const std::vector<UINT8>& bytes)
{
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    stream.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    return !stream.fail();
}

bool CTuneCommands::CompileText(const std::string& sourceName, const std::string& text,
                                const TuneFileOptions& options, std::vector<UINT8>* pFile)
{
    CTuneMessages     messages(sourceName);
    CTuneSourceReader reader(&messages);
    Json              document;
    TuneSource        source;
    bool              ok = reader.ParseText(text, &document) && reader.Read(document, &source);
    ok                   = ok && CTuneFileWriter(&source, options, &messages).Write(pFile);
    for (const std::string& warning : messages.Warnings())
    {
        *m_pErr << warning << "\n";
    }
    for (const std::string& error : messages.Errors())
    {
        *m_pErr << error << "\n";
    }
    return ok && !messages.HasErrors();
}

int CTuneCommands::Compile(const std::string& sourcePath, const std::string& outputPath,
                           const TuneFileOptions& options)
{
    std::string text;
    if (!ReadFile(sourcePath, &text))
    {
        *m_pErr << sourcePath << ": cannot read the source\n";
        return TuneExitFailure;
    }
    std::vector<UINT8> file;
    if (!CompileText(sourcePath, text, options, &file))
    {
        return TuneExitFailure;
    }
    if (!WriteFile(outputPath, file))
    {
        *m_pErr << outputPath << ": cannot write the file\n";
        return TuneExitFailure;
    }
    *m_pOut << outputPath << ": " << file.size() << " bytes, version " << CTuneFormat::FormatVersion(options.version)
            << "\n";
    return TuneExitSuccess;
}

bool CTuneCommands::LoadSource(const std::string& sourcePath, TuneSource* pSource)
{
    std::string text;
    if (!ReadFile(sourcePath, &text))
    {
        *m_pErr << sourcePath << ": cannot read the source\n";
        return false;
    }
    CTuneMessages     messages(sourcePath);
    CTuneSourceReader reader(&messages);
    Json              document;
    const bool        ok = reader.ParseText(text, &document) && reader.Read(document, pSource);
    for (const std::string& error : messages.Errors())
    {
        *m_pErr << error << "\n";
    }
    return ok;
}

bool CTuneCommands::LoadFile(const std::string& filePath, std::vector<UINT8>* pBytes)
{
    std::string text;
    if (!ReadFile(filePath, &text))
    {
        *m_pErr << filePath << ": cannot read the file\n";
        return false;
    }
    pBytes->assign(text.begin(), text.end());
    return true;
}

int CTuneCommands::Dump(const std::string& filePath, bool json, const std::string& sourcePath)
{
    TuneSource         source;
    std::vector<UINT8> bytes;
    if ((!sourcePath.empty() && !LoadSource(sourcePath, &source)) || !LoadFile(filePath, &bytes))
    {
        return TuneExitFailure;
    }
    TuneFileContents contents;
    if (!CTuneFileReader(sourcePath.empty() ? nullptr : &source).Read(bytes, &contents))
    {
        *m_pErr << filePath << ": " << contents.headerError << "\n";
        return TuneExitFailure;
    }
    CTuneDumper dumper(&contents);
    if (json)
    {
        *m_pOut << dumper.ToJson().dump(2, ' ', false, Json::error_handler_t::replace) << "\n";
    }
    else
    {
        dumper.WriteText(*m_pOut);
    }
    if (!contents.loaded)
    {
        std::vector<std::string> problems;
        std::vector<std::string> warnings;
        CTuneVerifier::Check(contents, &problems, &warnings);
        for (const std::string& problem : problems)
        {
            *m_pErr << filePath << ": error: " << problem << "\n";
        }
        return TuneExitFailure;
    }
    return TuneExitSuccess;
}

int CTuneCommands::Verify(const std::string& filePath)
{
    std::vector<UINT8> bytes;
    if (!LoadFile(filePath, &bytes))
    {
        return TuneExitFailure;
    }
    TuneFileContents contents;
    CTuneFileReader(nullptr).Read(bytes, &contents);
    std::vector<std::string> problems;
    std::vector<std::string> warnings;
    CTuneVerifier::Check(contents, &problems, &warnings);
    for (const std::string& warning : warnings)
    {
        *m_pOut << filePath << ": warning: " << warning << "\n";
    }
    for (const std::string& problem : problems)
    {
        *m_pOut << filePath << ": error: " << problem << "\n";
    }
    if (!problems.empty())
    {
        *m_pOut << filePath << ": invalid\n";
        return TuneExitFailure;
    }
    *m_pOut << filePath << ": valid, version " << CTuneFormat::FormatVersion(contents.version) << ", "
            << contents.length << " bytes, " << contents.sections.size() << " sections, " << contents.modules.size()
            << " module entries in " << contents.layout.modeTables.size() << " mode tables\n";
    return TuneExitSuccess;
}

} // namespace AecTune
