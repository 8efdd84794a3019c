#include <misc/elfcheck.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace elfcheck {

namespace {

using platform::LoadFailure;
using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);
using Offset = ElfW(Off);

class CFile
{
public:
    explicit CFile(const std::string & path)
        : mDescriptor(
              open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC))   // or a pipe would wait for its writer
    {}
    CFile(const CFile &) = delete;
    CFile & operator=(const CFile &) = delete;
    ~CFile()
    {
        if (IsOpen())
            close(mDescriptor);
    }

    bool IsOpen() const { return mDescriptor >= 0; }
    bool GetStatus(struct stat & status) const { return fstat(mDescriptor, &status) == 0; }

    /// False if the file doesn't have all of the value.
    template <typename T>
    bool ReadAt(Offset offset, T & value) const
    {
        return pread(mDescriptor, &value, sizeof value, static_cast<off_t>(offset)) ==
               static_cast<ssize_t>(sizeof value);
    }

private:
    int mDescriptor;   // negative for none
};

LoadFailure CheckHeader(const Header & header)
{
    // The header of the very module that holds this code: what is loaded must be made for the same machine.
    Dl_info info = {};
    if (dladdr(reinterpret_cast<const void *>(&CheckHeader), &info) == 0)
        return LoadFailure::None;
    const auto & own = *static_cast<const Header *>(info.dli_fbase);
    if (!std::equal(header.e_ident, header.e_ident + EI_OSABI, own.e_ident) ||
        header.e_machine != own.e_machine)
        return LoadFailure::OtherMachine;
    return header.e_type == ET_DYN && header.e_phentsize == sizeof(Segment) ? LoadFailure::None
                                                                            : LoadFailure::NotShared;
}

LoadFailure CheckSegments(const CFile & file, const Header & header, Offset fileSize)
{
    for (Offset i = 0; i < header.e_phnum; ++i) {
        Segment segment = {};
        if (!file.ReadAt(header.e_phoff + i * sizeof segment, segment))
            return LoadFailure::HeadersOutsideFile;
        // The loader maps no others.
        if (segment.p_type == PT_LOAD &&
            (segment.p_offset > fileSize || segment.p_filesz > fileSize - segment.p_offset))
            return LoadFailure::SegmentOutsideFile;
    }
    return LoadFailure::None;
}

}   // namespace

LoadFailure Check(const std::string & path)
{
    // To open a pipe or a device does something to it.
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return LoadFailure::NotRegularFile;
    const CFile file(path);
    if (!file.IsOpen() || !file.GetStatus(status))
        return LoadFailure::Unreadable;
    if (!S_ISREG(status.st_mode))
        return LoadFailure::NotRegularFile;   // replaced since it was looked at

    Header header = {};
    const bool isWhole = file.ReadAt(0, header);
    if (!std::equal(header.e_ident, header.e_ident + SELFMAG, ELFMAG))
        return LoadFailure::NotElf;
    if (!isWhole)
        return LoadFailure::HeadersOutsideFile;
    const LoadFailure failure = CheckHeader(header);
    return failure != LoadFailure::None ? failure
                                        : CheckSegments(file, header, static_cast<Offset>(status.st_size));
}

}   // namespace elfcheck
