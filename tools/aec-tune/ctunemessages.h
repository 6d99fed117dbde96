// Collects the errors and warnings of one tool run, each tied to a place in the source (file:line or a JSON path).
#ifndef AECTUNE_CTUNEMESSAGES_H
#define AECTUNE_CTUNEMESSAGES_H

#include <string>
#include <vector>

namespace AecTune
{

class CTuneMessages
{
public:
    explicit CTuneMessages(const std::string& sourceName);

    // A problem that stops the run; place is a JSON path or "line:column".
    void Error(const std::string& place, const std::string& text);
    // A syntax error at a line and column of the source text.
    void ErrorAt(size_t line, size_t column, const std::string& text);
    // Something the output cannot carry and drops.
    void Warning(const std::string& place, const std::string& text);

    bool HasErrors() const;
    const std::vector<std::string>& Errors() const;
    const std::vector<std::string>& Warnings() const;

    // Appends a key or an index to a JSON path: identifiers as ".key", anything else as ["key"].
    static std::string Child(const std::string& path, const std::string& key);
    static std::string Index(const std::string& path, size_t index);

private:
    std::string Format(const std::string& place, const std::string& text) const;

    std::string              m_sourceName;
    std::vector<std::string> m_errors;
    std::vector<std::string> m_warnings;
};

} // namespace AecTune

#endif // AECTUNE_CTUNEMESSAGES_H
