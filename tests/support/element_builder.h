/// Small builders of payload lists and elements.
///
///     AnElement(100).Named("volume").Number(7).Build()          a numeric array of one unsigned 32-bit value
///     AnElement(100).Named("title").Text("abc").Build()         a string
///     AnElement(100).Named("table").WithRow(1).Number(7).Build()   a table row

#ifndef TESTS_SUPPORT_ELEMENT_BUILDER_H
#define TESTS_SUPPORT_ELEMENT_BUILDER_H

#include <configtools/elements.h>
#include <configtools/payloads.h>

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

/// The list of new payloads that the constructors of elements take over: `AListOf(new CUint8Payload(1), ...)`.
template <typename... PayloadT>
std::vector<IPayload *> AListOf(PayloadT *... payload)
{
    return { static_cast<IPayload *>(payload)... };
}

class AnElement
{
public:
    explicit AnElement(std::uint32_t psId)
        : mPsId(psId)
    {}

    AnElement & Named(const std::string & name)
    {
        mName = name;
        return *this;
    }

    /// `HasChanged` is true without this.
    AnElement & Unchanged()
    {
        mChanged = false;
        return *this;
    }

    /// Appends an unsigned 32-bit value.
    AnElement & Number(std::uint32_t value)
    {
        mNumbers.push_back(value);
        return *this;
    }

    /// Makes the element a string, or the value of a row one.
    AnElement & Text(const std::string & value)
    {
        mText = std::make_unique<std::string>(value);
        return *this;
    }

    /// Makes the element a table row; each call adds an index.
    AnElement & WithRow(std::uint32_t index)
    {
        mIsRow = true;
        mIndices.push_back(index);
        return *this;
    }

    /// A row without an index, which is not the same as no row.
    AnElement & WithoutIndices()
    {
        mIsRow = true;
        mIndices.clear();
        return *this;
    }

    /// The record stays the caller's and must outlive the element.
    AnElement & Using(const IMetadata & metadata)
    {
        mMetadata = &metadata;
        return *this;
    }

    std::unique_ptr<CElement> Build() const
    {
        auto element = mIsRow ? BuildRow() : BuildPlain();
        if (mMetadata != nullptr)
            element->Use(*mMetadata);
        return element;
    }

    /// As `Build`, for those who take a raw pointer into their ownership.
    CElement * Release() const { return Build().release(); }

private:
    std::unique_ptr<CElement> BuildPlain() const
    {
        if (mText != nullptr)
            return std::make_unique<CElementString>(mPsId, mName, *mText, false, mChanged);
        auto element = std::make_unique<CElementNumericArray>(NUMERIC_UINT32, mPsId, mName, true);
        element->SetValue(mNumbers);
        return element;
    }

    std::unique_ptr<CElement> BuildRow() const
    {
        return std::make_unique<CIndexedElement>(mPsId, mName, mIndices, Payloads(), mChanged);
    }

    std::vector<IPayload *> Payloads() const
    {
        std::vector<IPayload *> payloads;
        for (const std::uint32_t number : mNumbers)
            payloads.push_back(new CUint32Payload(number));
        if (mText != nullptr)
            payloads.push_back(new CStringPayload(*mText, false));
        return payloads;
    }

    std::uint32_t mPsId;
    std::string mName;
    bool mChanged = true;
    bool mIsRow = false;
    std::vector<std::uint32_t> mIndices;
    std::vector<std::uint32_t> mNumbers;
    std::unique_ptr<std::string> mText;   // null without a text
    const IMetadata * mMetadata = nullptr;
};

}   // namespace VrexZynConfigTools::support

#endif
