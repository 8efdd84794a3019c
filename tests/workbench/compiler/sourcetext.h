/// Small metadata sources, and what the compiler finds in them.

#ifndef TESTS_ZYNCONFIG_METADATA_SOURCETEXT_H
#define TESTS_ZYNCONFIG_METADATA_SOURCETEXT_H

#include <toolprocess.h>
#include <workbench/compiler/compile.h>

#include <string>
#include <vector>

namespace workbench::compiler::test {

/// The first eight lines of a source: a system with a chip and a subsystem that has no keys yet.
inline constexpr char HEAD[] = R"([system]
name = "small"
[[chip]]
name = "c"
label = "c"
id = 1
[[subsystem]]
name = "bt"
)";

/// The findings of sources that are called "1.toml", "2.toml" and so on, without the folder in which they are.
inline std::vector<std::string> FindingsOf(const std::vector<std::string> & sources)
{
    const zynconfig::test::CTempFolder folder;
    std::vector<std::string> paths;
    for (const std::string & source : sources)
        paths.push_back(folder.File(std::to_string(paths.size() + 1) + ".toml", source));
    std::vector<std::string> findings;
    for (const Finding & finding : CompileSources(paths).mFindings)
        findings.push_back(
            kit::reporting::PlaceOf(finding) +
            (finding.mSeverity == VrexZynConfigTools::SEVERITY_ERROR ? ": error: " : ": warning: ") +
            finding.mText);
    const std::string prefix = folder.Path().string() + '/';
    for (std::string & finding : findings)
        for (std::size_t at = finding.find(prefix); at != std::string::npos; at = finding.find(prefix))
            finding.erase(at, prefix.size());
    return findings;
}

}   // namespace workbench::compiler::test

#endif
