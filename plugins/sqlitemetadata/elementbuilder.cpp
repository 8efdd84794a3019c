#include "elementbuilder.h"

#include "defaultrow.h"

#include <configtools/elementfactory.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/readerwriter.h>
#include <configtools/structcodec.h>

namespace sqlitemetadata {

using namespace VrexZynConfigTools;

namespace {

/// Gives the factory a row's indices and items one after the other, and of a packed struct its words.
class CRowSource : public IElementFactorySource
{
public:
    explicit CRowSource(const DefaultRow & row)
        : mRow(row)
    {}

    bool NextInt(const std::string &, std::uint64_t & value, std::uint16_t * indexNumber) override
    {
        value = 0;
        if (indexNumber != nullptr) {
            if (*indexNumber < mRow.mIndices.size())
                value = mRow.mIndices[*indexNumber];
            return HasMore();
        }
        if (!HasMore())
            return false;
        const DefaultItem & item = mRow.mItems[mItem];
        if (item.mKind == DefaultItem::Kind::OCTETS)
            return NextWord(item.mOctets, value);
        value = static_cast<std::uint64_t>(item.mNumber);
        ++mItem;
        return HasMore();
    }

    bool NextString(std::string & value, std::uint16_t *) override
    {
        value.clear();
        if (HasMore())
            value = mRow.mItems[mItem++].mOctets;
        return HasMore();
    }

    bool NextEnum(std::uint64_t & value, std::uint16_t *) override
    {
        return NextInt(std::string(), value, nullptr);
    }

private:
    bool HasMore() const { return mItem < mRow.mItems.size(); }

    // A struct in words is asked for until it is complete; what is not there has been refused before.
    bool NextWord(const std::string & octets, std::uint64_t & value)
    {
        for (unsigned shift = 0; shift <= 8 && mOctet < octets.size(); shift += 8)
            value |= std::uint64_t{ static_cast<unsigned char>(octets[mOctet++]) } << shift;
        if (mOctet >= octets.size()) {
            mOctet = 0;
            ++mItem;
        }
        return HasMore();
    }

    const DefaultRow & mRow;
    std::size_t mItem = 0;
    std::size_t mOctet = 0;
};

/// A struct is unpacked as a block, and only then its fields are walked: an array among them must not ask for another
/// item then, though another struct may follow.
class CBlockFactory : public CElementFactory
{
public:
    using CElementFactory::CElementFactory;

    void StartStruct(const IMetadata & metadata) override
    {
        CElementFactory::StartStruct(metadata);
        ++mDepth;
    }

    void EndStruct() override
    {
        --mDepth;
        CElementFactory::EndStruct();
    }

    bool InspectDetailAgain() override { return mDepth == 0 && CElementFactory::InspectDetailAgain(); }

private:
    int mDepth = 0;
};

}   // namespace

// The factory gets a context without a subsystem: it would take the last octet of some values for padding, as they come
// from devices, and these values are exact.
CElementBuilder::CElementBuilder(IConfigContext & readContext)
    : mContext("defaults")
{
    mContext.SetTag(keywords::TAG_NO_DATA_CHECK, readContext.GetTag(keywords::TAG_NO_DATA_CHECK));
}

std::unique_ptr<CElement> CElementBuilder::Build(
    const IMetadata & record, const DefaultRow & row, std::string & reason)
{
    reason = WhyNoValue(record, row);
    if (!reason.empty())
        return nullptr;
    CRowSource source(row);
    CStructCodec codec;
    CBlockFactory factory(&source, mContext, &codec);
    factory.Clear();   // of an earlier row's indices
    record.Inspect(factory);
    std::unique_ptr<CElement> element(factory.Collect());
    reason = mErrors.Take();
    if (!reason.empty())
        element.reset();   // a text of a wrong length is built all the same
    return element;
}

}   // namespace sqlitemetadata
