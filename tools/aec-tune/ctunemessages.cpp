// Collects the errors and warnings of one tool run, each tied to a place in the source (file:line or a JSON path).
#include "ctunemessages.h"

#include <cctype>

namespace AecTune
{

CTuneMessages::CTuneMessages(const std::string& sourceName)
    : m_sourceName(sourceName)
{
}

void CTuneMessages::Error(const std::string& place, const std::string& text)
{
    m_errors.push_back(Format(place, text));
}

void CTuneMessages::ErrorAt(size_t line, size_t column, const std::string& text)
{
    m_errors.push_back(m_sourceName + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + text);
}

void CTuneMessages::Warning(const std::string& place, const std::string& text)
{
    m_warnings.push_back(Format(place, "warning: " + text));
}

bool CTuneMessages::HasErrors() const
{
    return !m_errors.empty();
}

const std::vector<std::string>& CTuneMessages::Errors() const
{
    return m_errors;
}

const std::vector<std::string>& CTuneMessages::Warnings() const
{
    return m_warnings;
}

std::string CTuneMessages::Child(const std::string& path, const std::string& key)
{
    bool identifier = !key.empty() && (std::isalpha(static_cast<unsigned char>(key[0])) || key[0] == '_');
    for (char c : key)
    {
        identifier = identifier && (std::isalnum(static_cast<unsigned char>(c)) || c == '_');
    }
    if (identifier)
    {
        return path.empty() ? key : path + "." + key;
    }
    return path + "[\"" + key + "\"]";
}

std::string CTuneMessages::Index(const std::string& path, size_t index)
{
    return path + "[" + std::to_string(index) + "]";
}

std::string CTuneMessages::Format(const std::string& place, const std::string& text) const
{
    // The root of the document has no path of its own; name the file alone then.
    return place.empty() ? m_sourceName + ": " + text : m_sourceName + ": " + place + ": " + text;
}

} // namespace AecTune
