#include "defaultrow.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/payloads.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>
#include <kit/numbertypes/number.h>

#include <algorithm>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

/// Counts what the codec writes of a struct.
class CSizeWriter : public IConfigWriter
{
public:
    std::uint64_t Size() const { return mSize; }

    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override {}
    void StartSubsystem(IConfigContext &) override {}
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override {}
    void WriteKeyId(std::uint32_t, IConfigContext &) override {}
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(IPayload & payload, IConfigContext &) override { mSize += payload.Length(); }

private:
    std::uint64_t mSize = 0;
};

// By the codec itself, so that the rule for sizes stands in one place: an empty struct has the size of a full one.
std::uint64_t PackedSize(CMetadataDetailStruct & layout)
{
    CComplexPayload empty(PAYLOAD_COMPLEX);
    CStructCodec codec;
    codec.Encode(empty, layout);
    CSizeWriter writer;
    codec.Write(writer, CNullContext::Ref());
    return writer.Size();
}

// The factory would look at the low bits alone. The numbers of a repository have 64 bits, signed or unsigned.
bool FitsType(std::int64_t number, const std::string & typeWord)
{
    const NumberType * const type = FindNumberType(typeWord);
    return type == nullptr || type->mBits == 64 || kit::numbertypes::RangeOf(*type).Contains(number);
}

std::string WhyNoIndex(const CTableIndex & index, std::uint32_t value)
{
    const std::string beginning = "the index " + index.Name() + " is " + std::to_string(value) + ", but ";
    if (index.Type() == CTableIndex::INDEX_INTEGER) {
        const bool isWithin = value >= index.Min() && value <= index.Max();
        const std::string range = std::to_string(index.Min()) + " to " + std::to_string(index.Max());
        return isWithin ? std::string() : beginning + "it has to be from " + range;
    }
    const std::map<std::string, std::int32_t> enumerators = index.Enums();
    const bool isKnown = std::any_of(enumerators.begin(), enumerators.end(),
        [value](const auto & entry) { return static_cast<std::uint32_t>(entry.second) == value; });
    return isKnown ? std::string() : beginning + "it has no enumerator with this number";
}

std::string WhyNoIndices(const IMetadata & record, const std::vector<std::uint32_t> & indices)
{
    if (indices.size() != record.NumIndices())
        return "the row has " + std::to_string(indices.size()) + " indices, the key " +
               std::to_string(record.NumIndices());
    for (std::size_t position = 0; position < indices.size(); ++position) {
        const CTableIndex * const index = record.TableIndex(static_cast<std::uint16_t>(position + 1));
        std::string reason = index != nullptr ? WhyNoIndex(*index, indices[position]) : "an index is missing";
        if (!reason.empty())
            return reason;
    }
    return std::string();
}

bool IsText(const IMetadata & record)
{
    const std::string type = record.InternalType();
    return record.MetadataType() == METADATA_SIMPLE &&
           (type == keywords::TYPE_STRING || type == keywords::TYPE_OCTET_STRING);
}

// Of an array of texts the factory keeps the last one, and of an array of enumerators none.
bool HoldsOneItem(const IMetadata & record)
{
    return !record.IsArray() || record.MetadataType() == METADATA_ENUM || IsText(record);
}

std::string WhyNoCount(const IMetadata & record, std::size_t count)
{
    if (count == 0)
        return "it has no items";
    if (HoldsOneItem(record))
        return count == 1 ? std::string()
                          : "it has " + std::to_string(count) + " items, but an element holds one";
    const auto items = static_cast<std::int64_t>(count);
    const bool isTooLong = record.ArrayMaxLength() != 0 && items > record.ArrayMaxLength();
    if (items >= record.ArrayMinLength() && !isTooLong)
        return std::string();
    return "it has " + std::to_string(count) + " items, but there have to be from " +
           std::to_string(record.ArrayMinLength()) + " to " + std::to_string(record.ArrayMaxLength());
}

std::string WhyNoStruct(CMetadataDetailStruct & layout, const DefaultItem & item)
{
    if (item.mKind != DefaultItem::Kind::OCTETS)
        return "a packed struct has to be a BLOB";
    const std::uint64_t size = PackedSize(layout);
    return item.mOctets.size() == size ? std::string()
                                       : "the packed struct has " + std::to_string(item.mOctets.size()) +
                                             " octets, but there have to be " + std::to_string(size);
}

std::string WhyNoNumber(const IMetadata & record, const DefaultItem & item)
{
    if (item.mKind != DefaultItem::Kind::NUMBER)
        return "the value has to be an INTEGER";
    const bool isEnumerator = record.MetadataType() == METADATA_ENUM;
    const std::string type = isEnumerator ? std::string(keywords::TYPE_INT32) : record.InternalType();
    return FitsType(item.mNumber, type) ? std::string()
                                        : "the value " + std::to_string(item.mNumber) + " doesn't fit " + type;
}

std::string WhyNoItem(const IMetadata & record, const DefaultItem & item)
{
    if (auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details()))
        return WhyNoStruct(*layout, item);
    if (!IsText(record))
        return WhyNoNumber(record, item);
    if (record.InternalType() == keywords::TYPE_OCTET_STRING)
        return item.mKind == DefaultItem::Kind::OCTETS ? std::string() : "an octet string has to be a BLOB";
    return item.mKind == DefaultItem::Kind::TEXT ? std::string() : "a text has to be a TEXT";
}

}   // namespace

std::string WhyNoValue(const IMetadata & record, const DefaultRow & row)
{
    std::string reason = WhyNoIndices(record, row.mIndices);
    if (reason.empty())
        reason = WhyNoCount(record, row.mItems.size());
    for (const DefaultItem & item : row.mItems)
        if (reason.empty())
            reason = WhyNoItem(record, item);
    return reason;
}

}   // namespace sqlitemetadata
