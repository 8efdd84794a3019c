/// A file that appears at its place whole or not at all.

#ifndef KIT_TARGETFILE_TARGETFILE_H
#define KIT_TARGETFILE_TARGETFILE_H

#include <string>
#include <string_view>

struct stat;

namespace kit::targetfile {

/// The text goes to a temporary file beside the target, ".NAME.PROCESS.N.tmp", which takes the target's place once it is
/// safely on the disk. Whatever ends the process before then leaves the old file as it was; at worst the temporary
/// file stays behind.
///
/// A symbolic link is followed and stays. A file that is there keeps its permissions and, where the user may give it
/// away, its owner; one that is write-protected is left alone. What is no plain file (a terminal, a pipe) can't be
/// replaced and is written to directly.
class CTargetFile
{
public:
    CTargetFile() = default;
    CTargetFile(const CTargetFile &) = delete;
    CTargetFile & operator=(const CTargetFile &) = delete;
    ~CTargetFile();

    /// Prepares for writing, so that a place that can't be written to is known at once. False with the reason.
    bool Open(const std::string & path, std::string & reason);
    bool IsOpen() const;

    /// Makes `text` the content of the target, and closes. False with the reason, and then the target is as it was.
    bool Commit(std::string_view text, std::string & reason);

    /// Closes and leaves the target as it was.
    void Discard();

private:
    bool OpenTemporary(const struct stat * replaced);
    bool WriteAll(std::string_view text);
    bool Close();
    bool TakePlace();

    std::string mTarget;      // with symbolic links followed
    std::string mTemporary;   // empty for a target that is written to directly
    int mDescriptor = -1;     // -1 while closed
};

}   // namespace kit::targetfile

#endif
