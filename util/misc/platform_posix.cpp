#include <misc/platform.h>

#include <misc/elfcheck.h>

#include <ctype.h>
#include <dirent.h>
#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

namespace platform {

namespace {

/// The system's calls would take a text with an embedded NUL for a shorter one.
bool IsPossiblePath(const std::string & path)
{
    return path.find('\0') == std::string::npos;
}

/// Whether `text` matches, with "*" for any text and "?" for any one character.
bool Matches(std::string_view pattern, std::string_view text)
{
    std::size_t at = 0;                          // in the pattern
    std::size_t position = 0;                    // in the text
    std::size_t star = std::string_view::npos;   // the latest "*" met; only that one can take in more text
    std::size_t taken = 0;                       // up to where it has
    while (position < text.size()) {
        if (at < pattern.size() && pattern[at] == '*') {
            star = at++;
            taken = position;
        } else if (at < pattern.size() && (pattern[at] == '?' || pattern[at] == text[position])) {
            ++at;
            ++position;
        } else if (star != std::string_view::npos) {
            at = star + 1;
            position = ++taken;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

struct DirectoryCloser
{
    void operator()(DIR * directory) const { closedir(directory); }
};

/// The system loader puts a directory of its own in place of such a word.
bool HasLoaderWord(const std::string & path)
{
    static constexpr std::array<std::string_view, 6> WORDS = { "$ORIGIN", "${ORIGIN}", "$LIB", "${LIB}",
        "$PLATFORM", "${PLATFORM}" };
    return std::any_of(WORDS.begin(), WORDS.end(),
        [&path](std::string_view word) { return path.find(word) != std::string::npos; });
}

constexpr std::array<const char *, static_cast<std::size_t>(LoadFailure::RejectedByLoader)> FAILURE_TEXTS = {
    "nothing is wrong", "the path has a NUL or a word that the loader replaces", "there is no regular file",
    "the file can't be read", "the file is not in ELF format", "it is made for another machine",
    "it is not a shared module", "its program headers reach beyond the end of the file",
    "a segment reaches beyond the end of the file"
};
static_assert(FAILURE_TEXTS.back() != nullptr);

/// Whether an address is code of the module that was loaded at `mBase`.
struct CodeQuestion
{
    ElfW(Addr) mBase;
    ElfW(Addr) mAddress;
    bool mIsCode;
};

bool HoldsCodeAt(const dl_phdr_info & module, ElfW(Addr) address)
{
    const ElfW(Phdr) * const end = module.dlpi_phdr + module.dlpi_phnum;
    return std::any_of(module.dlpi_phdr, end, [&](const ElfW(Phdr) & segment) {
        return segment.p_type == PT_LOAD && (segment.p_flags & PF_X) != 0 &&
               address - module.dlpi_addr - segment.p_vaddr < segment.p_memsz;
    });
}

int AnswerForModule(dl_phdr_info * module, std::size_t, void * data)
{
    auto & question = *static_cast<CodeQuestion *>(data);
    if (module->dlpi_addr == question.mBase)
        question.mIsCode = question.mIsCode || HoldsCodeAt(*module, question.mAddress);
    return 0;   // go on to the next module
}

}   // namespace

PathKind KindOf(const std::string & path)
{
    struct stat status = {};
    if (!IsPossiblePath(path) || stat(path.c_str(), &status) != 0)
        return PathKind::Missing;
    return S_ISDIR(status.st_mode) ? PathKind::Directory : PathKind::Other;
}

SearchResult FindEntries(const std::string & searchPath, std::vector<std::string> & names)
{
    names.clear();
    if (!IsPossiblePath(searchPath))
        return SearchResult::Failed;
    const std::size_t patternAt = searchPath.rfind(SEPARATOR) + 1;   // 0 if there is no separator
    const std::string directoryPath = patternAt == 0 ? "." : searchPath.substr(0, patternAt);
    const std::string_view pattern = std::string_view(searchPath).substr(patternAt);

    const std::unique_ptr<DIR, DirectoryCloser> directory(opendir(directoryPath.c_str()));
    if (!directory)
        return SearchResult::Failed;
    while (const dirent * const entry = readdir(directory.get())) {
        if (Matches(pattern, entry->d_name))
            names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end());
    return names.empty() ? SearchResult::NoMatch : SearchResult::Found;
}

const char * TextOf(LoadFailure failure)
{
    if (failure != LoadFailure::RejectedByLoader)
        return FAILURE_TEXTS.at(static_cast<std::size_t>(failure));
    const char * const text = dlerror();
    return text != nullptr ? text : "the loader rejects it";
}

ModuleHandle OpenModule(const std::string & path, LoadFailure & failure)
{
    failure = LoadFailure::UnusablePath;
    if (!IsPossiblePath(path) || HasLoaderWord(path))
        return nullptr;
    // A bare name would be looked for in the folders of the system's libraries.
    const std::string place = path.find(SEPARATOR) == std::string::npos ? "./" + path : path;
    failure = elfcheck::Check(place);
    if (failure != LoadFailure::None)
        return nullptr;
    const ModuleHandle module = dlopen(place.c_str(), RTLD_NOW | RTLD_LOCAL);
    failure = module != nullptr ? LoadFailure::None : LoadFailure::RejectedByLoader;
    return module;
}

EntryPoint FindEntryPoint(ModuleHandle module, const char * name)
{
    void * const address = dlsym(module, name);
    link_map * record = nullptr;
    if (address == nullptr || dlinfo(module, RTLD_DI_LINKMAP, &record) != 0)
        return nullptr;
    // The loader also finds what libraries of the module export, and data.
    CodeQuestion question = { record->l_addr, reinterpret_cast<ElfW(Addr)>(address), false };
    dl_iterate_phdr(AnswerForModule, &question);
    return question.mIsCode ? reinterpret_cast<EntryPoint>(address) : nullptr;
}

void CloseModule(ModuleHandle module)
{
    dlclose(module);
}

bool UpdateLowerCases(LowerCases & known)
{
#ifdef __GLIBC__
    const int * const table = *__ctype_tolower_loc();
    if (std::memcmp(table, known.data(), sizeof(known)) == 0)
        return false;
    std::copy_n(table, known.size(), known.begin());
    return true;
#else
    LowerCases present{};
    for (std::size_t byte = 0; byte < present.size(); ++byte)
        present[byte] = std::tolower(static_cast<int>(byte));
    const bool differs = present != known;
    known = present;
    return differs;
#endif
}

}   // namespace platform
