#include "findings.h"

#include <kit/text/utf8.h>

#include <algorithm>

namespace tomlconfig {

Finding FindingAt(const toml::source_position & place, const std::string & code, const std::string & text)
{
    Finding finding = kit::reporting::MakeFinding(code, kit::text::Escaped(text));
    finding.mLine = std::max(place.line, toml::source_index{ 1 });   // an empty file has no line of its own
    finding.mColumn = std::max(place.column, toml::source_index{ 1 });
    return finding;
}

Finding FindingAt(const toml::node & node, const std::string & code, const std::string & text)
{
    return FindingAt(node.source().begin, code, text);
}

Finding WarningAt(const toml::node & node, const std::string & code, const std::string & text)
{
    Finding finding = FindingAt(node, code, text);
    finding.mSeverity = VrexZynConfigTools::SEVERITY_WARNING;
    return finding;
}

}   // namespace tomlconfig
