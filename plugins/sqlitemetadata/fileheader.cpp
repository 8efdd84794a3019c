#include "fileheader.h"

#include <kit/metadataschema/schema.h>

#include <configtools/keywords.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string_view>
#include <system_error>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

/// The header of an SQLite database; its numbers are big-endian.
constexpr std::size_t HEADER_SIZE = 100;
using Header = std::array<unsigned char, HEADER_SIZE>;

constexpr std::string_view MAGIC("SQLite format 3\0", 16);
constexpr std::size_t AT_PAGE_SIZE = 16;
constexpr std::size_t AT_READ_VERSION = 19;
constexpr std::size_t AT_CHANGE_COUNTER = 24;
constexpr std::size_t AT_PAGE_COUNT = 28;
constexpr std::size_t AT_USER_VERSION = 60;
constexpr std::size_t AT_APPLICATION_ID = 68;
constexpr std::size_t AT_VERSION_VALID_FOR = 92;

constexpr unsigned WRITE_AHEAD = 2;

/// A repository of 10000 keys is a hundredth of it.
constexpr std::uint64_t LARGEST_FILE = std::uint64_t{ 1 } << 28;

std::uint32_t NumberAt(const Header & header, std::size_t position)
{
    std::uint32_t number = 0;
    for (std::size_t at = position; at < position + 4; ++at)
        number = number << 8 | header[at];
    return number;
}

std::uint64_t PageSizeOf(const Header & header)
{
    const std::uint32_t size = std::uint32_t{ header[AT_PAGE_SIZE] } << 8 | header[AT_PAGE_SIZE + 1];
    return size == 1 ? 65536 : size;   // the largest doesn't fit the field
}

std::string UnableToOpen(const std::string & reason)
{
    return std::string(keywords::ERROR_UNABLE_TO_OPEN_FILE) + " (" + reason + ')';
}

std::string WhyNoRegularFile(const std::string & path)
{
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (path.find('\0') != std::string::npos || status.type() == std::filesystem::file_type::not_found)
        return UnableToOpen("there is no such file");
    if (error)
        return UnableToOpen(error.message());
    if (status.type() == std::filesystem::file_type::directory)
        return UnableToOpen("it is a directory");
    if (status.type() != std::filesystem::file_type::regular)
        return UnableToOpen("it is no regular file");
    return std::string();
}

std::string WhyNoRepositoryHeader(const Header & header, std::uint64_t fileSize)
{
    if (std::string_view(reinterpret_cast<const char *>(header.data()), MAGIC.size()) != MAGIC)
        return "no metadata repository (the file doesn't begin as an SQLite database does)";
    const auto id = static_cast<std::int32_t>(NumberAt(header, AT_APPLICATION_ID));
    if (id != kit::metadataschema::APPLICATION_ID)
        return "no metadata repository (an SQLite database of another kind: its application_id is " +
               std::to_string(id) + ", not " + std::to_string(kit::metadataschema::APPLICATION_ID) + ')';
    const auto version = static_cast<std::int32_t>(NumberAt(header, AT_USER_VERSION));
    if (version != kit::metadataschema::SCHEMA_VERSION)
        return "the repository has version " + std::to_string(version) +
               " of the schema; this plug-in reads version " + std::to_string(kit::metadataschema::SCHEMA_VERSION) +
               (version > kit::metadataschema::SCHEMA_VERSION ? " (take a newer plug-in, or compile the metadata again)"
                                         : " (compile the metadata again)");
    // Reading such a database would create files beside it.
    if (header[AT_READ_VERSION] >= WRITE_AHEAD)
        return "the repository is in the write-ahead mode, which can't be read without writing (set \"PRAGMA "
               "journal_mode = DELETE\", or compile the metadata again)";
    const std::uint64_t size = PageSizeOf(header) * NumberAt(header, AT_PAGE_COUNT);
    const bool isSizeValid = NumberAt(header, AT_CHANGE_COUNTER) == NumberAt(header, AT_VERSION_VALID_FOR);
    if (isSizeValid && size > fileSize)
        return "the file is cut off (" + std::to_string(fileSize) + " of " + std::to_string(size) + " bytes)";
    return std::string();
}

}   // namespace

std::string WhyNoRepository(const std::string & path)
{
    std::string reason = WhyNoRegularFile(path);
    if (!reason.empty())
        return reason;
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    if (!file)
        return UnableToOpen(std::strerror(errno));
    Header header{};
    file.read(reinterpret_cast<char *>(header.data()), HEADER_SIZE);
    if (file.bad())
        return keywords::ERROR_READING_FILE;
    if (file.gcount() == 0)
        return "no metadata repository (the file is empty)";
    if (file.gcount() < static_cast<std::streamsize>(HEADER_SIZE))
        return "no metadata repository (the file has " + std::to_string(file.gcount()) + " bytes)";
    file.seekg(0, std::ios::end);
    const auto size = static_cast<std::uint64_t>(file.tellg());
    if (size > LARGEST_FILE)
        return "the file is too large (" + std::to_string(size) + " bytes)";
    return WhyNoRepositoryHeader(header, size);
}

}   // namespace sqlitemetadata
