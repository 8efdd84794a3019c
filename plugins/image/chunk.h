/// The content of one chunk: a key with its raw value, or a subsystem that holds none.

#ifndef IMAGECONFIG_CHUNK_H
#define IMAGECONFIG_CHUNK_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace imageconfig {

inline constexpr std::size_t MAX_INDICES = 9;             // further ones would come back in another order
inline constexpr std::uint32_t INDEX_LIMIT = 100000000;   // from here on the last digits would be lost

enum class Form : std::uint8_t
{
    WORDS = 0,    // of 16 bits
    OCTETS = 1,   // text and octet strings, and structs that are packed so
};

/// The key's number, the indices of a table row, and the value as a device holds it.
struct RawKey
{
    std::uint32_t mId = 0;
    std::vector<std::uint32_t> mIndices;
    Form mForm = Form::WORDS;
    std::string mData;
};

struct Chunk
{
    std::optional<int> mSubsystemType;
    std::optional<RawKey> mKey;   // none for a subsystem without keys
};

std::string ComposeChunk(const Chunk & chunk);

/// Nothing, with the reason in `error`, for bytes that are no chunk of a key.
std::optional<Chunk> ParseChunk(std::string_view bytes, std::string & error);

/// Why these indices can't be carried; empty if they can.
std::string ObjectionTo(const std::vector<std::uint32_t> & indices);

/// "key 288", "key 514.1.0 (GainTrim)": with the indices and the name, where there are any.
std::string KeyName(std::uint32_t id, const std::vector<std::uint32_t> & indices, const std::string & name);

}   // namespace imageconfig

#endif
