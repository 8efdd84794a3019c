#include "commands.h"

#include <kit/text/utf8.h>
#include <workbench/compiler/compile.h>

namespace zynconfig {

bool CompileMetadata(Invocation & invocation)
{
    const Options & options = invocation.mOptions;
    const auto compilation = workbench::compiler::CompileSources(options.mFiles);
    // As compilers do and editors parse: the place first.
    for (const workbench::Finding & finding : compilation.mFindings) {
        const bool isError = finding.mSeverity == VrexZynConfigTools::SEVERITY_ERROR;
        CConsole::WriteErrorLine(kit::text::Printable(kit::reporting::PlaceOf(finding)) +
                                 (isError ? ": error: " : ": warning: ") + finding.mText);
    }
    return compilation.mRepository &&
           workbench::compiler::WriteRepository(*compilation.mRepository, options.mOutput, invocation.mConsole);
}

}   // namespace zynconfig
