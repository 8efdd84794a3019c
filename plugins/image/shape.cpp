#include "shape.h"

#include "words.h"

#include <configtools/metadata.h>
#include <configtools/structlayout.h>

#include <algorithm>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

/// How many octets one value takes; 0 if the value is a text, which is one however long it is.
std::size_t BytesOfOne(const RawKey & key, const IMetadata & record)
{
    if (record.MetadataType() == METADATA_ENUM)
        return WORDS_OF_ENUM * BYTES_OF_WORD;
    if (auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details())) {
        const auto bits = static_cast<std::size_t>(StructSizeInBits(*layout));
        return key.mForm == Form::OCTETS ? (bits + 7) / 8 : (bits + 15) / 16 * BYTES_OF_WORD;
    }
    const NumberType * const type = TypeByKeyword(record.InternalType());
    return type != nullptr ? WordsOf(*type) * BYTES_OF_WORD : 0;
}

std::string RangeText(std::int64_t least, std::int64_t most)
{
    return std::to_string(least) + (least == most ? "" : " to " + std::to_string(most));
}

std::string ObjectionToCount(const RawKey & key, const IMetadata & record)
{
    const std::size_t size = BytesOfOne(key, record);
    if (size == 0)
        return std::string();
    const auto found = static_cast<std::int64_t>(key.mData.size() / size);
    const bool isLimited = !record.IsArray() || record.ArrayMaxLength() > 0;
    const std::int64_t most = !record.IsArray() ? 1 : record.ArrayMaxLength();
    const std::int64_t least = !record.IsArray() ? 1 : std::max<std::int64_t>(record.ArrayMinLength(), 1);
    if (found >= least && (!isLimited || found <= most))
        return std::string();
    return "found " + std::to_string(found) + (found == 1 ? " value" : " values") + "; expected " +
           (isLimited ? RangeText(least, most) : std::to_string(least) + " at least");
}

std::string ObjectionToIndex(const CTableIndex & index, std::uint32_t number)
{
    const std::string text = "the index \"" + index.Name() + "\" is " + std::to_string(number);
    if (index.Type() == CTableIndex::INDEX_INTEGER)
        return number >= index.Min() && number <= index.Max()
                   ? std::string()
                   : text + "; expected " + RangeText(index.Min(), index.Max());
    return !index.EnumLabel(static_cast<std::int32_t>(number)).empty() ? std::string()
                                                                       : text + ", which has no name";
}

}   // namespace

std::string ObjectionToShape(const RawKey & key, const IMetadata & record)
{
    std::string objection = ObjectionToCount(key, record);
    for (std::size_t place = 0; objection.empty() && place < key.mIndices.size(); ++place)
        if (const CTableIndex * const index = record.TableIndex(static_cast<std::uint16_t>(place + 1)))
            objection = ObjectionToIndex(*index, key.mIndices[place]);
    return objection;
}

}   // namespace imageconfig
