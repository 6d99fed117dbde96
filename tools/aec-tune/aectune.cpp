// Command line of aec-tune: compiles tuning sources into binary parameter files, dumps and verifies such files.
#include <iostream>

#include <CLI/CLI.hpp>

#include "ctunecommands.h"

int main(int argc, char** argv)
{
    using namespace AecTune;
    CLI::App app{ "aec-tune: writes, dumps and verifies binary tuning parameter files" };
    app.require_subcommand(1);

    std::string sourcePath;
    std::string outputPath;
    std::string versionText = CTuneFormat::FormatVersion(CTuneFormat::NewestVersion);
    bool        noDefinitions = false;
    UINT32      minimumSize   = ParameterFileHeaderReadSize;
    CLI::App*   pCompile      = app.add_subcommand("compile", "compile a JSON tuning source into a parameter file");
    pCompile->add_option("SOURCE", sourcePath, "JSON tuning source")->required();
    pCompile->add_option("-o,--output", outputPath, "parameter file to write")->required();
    pCompile->add_option("--version", versionText, "file version, 1.0.1 to 7.0.0 (default 7.0.0)");
    pCompile->add_flag("--no-definitions", noDefinitions, "leave out the definition table");
    pCompile->add_option("--min-size", minimumSize,
                         "pad the file to at least this many bytes (default 3388, the least a reader that keeps "
                         "the file open loads; 0 for no padding)");

    std::string filePath;
    bool        json = false;
    std::string layoutPath;
    CLI::App*   pDump = app.add_subcommand("dump", "print a parameter file as text or JSON");
    pDump->add_option("FILE", filePath, "parameter file")->required();
    pDump->add_flag("--json", json, "print JSON in the source format, with a \"file\" object of file facts");
    pDump->add_option("--source", layoutPath,
                      "JSON tuning source that names members and lays out records (needed for values of files "
                      "without definitions)");
    CLI::App* pVerify = app.add_subcommand("verify", "check tag, version, sizes, sections and checksum of a file");
    pVerify->add_option("FILE", filePath, "parameter file")->required();

    app.footer("Exit codes: 0 success, 1 bad source or invalid file, 2 bad command line.");
    try
    {
        app.parse(argc, argv);
    }
    catch (const CLI::ParseError& error)
    {
        // Help is a successful exit; every other command-line problem is a usage error.
        return (app.exit(error) == 0) ? TuneExitSuccess : TuneExitUsage;
    }

    CTuneCommands commands(&std::cout, &std::cerr);
    if (pCompile->parsed())
    {
        TuneFileOptions options{};
        if (!CTuneFormat::ParseVersion(versionText, &options.version) || !CTuneFormat::IsSupported(options.version))
        {
            std::cerr << "aec-tune compile: --version " << versionText << ": expected 1.0.1 to 7.0.0\n";
            return TuneExitUsage;
        }
        options.definitions = !noDefinitions;
        options.minimumSize = minimumSize;
        return commands.Compile(sourcePath, outputPath, options);
    }
    if (pDump->parsed())
    {
        return commands.Dump(filePath, json, layoutPath);
    }
    return commands.Verify(filePath);
}
