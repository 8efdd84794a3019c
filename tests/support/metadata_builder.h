/// Small records, most of whose fields play no part in a test.
///
///     const auto record = ARecord(100).Named("volume").Array().Build();

#ifndef TESTS_SUPPORT_METADATA_BUILDER_H
#define TESTS_SUPPORT_METADATA_BUILDER_H

#include <configtools/metadata.h>

#include <cstdint>
#include <memory>
#include <string>

namespace VrexZynConfigTools::support {

class ARecord
{
public:
    explicit ARecord(std::uint32_t psId)
        : mPsId(psId)
    {}

    ARecord & Named(const std::string & name)
    {
        mName = name;
        return *this;
    }

    /// A keyword such as "uint8"; "uint32" without this.
    ARecord & OfType(const std::string & internalType)
    {
        mInternalType = internalType;
        return *this;
    }

    /// A keyword such as "signed_decimal"; none without this.
    ARecord & Formatted(const std::string & format)
    {
        mFormat = format;
        return *this;
    }

    /// The smallest and the largest value; 0 and 0 without this.
    ARecord & Within(std::int64_t min, std::int64_t max)
    {
        mMin = min;
        mMax = max;
        return *this;
    }

    ARecord & Array(std::int64_t minLength = 0, std::int64_t maxLength = 100)
    {
        mIsArray = true;
        mArrayMinLength = minLength;
        mArrayMaxLength = maxLength;
        return *this;
    }

    /// `METADATA_SIMPLE` without this.
    ARecord & Shaped(MetadataTypeEnum shape)
    {
        mShape = shape;
        return *this;
    }

    ARecord & WithNumIndices(std::uint32_t count)
    {
        mNumIndices = count;
        return *this;
    }

    std::unique_ptr<CMetadata> Build() const
    {
        return std::make_unique<CMetadata>(1, mPsId, mName, "", "", false, mFormat, mMin, mMax, "",
            mInternalType, "", mIsArray, mArrayMinLength, mArrayMaxLength, "", "", "", "", "", "", "", "",
            mNumIndices, mShape);
    }

private:
    std::uint32_t mPsId;
    std::string mName;
    std::string mInternalType = "uint32";
    std::string mFormat;
    std::int64_t mMin = 0;
    std::int64_t mMax = 0;
    bool mIsArray = false;
    std::int64_t mArrayMinLength = 0;
    std::int64_t mArrayMaxLength = 0;
    MetadataTypeEnum mShape = METADATA_SIMPLE;
    std::uint32_t mNumIndices = 0;
};

}   // namespace VrexZynConfigTools::support

#endif
