/// A payload class as a plug-in might write it: no metadata user, none of the library's payloads underneath.

#ifndef TESTS_SUPPORT_FOREIGN_PAYLOAD_H
#define TESTS_SUPPORT_FOREIGN_PAYLOAD_H

#include <configtools/payloads.h>
#include <configtools/readerwriter.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// Holds bytes. Equal to a foreign payload with the same bytes, and to nothing else.
class ForeignPayload : public IPayload
{
public:
    explicit ForeignPayload(std::string bytes, PayloadTypeEnum type = PAYLOAD_RAW)
        : mBytes(std::move(bytes))
        , mType(type)
    {}

    bool Write(IConfigWriter & writer, IConfigContext & context) override
    {
        writer.WritePayload(*this, context);
        return mWriteResult;
    }
    bool operator==(IPayload const & other) const override
    {
        const auto * right = dynamic_cast<const ForeignPayload *>(&other);
        return right != nullptr && mBytes == right->mBytes;
    }
    PayloadTypeEnum Type() override { return mType; }
    std::uint64_t Length() override { return mBytes.size(); }
    const void * RawData() override { return mBytes.data(); }
    std::string ToString() override { return "foreign"; }

    std::uint64_t WriteToMem(void * destination, std::uint64_t maximum) override
    {
        mMaxima.push_back(maximum);
        const std::uint64_t count = std::min<std::uint64_t>(maximum, mBytes.size());
        std::memcpy(destination, mBytes.data(), count);
        return count;
    }

    /// What `Write` returns; true without this.
    void Fail() { mWriteResult = false; }

    /// The maximum of each call of `WriteToMem` so far.
    const std::vector<std::uint64_t> & Maxima() const { return mMaxima; }

private:
    std::string mBytes;
    PayloadTypeEnum mType;
    bool mWriteResult = true;
    std::vector<std::uint64_t> mMaxima;
};

/// A metadata user that notes each record it was given.
class UsingPayload : public ForeignPayload, public IMetadataUser
{
public:
    using ForeignPayload::ForeignPayload;

    void Use(IMetadata const & metadata) override { mUsed.push_back(&metadata); }
    IMetadata const * Metadata() override { return mUsed.empty() ? nullptr : mUsed.back(); }

    const std::vector<const IMetadata *> & Used() const { return mUsed; }

private:
    std::vector<const IMetadata *> mUsed;
};

}   // namespace VrexZynConfigTools::support

#endif
