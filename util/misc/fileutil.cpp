#include <misc/fileutil.h>

#include <misc/platform.h>

#include <messages/trace.h>

#include <vector>

namespace fileutil {

namespace {

using namespace VrexZynConfigTools;

constexpr GroupEnum MESSAGE_GROUP = GROUP_UTILITIES;

std::string SeparatorAfter(const std::string & directory)
{
    // For an empty text both sides are the largest number: an empty directory gets no separator either, intended.
    const bool endsInSeparator = directory.rfind(platform::SEPARATOR) == directory.size() - 1;
    return endsInSeparator ? std::string() : std::string(1, platform::SEPARATOR);
}

}   // namespace

bool IsDir(const std::string & aPath, bool & aIsDir)
{
    bool result = false;
    ZYN_SENTRY_RESULT("fileutil::IsDir", result);
    ZYN_TRACE(1, "aPath=>%s<", aPath.c_str());

    const platform::PathKind kind = platform::KindOf(aPath);
    if (kind == platform::PathKind::Missing)
        return result = false;

    aIsDir = kind == platform::PathKind::Directory;
    ZYN_TRACE(1, "aIsDir=%s", aIsDir ? "true" : "false");
    return result = true;
}

bool GetFiles(std::string aDir, std::string pattern, std::list<std::string> & files)
{
    bool result = false;
    ZYN_SENTRY_RESULT("fileutil::GetFiles", result);
    ZYN_TRACE(1, "aDir=>%s<", aDir.c_str());

    const std::string prefix = aDir + SeparatorAfter(aDir);
    bool isDirectory = false;
    const bool exists = IsDir(aDir, isDirectory);

    std::vector<std::string> names;
    const auto search = platform::FindEntries(prefix + (pattern.empty() ? "*" : pattern), names);
    if (search != platform::SearchResult::Found)
        return result = exists && search == platform::SearchResult::NoMatch;

    std::list<std::string> found;
    for (const std::string & name : names) {
        const std::string path = prefix + name;
        if (IsDir(path, isDirectory) && !isDirectory)
            found.push_back(path);
    }
    files.splice(files.end(), found);
    return result = true;
}

}   // namespace fileutil
