#include "imagefile.h"

#include <configtools/keywords.h>
#include <kit/targetfile/targetfile.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t BLOCK = 1U << 16U;

// Up to `count` further bytes; fewer at the end of the file. In blocks, so that a length that lies costs no memory.
void ReadUpTo(std::istream & file, std::string & bytes, std::size_t count)
{
    const std::size_t wanted = bytes.size() + count;
    while (bytes.size() < wanted && file) {
        const std::size_t size = bytes.size();
        bytes.resize(std::min(wanted, size + BLOCK));
        file.read(bytes.data() + size, static_cast<std::streamsize>(bytes.size() - size));
        bytes.resize(size + static_cast<std::size_t>(file.gcount()));
    }
}

std::nullopt_t Fail(const char * what, std::string & error)
{
    error = std::string(what) + " (" + std::strerror(errno) + ')';
    return std::nullopt;
}

std::optional<std::string> ReadImage(const std::string & path, std::string & error)
{
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open())
        return Fail(keywords::ERROR_UNABLE_TO_OPEN_FILE, error);
    std::string bytes;
    ReadUpTo(file, bytes, HEAD_LENGTH);
    if (file.bad())   // a folder, among others
        return Fail(keywords::ERROR_READING_FILE, error);
    const auto length = AnnouncedLength(bytes, error);
    if (!length)
        return std::nullopt;
    ReadUpTo(file, bytes, *length - bytes.size() + 1);   // one more, to see whether the file ends there
    if (file.bad())
        return Fail(keywords::ERROR_READING_FILE, error);
    return bytes;
}

}   // namespace

std::optional<Image> LoadImage(const std::string & path, std::string & error)
{
    const auto bytes = ReadImage(path, error);
    return bytes ? ParseImage(*bytes, error) : std::nullopt;
}

bool SaveImage(const std::string & path, const Image & image, std::string & error)
{
    kit::targetfile::CTargetFile file;
    const bool isDone = file.Open(path, error) && file.Commit(ComposeImage(image), error);
    if (!isDone)
        error = std::string(keywords::ERROR_UNABLE_TO_WRITE_FILE) + " (" + error + ')';
    return isDone;
}

}   // namespace imageconfig
