#include "chunk.h"

#include "bytes.h"

#include <algorithm>
#include <limits>

namespace imageconfig {

namespace {

constexpr std::int32_t NO_TYPE = std::numeric_limits<std::int32_t>::min();
constexpr int MAX_TYPE = 65535;

std::string ObjectionToKey(const RawKey & key, std::uint32_t form)
{
    if (key.mId == 0)
        return "a key has the number 0";
    if (form > static_cast<std::uint32_t>(Form::OCTETS))
        return KeyName(key.mId, {}, "") + ": a value of the unknown form " + std::to_string(form);
    if (key.mForm == Form::WORDS && key.mData.size() % 2 != 0)
        return KeyName(key.mId, {}, "") + ": a value of words has an odd number of bytes";
    const std::string objection = ObjectionTo(key.mIndices);
    return objection.empty() ? objection : KeyName(key.mId, {}, "") + ": " + objection;
}

std::optional<RawKey> ParseKey(CByteReader & reader, std::string & error)
{
    RawKey key;
    key.mId = reader.Number(4);
    const std::uint32_t form = reader.Number(1);
    key.mForm = static_cast<Form>(form);
    for (std::uint32_t left = reader.Number(1); left > 0; --left)
        key.mIndices.push_back(reader.Number(4));
    key.mData = reader.Rest();
    error = reader.IsCutOff() ? "a key is cut off" : ObjectionToKey(key, form);
    return error.empty() ? std::optional(std::move(key)) : std::nullopt;
}

}   // namespace

std::string ComposeChunk(const Chunk & chunk)
{
    std::string bytes;
    AppendNumber(bytes, static_cast<std::uint32_t>(chunk.mSubsystemType.value_or(NO_TYPE)), 4);
    if (!chunk.mKey)
        return bytes;
    const RawKey & key = *chunk.mKey;
    AppendNumber(bytes, key.mId, 4);
    AppendNumber(bytes, static_cast<std::uint64_t>(key.mForm), 1);
    AppendNumber(bytes, key.mIndices.size(), 1);
    for (const std::uint32_t index : key.mIndices)
        AppendNumber(bytes, index, 4);
    return bytes + key.mData;
}

std::optional<Chunk> ParseChunk(std::string_view bytes, std::string & error)
{
    error.clear();
    CByteReader reader(bytes);
    const auto type = static_cast<std::int32_t>(reader.Number(4));
    if (reader.IsCutOff())
        error = "it is cut off";
    else if (type != NO_TYPE && (type < -1 || type > MAX_TYPE))
        error = "the subsystem type " + std::to_string(type) + " is out of range";
    Chunk chunk;
    chunk.mSubsystemType = type != NO_TYPE ? std::optional<int>(type) : std::nullopt;
    if (error.empty() && !reader.Rest().empty())
        chunk.mKey = ParseKey(reader, error);
    return error.empty() ? std::optional(std::move(chunk)) : std::nullopt;
}

std::string ObjectionTo(const std::vector<std::uint32_t> & indices)
{
    if (indices.size() > MAX_INDICES)
        return "a table row of " + std::to_string(indices.size()) + " indices; an image holds " +
               std::to_string(MAX_INDICES) + " at most";
    const auto large =
        std::find_if(indices.begin(), indices.end(), [](std::uint32_t index) { return index >= INDEX_LIMIT; });
    return large != indices.end() ? "the index " + std::to_string(*large) +
                                        " is out of range; expected less than " + std::to_string(INDEX_LIMIT)
                                  : std::string();
}

std::string KeyName(std::uint32_t id, const std::vector<std::uint32_t> & indices, const std::string & name)
{
    std::string text = "key " + std::to_string(id);
    for (const std::uint32_t index : indices)
        text += '.' + std::to_string(index);
    return name.empty() ? text : text + " (" + name + ')';
}

}   // namespace imageconfig
