#include "compile.h"

#include "carryback.h"
#include "defaults.h"
#include "names.h"
#include "parser.h"
#include "repositorywriter.h"
#include "settle.h"

#include <kit/targetfile/targetfile.h>
#include <kit/text/utf8.h>

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

Defaults CheckKeys(const Source & source, CSourceFindings & findings)
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

}   // namespace

Compilation CompileSources(const std::vector<std::string> & sources)
{
    CSourceFindings findings(sources);
    Source source = ParseSources(sources, findings);
    CheckNames(source, findings);
    Settle(source, findings);
    const Defaults defaults = CheckKeys(source, findings);

    Compilation compilation{ findings.InOrder(), std::nullopt };
    if (findings.ErrorCount() == 0)
        compilation.mRepository = MakeRepository(source, defaults);
    return compilation;
}

bool WriteRepository(const std::string & content, const std::string & path, IFindingSink & sink)
{
    kit::targetfile::CTargetFile file;
    std::string reason;
    if (file.Open(path, reason) && file.Commit(content, reason))
        return true;
    sink.OnFinding(kit::reporting::MakeFinding("not-written", Quoted(path) + " can't be written: " + reason));
    return false;
}

}   // namespace workbench::compiler
