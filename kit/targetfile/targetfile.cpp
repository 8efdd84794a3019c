#include "targetfile.h"

#include <cerrno>
#include <climits>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace kit::targetfile {

namespace {

constexpr int MAX_LINKS = 40;           // as many as the system itself follows
constexpr int MAX_ATTEMPTS = 1000;      // to find a free name
constexpr std::size_t MAX_STEM = 200;   // bytes of the target's name in that of the temporary file

std::string FolderOf(const std::string & path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string::npos ? "" : path.substr(0, slash + 1);
}

// Replaces a path by that behind a chain of symbolic links, which may end at a file that doesn't exist yet. False, with
// `errno` set, for links that lead in a circle.
bool FollowLinks(std::string & path)
{
    for (int count = 0; count < MAX_LINKS; ++count) {
        char target[PATH_MAX];
        const ssize_t length = ::readlink(path.c_str(), target, sizeof target);
        if (length <= 0)
            return true;   // no link
        path = target[0] == '/' ? "" : FolderOf(path);
        path.append(target, static_cast<std::size_t>(length));
    }
    errno = ELOOP;
    return false;
}

bool Fail(std::string & reason, int error)
{
    reason = std::strerror(error);
    return false;
}

// What the new file is to have in common with the one that it replaces.
void TakeOver(int descriptor, const struct stat & facts)
{
    if (::fchown(descriptor, facts.st_uid, facts.st_gid) != 0)
        errno = 0;   // only the superuser gives files away; the new file is the user's own then
    if (::fchmod(descriptor, facts.st_mode & 0777) != 0)
        errno = 0;   // a file system without permissions
}

}   // namespace

CTargetFile::~CTargetFile()
{
    Discard();
}

bool CTargetFile::Open(const std::string & path, std::string & reason)
{
    Discard();
    struct stat facts = {};
    const bool exists = ::stat(path.c_str(), &facts) == 0;
    if (exists && ::access(path.c_str(), W_OK) != 0)
        return Fail(reason, errno);
    if (exists && !S_ISREG(facts.st_mode)) {
        mDescriptor = ::open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY);
        return mDescriptor >= 0 || Fail(reason, errno);
    }
    mTarget = path;
    const bool isOpen = FollowLinks(mTarget) && OpenTemporary(exists ? &facts : nullptr);
    return isOpen || Fail(reason, errno);
}

bool CTargetFile::OpenTemporary(const struct stat * replaced)
{
    const std::string folder = FolderOf(mTarget);
    const std::string name = mTarget.substr(folder.size());
    if (name.empty()) {
        errno = ENOENT;
        return false;
    }
    const mode_t mode = replaced != nullptr ? replaced->st_mode & 0777 : 0666;
    const std::string stem = folder + '.' + name.substr(0, MAX_STEM) + '.' + std::to_string(::getpid()) + '.';
    for (int attempt = 0; attempt < MAX_ATTEMPTS; ++attempt) {
        std::string temporary = stem + std::to_string(attempt) + ".tmp";
        mDescriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
        if (mDescriptor < 0 && errno == EEXIST)
            continue;
        if (mDescriptor < 0)
            return false;
        mTemporary = std::move(temporary);
        if (replaced != nullptr)
            TakeOver(mDescriptor, *replaced);
        return true;
    }
    return false;
}

bool CTargetFile::IsOpen() const
{
    return mDescriptor >= 0;
}

bool CTargetFile::Commit(std::string_view text, std::string & reason)
{
    const bool isWritten = WriteAll(text) && (mTemporary.empty() || ::fsync(mDescriptor) == 0);
    const bool isDone = isWritten && Close() && TakePlace();
    const int error = errno;
    Discard();
    return isDone || Fail(reason, error);
}

bool CTargetFile::WriteAll(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t count = ::write(mDescriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool CTargetFile::Close()
{
    const int descriptor = mDescriptor;
    mDescriptor = -1;
    return ::close(descriptor) == 0;
}

bool CTargetFile::TakePlace()
{
    if (mTemporary.empty())
        return true;
    if (::rename(mTemporary.c_str(), mTarget.c_str()) != 0)
        return false;
    mTemporary.clear();

    // The new entry of the folder is made lasting too. Some file systems can't; the file is in its place all the same.
    const std::string folder = FolderOf(mTarget);
    const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
    return true;
}

void CTargetFile::Discard()
{
    if (mDescriptor >= 0)
        Close();
    if (!mTemporary.empty())
        ::unlink(mTemporary.c_str());
    mTemporary.clear();
}

}   // namespace kit::targetfile
