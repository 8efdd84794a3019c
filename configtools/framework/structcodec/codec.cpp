#include <configtools/structcodec.h>

#include "../elements/payloadmemory.h"
#include "plan.h"
#include "walk.h"
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>
#include <misc/keepforever.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <array>
#include <bit>
#include <new>
#include <string_view>

namespace VrexZynConfigTools {

static_assert(
    std::endian::native == std::endian::little, "the words are packed in the order of the host's bytes");

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

struct IntegerType
{
    std::string_view mKeyword;
    std::uint32_t mBits;
};
constexpr std::array INTEGER_TYPES = { IntegerType{ keywords::TYPE_UINT8, 8 },
    IntegerType{ keywords::TYPE_INT8, 8 }, IntegerType{ keywords::TYPE_UINT16, 16 },
    IntegerType{ keywords::TYPE_INT16, 16 }, IntegerType{ keywords::TYPE_UINT32, 32 },
    IntegerType{ keywords::TYPE_INT32, 32 }, IntegerType{ keywords::TYPE_UINT64, 64 },
    IntegerType{ keywords::TYPE_INT64, 64 } };

/// Indexed by the number of bytes that a field needs, less one.
using TypesByBytes = std::array<const char *, 8>;
constexpr TypesByBytes SIGNED_TYPES = { keywords::TYPE_INT8, keywords::TYPE_INT16, keywords::TYPE_INT32,
    keywords::TYPE_INT32, keywords::TYPE_INT64, keywords::TYPE_INT64, keywords::TYPE_INT64,
    keywords::TYPE_INT64 };
constexpr TypesByBytes UNSIGNED_TYPES = { keywords::TYPE_UINT8, keywords::TYPE_UINT16, keywords::TYPE_UINT32,
    keywords::TYPE_UINT32, keywords::TYPE_UINT64, keywords::TYPE_UINT64, keywords::TYPE_UINT64,
    keywords::TYPE_UINT64 };

/// In a struct that isn't little-endian a wide plain field's position names its last word; the others lie below.
bool LiesBelowItsPosition(const CStructField & field, bool littleEndian)
{
    const IMetadata * const metadata = field.Metadata();
    return !littleEndian && field.ElemBitWidth() >= 17 && field.ElemBitWidth() <= 64 && metadata != nullptr &&
           metadata->MetadataType() == METADATA_SIMPLE && !metadata->IsArray();
}

/// What is allocated for the words. Those of most structs fit into the memory of a payload; where there is no such
/// memory, under a sanitizer, they get no more than they need, so that it sees every step past them.
std::size_t BytesFor(std::uint64_t words)
{
    const std::size_t bytes = words * sizeof(std::uint16_t);
    return ZYN_PAYLOAD_SHELVES != 0 ? std::max(bytes, payloadmemory::SMALL_BLOCK) : bytes;
}

}   // namespace

namespace structcodec {

void SetLayoutError(const std::string & text)
{
    ZYN_HANDLER("VrexZynConfigTools::CStructCodec").SetErrorMsg(0, text);
}

const std::vector<const CStructField *> & FieldsOf(CMetadataDetailStruct & detail)
{
    static const std::vector<const CStructField *> NONE;
    const std::vector<const CStructField *> * const fields = detail.GetStructFields();
    return fields != nullptr ? *fields : NONE;
}

const IMetadata * RecordOf(const CStructField * field)
{
    const IMetadata * const record = field != nullptr ? field->Metadata() : nullptr;
    if (record == nullptr)
        SetLayoutError("a struct field has no metadata");
    return record;
}

CMetadataDetailStruct * NestedLayout(const IMetadata & metadata)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(metadata.Details());
    if (layout == nullptr)
        SetLayoutError("the struct field " + metadata.Name() + " has no fields of its own in the metadata");
    return layout;
}

std::uint64_t SizeInBits(CMetadataDetailStruct & detail)
{
    std::uint64_t size = 0;
    for (const CStructField * const field : structcodec::FieldsOf(detail)) {
        if (field == nullptr)
            continue;   // a hole in the list of a plug-in's class
        const std::int64_t width = LiesBelowItsPosition(*field, detail.IsLittleEndian())
                                       ? int{ CStructCodec::BITS_IN_UINT16 }
                                       : field->ElemBitWidth();
        // Compared as unsigned numbers, intended: a field that ends below 0 makes a struct that is far too large.
        size = std::max(size, static_cast<std::uint64_t>(field->ElemLsbBitPos() + width));
    }
    return size;
}

}   // namespace structcodec

CStructCodec::CStructCodec()
    : mpWords(nullptr)
    , mNumWords(0)
    , mBitSize(0)
    , mNumOctets(0)
    , mOctetsInBin(false)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::CStructCodec");
}

CStructCodec::CStructCodec(const CStructCodec & other) = default;

CStructCodec & CStructCodec::operator=(const CStructCodec & other)
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::operator=");

    if (this == &other)
        return *this;
    KeepForEver(mpWords);   // lost, intended: another copy may share it
    mpWords = other.mpWords;
    mNumWords = other.mNumWords;
    mBitSize = other.mBitSize;
    mNumOctets = other.mNumOctets;
    mOctetsInBin = other.mOctetsInBin;
    return *this;
}

CStructCodec::~CStructCodec()
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::~CStructCodec");

    CleanUp();
}

bool CStructCodec::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::Write", result);

    if (mOctetsInBin) {
        const std::string octets =
            mNumOctets != 0 ? std::string(reinterpret_cast<const char *>(mpWords), mNumOctets) : std::string();
        CStringPayload payload(octets, true);
        writer.WritePayload(payload, context);
        return result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
    }
    for (std::uint64_t index = 0; index < mNumWords && result; ++index) {
        CUint16Payload payload(mpWords[index]);
        writer.WritePayload(payload, context);
        result = !ZYN_HANDLER(zynFunction).IsErrorSet(GROUP_FRAMEWORK, true);
    }
    return result;
}

std::string CStructCodec::GetIntTypeFromBitWidth(const std::string & bitWidth, bool isUnsigned)
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::GetIntTypeFromBitWidth", result);

    const int bits = stringutil::DecimalToInt(bitWidth);
    if (bits < 1 || bits > 64) {
        ZYN_TRACE(DECISIONS, "Unable to return the correct integer type. bitWidth = %d", bits);
        return result;
    }
    const TypesByBytes & types = isUnsigned ? UNSIGNED_TYPES : SIGNED_TYPES;
    result = types[static_cast<std::size_t>(bits - 1) / 8];
    return result;
}

std::uint32_t CStructCodec::BitsForInternalType(const std::string & type)
{
    const auto found = std::find_if(INTEGER_TYPES.begin(), INTEGER_TYPES.end(),
        [&type](const IntegerType & entry) { return entry.mKeyword == type; });
    return found != INTEGER_TYPES.end() ? found->mBits : 0;
}

bool CStructCodec::Allocate(CMetadataDetailStruct & detail, const CStructPlan * plan)
{
    using structcodec::MAX_STRUCT_BITS;
    CleanUp();
    mOctetsInBin = detail.IsOctetsInBin();
    const std::uint64_t bits = plan != nullptr ? plan->Bits() : GetStructSizeInBits(detail);
    const std::uint64_t words = (bits + BITS_IN_UINT16 - 1) / BITS_IN_UINT16;
    if (bits > MAX_STRUCT_BITS) {
        structcodec::SetLayoutError("the metadata describes a struct of " + std::to_string(bits) +
                                    " bits, more than the " + std::to_string(MAX_STRUCT_BITS) +
                                    " that one can have");
        return false;
    }
    if (words == 0)
        return true;
    mpWords = static_cast<std::uint16_t *>(payloadmemory::Allocate(BytesFor(words), std::nothrow));
    if (mpWords == nullptr) {
        structcodec::SetLayoutError("no memory for a struct of " + std::to_string(bits) + " bits");
        return false;
    }
    std::fill_n(mpWords, words, std::uint16_t{ 0 });
    mBitSize = bits;
    mNumOctets = (bits + 7) / 8;
    mNumWords = words;
    return true;
}

std::uint64_t CStructCodec::GetStructSizeInBits(CMetadataDetailStruct & detail)
{
    return structcodec::SizeInBits(detail);
}

void CStructCodec::CleanUp()
{
    payloadmemory::Free(mpWords, BytesFor(mNumWords));
    mpWords = nullptr;
    mNumWords = 0;
    mBitSize = 0;
    mNumOctets = 0;
}

structcodec::CWords CStructCodec::Words() const
{
    return structcodec::CWords(mpWords, mNumWords);
}

}   // namespace VrexZynConfigTools
