/// What is wrong with a file: every finding with its place and what was expected, collected in one run.

#ifndef TOMLCONFIG_FINDINGS_H
#define TOMLCONFIG_FINDINGS_H

#include <toml++/toml.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tomlconfig {

class CFindings
{
public:
    explicit CFindings(const std::string & path);

    void Add(const toml::source_position & place, const std::string & text);

    /// At the begin of a node.
    void Add(const toml::node & node, const std::string & text);

    /// What is no mistake but has to be known, such as a value that is left out.
    void Warn(const toml::node & node, const std::string & text);

    bool IsEmpty() const;
    std::size_t Count() const;

    /// "file:line:column: text", a line for each finding, in the order of the file.
    std::string Text() const;

    /// "file:line:column: text" for each warning, as they came.
    const std::vector<std::string> & Warnings() const;

private:
    struct Finding
    {
        toml::source_position mPlace;
        std::string mText;
    };

    std::string mPath;
    std::vector<Finding> mFindings;
    std::vector<std::string> mWarnings;
};

/// "file:line:column".
std::string PlaceText(const std::string & path, const toml::source_position & place);

/// User text between double quotes, made printable, cut where it is long.
std::string Quoted(std::string_view text);

/// `; expected "a", "b" or "c"`, cut where there are many.
std::string Expected(const std::vector<std::string> & known);

/// `; did you mean "uint8"?` where one of the words is near; otherwise `; expected "a", "b" or "c"`.
std::string Advice(const std::string & word, const std::vector<std::string> & known);

}   // namespace tomlconfig

#endif
