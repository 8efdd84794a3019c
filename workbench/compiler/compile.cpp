#include "compile.h"

#include "carryback.h"
#include "defaults.h"
#include "names.h"
#include "parser.h"
#include "repositorywriter.h"
#include "settle.h"

#include <kit/targetfile/targetfile.h>
#include <kit/text/utf8.h>
#include <workbench/errors.h>

#include <cstdio>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

template <typename ActionT>
void EachKey(const Source & source, ActionT action)
{
    for (const Subsystem & subsystem : source.mSubsystems)
        for (const Key & key : subsystem.mKeys)
            action(key);
}

Defaults CheckKeys(const Source & source, CFindings & findings)
{
    Defaults defaults;
    EachKey(source, [&](const Key & key) {
        if (key.mIsSound && key.KindOf() == Kind::Structure)
            CheckCarriedBack(key, findings);
        auto rows = DefaultsOf(key, findings);
        if (!rows.empty())
            defaults.emplace(&key, std::move(rows));
    });
    return defaults;
}

bool WriteFile(const std::string & content, const std::string & path)
{
    kit::targetfile::CTargetFile file;
    std::string reason;
    if (file.Open(path, reason) && file.Commit(content, reason))
        return true;
    ReportError(Quoted(path) + " can't be written: " + reason);
    return false;
}

}   // namespace

Compilation CompileSources(const std::vector<std::string> & sources)
{
    CFindings findings(sources);
    Source source = ParseSources(sources, findings);
    CheckNames(source, findings);
    Settle(source, findings);
    const Defaults defaults = CheckKeys(source, findings);

    Compilation compilation{ findings.Lines(), std::nullopt };
    if (findings.ErrorCount() == 0)
        compilation.mRepository = MakeRepository(source, defaults);
    return compilation;
}

bool Compile(const std::vector<std::string> & sources, const std::string & output)
{
    const Compilation compilation = CompileSources(sources);
    for (const std::string & finding : compilation.mFindings) {
        const std::string line = finding + '\n';
        static_cast<void>(std::fwrite(line.data(), 1, line.size(), stderr));   // nowhere left to complain
    }
    return compilation.mRepository && WriteFile(*compilation.mRepository, output);
}

}   // namespace workbench::compiler
