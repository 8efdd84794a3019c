#include <configtools/structcodec.h>

#include "plan.h"
#include "words.h"
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/numbertypes.h>
#include <configtools/readerwriter.h>
#include <messages/trace.h>
#include <misc/keepforever.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <bit>
#include <new>

namespace VrexZynConfigTools {

static_assert(
    std::endian::native == std::endian::little, "the words are packed in the order of the host's bytes");

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;
constexpr std::uint32_t DECISIONS = 3;

}   // namespace

namespace structcodec {

void SetLayoutError(const std::string & text)
{
    ZYN_HANDLER("VrexZynConfigTools::CStructCodec").SetErrorMsg(0, text);
}

std::string TooLargeText(std::uint64_t bits)
{
    return "the metadata describes a struct of " + std::to_string(bits) + " bits, more than the " +
           std::to_string(MAX_STRUCT_BITS) + " that one can have";
}

std::string TooManyText(std::uint64_t bits)
{
    return "the metadata describes a struct of " + std::to_string(bits) + " bits with more than " +
           std::to_string(MaxValues(bits)) + " values";
}

std::string NoSizeText(const IMetadata & record)
{
    return "the structs of the array " + record.Name() + " have no size in the metadata";
}

std::string NoFieldsText(const IMetadata & record)
{
    return "the struct field " + record.Name() + " has no fields of its own in the metadata";
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
    const auto fitting = std::find_if(NUMBER_TYPES.begin(), NUMBER_TYPES.end(), [&](const NumberType & type) {
        return type.mIsSigned != isUnsigned && type.mBits >= static_cast<std::uint32_t>(bits);
    });
    result = fitting->mKeyword;   // of one sign the narrowest comes first, and the widest has 64 bits
    return result;
}

std::uint32_t CStructCodec::BitsForInternalType(const std::string & type)
{
    std::uint32_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::BitsForInternalType", result);

    if (type == keywords::TYPE_INTEGER)
        return result = 0;   // its width is that of the field
    const NumberType * const number = FindNumberType(type);
    return result = number != nullptr ? number->mBits : 0;
}

bool CStructCodec::Allocate(CMetadataDetailStruct & detail)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::Allocate", result);

    CleanUp();
    mOctetsInBin = detail.IsOctetsInBin();
    const std::uint64_t bits = GetStructSizeInBits(detail);
    const std::uint64_t words = (bits + BITS_IN_UINT16 - 1) / BITS_IN_UINT16;
    if (bits > structcodec::MAX_STRUCT_BITS) {
        structcodec::SetLayoutError(structcodec::TooLargeText(bits));
        return result = false;
    }
    if (words == 0)
        return result = true;
    mpWords = new (std::nothrow) std::uint16_t[words]();
    if (mpWords == nullptr) {
        structcodec::SetLayoutError("no memory for a struct of " + std::to_string(bits) + " bits");
        return result = false;
    }
    mBitSize = bits;
    mNumOctets = (bits + 7) / 8;
    mNumWords = words;
    return result = true;
}

std::uint64_t CStructCodec::GetStructSizeInBits(CMetadataDetailStruct & detail)
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CStructCodec::GetStructSizeInBits", result);

    return result = StructSizeInBits(detail);
}

void CStructCodec::CleanUp()
{
    ZYN_SENTRY("VrexZynConfigTools::CStructCodec::CleanUp");

    delete[] mpWords;
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
