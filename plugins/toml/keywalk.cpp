#include "keywalk.h"

#include "recordfacts.h"

#include <configtools/keywords.h>
#include <configtools/structlayout.h>
#include <kit/layout/structtree.h>
#include <kit/reporting/channel.h>
#include <kit/text/words.h>

#include <algorithm>
#include <string_view>

namespace tomlconfig {

using kit::reporting::TakeError;
using kit::text::Counted;

namespace {

constexpr std::size_t MAX_ITEMS = 65536;   // of one array

bool BeginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

std::string Between(std::int64_t least, std::int64_t most)
{
    return std::to_string(least) + (least == most ? "" : " to " + std::to_string(most));
}

}   // namespace

CKeyWalk::CKeyWalk(CElementFactory & factory, CValueSource & source, CFindings & findings,
    const toml::node & value, bool checks)
    : mFactory(factory)
    , mSource(source)
    , mFindings(findings)
    , mValues(findings)
    , mValue(value)
    , mChecks(checks)
{}

void CKeyWalk::StartElement(const IMetadata & metadata)
{
    mFactory.StartElement(metadata);
}

void CKeyWalk::EndElement()
{
    mFactory.EndElement();
}

void CKeyWalk::IntIndex(const CTableIndex & index)
{
    mSource.UseIndex(index);
    mFactory.IntIndex(index);
}

void CKeyWalk::EnumIndex(const CTableIndex & index)
{
    mSource.UseIndex(index);
    mFactory.EnumIndex(index);
}

void CKeyWalk::Int(const IMetadata & metadata)
{
    Deliver(metadata, &CElementFactory::Int);
}

void CKeyWalk::String(const IMetadata & metadata)
{
    Deliver(metadata, &CElementFactory::String);
}

void CKeyWalk::Enum(const IMetadata & metadata)
{
    Deliver(metadata, &CElementFactory::Enum);
}

// All items of an array are delivered at once, and all of its structs by `EndArrayItem`.
bool CKeyWalk::InspectDetailAgain()
{
    return false;
}

void CKeyWalk::SetContextInfo(const std::string & key, int value)
{
    if (key == keywords::TAG_ELEM_BIT_WIDTH)
        mWidth = value;
    mFactory.SetContextInfo(key, value);
}

void CKeyWalk::SetContextInfo(const std::string & key, const std::string & value)
{
    mFactory.SetContextInfo(key, value);
}

void CKeyWalk::StartArrayItem()
{
    mRuns.push_back({ mLevels.size(), nullptr, {}, 0 });
    mFactory.StartArrayItem();
}

void CKeyWalk::EndArrayItem()
{
    mFactory.EndArrayItem();
    Run & run = mRuns.back();
    while (run.mRecord != nullptr && run.mNext < run.mItems.size()) {
        const std::size_t before = run.mNext;
        run.mRecord->Details()->Inspect(*this);
        if (run.mNext == before)
            break;   // a walk that was cut off, which leaves an error
    }
    mRuns.pop_back();
}

void CKeyWalk::StartStruct(const IMetadata & metadata)
{
    const std::string label = Label(metadata);
    const toml::node * const node = NextStruct(metadata);
    const toml::table * table = node != nullptr ? node->as_table() : nullptr;
    if (node != nullptr && table == nullptr)
        mValues.AddMismatch(*node, label, "a structure { FIELD = VALUE, ... }");
    if (table != nullptr && !HasFieldNames(metadata)) {
        Add(*table, metadata, "bad-metadata",
            "the metadata gives two of its fields one name, or none; give the key a type, and its fields as "
            "{ TYPE = VALUE }");
        table = nullptr;
    }
    if (table != nullptr)
        mValues.CheckFields(*table, Quoted(label), FieldNames(metadata));
    mLevels.push_back({ table, label });
    mFactory.StartStruct(metadata);
}

void CKeyWalk::EndStruct()
{
    mLevels.pop_back();
    mFactory.EndStruct();
}

const toml::node * CKeyWalk::NextStruct(const IMetadata & record)
{
    const bool isInArray = record.IsArray() && !mRuns.empty() && mRuns.back().mDepth == mLevels.size();
    if (!isInArray)
        return Find(record);
    Run & run = mRuns.back();
    if (run.mRecord == nullptr) {
        run.mRecord = &record;
        run.mItems = StructItems(record);
    }
    return run.mNext < run.mItems.size() ? run.mItems[run.mNext++] : nullptr;
}

// The value of a key or field; null where it is missing, which has been told then.
const toml::node * CKeyWalk::Find(const IMetadata & record)
{
    if (mLevels.empty())
        return &mValue;
    const Level & level = mLevels.back();
    if (level.mTable == nullptr)
        return nullptr;
    const toml::node * const node = level.mTable->get(record.Name());
    if (node == nullptr)
        mFindings.Add(FindingAt(*level.mTable, "missing-field",
            Quoted(record.Name()) + " is missing: a field of " + Quoted(level.mPath)));
    return node;
}

// A finding about the value of a key or field.
Finding CKeyWalk::About(
    const toml::node & node, const IMetadata & record, const std::string & code, const std::string & text) const
{
    Finding finding = FindingAt(node, code, Quoted(Label(record)) + ": " + text);
    finding.mField = mLevels.empty() ? "" : Label(record);
    return finding;
}

void CKeyWalk::Add(
    const toml::node & node, const IMetadata & record, const std::string & code, const std::string & text)
{
    mFindings.Add(About(node, record, code, text));
}

std::string CKeyWalk::Label(const IMetadata & record) const
{
    return mLevels.empty() ? KeyText(record) : mLevels.back().mPath + '.' + record.Name();
}

void CKeyWalk::Deliver(const IMetadata & record, Callback callback)
{
    auto items = Items(record);
    if (items.empty())
        return;
    mSource.Load(record, Label(record), std::move(items));
    do {   // more than once only where the factory stopped at a mistake or takes one at a time
        (mFactory.*callback)(record);
        Judge(record);
    } while (mSource.HasMore());
}

void CKeyWalk::Judge(const IMetadata & record)
{
    const auto error = TakeError();
    if (mSource.IsRefused())
        return;   // has been told; the factory complains of the 0 in its place
    if (error)
        mFindings.Add(Explained(*error, record));
    else if (!mLevels.empty() && mChecks && mSource.LastType().empty())
        JudgeLength(record);
}

// In the words of the file, where the factory has those of the library. It prints large numbers as negative ones, too.
Finding CKeyWalk::Explained(const std::string & error, const IMetadata & record) const
{
    const auto about = [&](const std::string & code, const std::string & text) {
        return About(mSource.Last(), record, code, text);
    };
    if (BeginsWith(error, "Read value ") && !mSource.LastType().empty())
        return WithExpected(about("out-of-range", mSource.LastText() + " is out of range"),
            RangeText(record, mSource.LastType()));
    if (BeginsWith(error, "String value's length"))
        return WithExpected(about("wrong-length", "found " + Counted(mSource.LastBytes().size(), "byte")),
            Between(record.Min(), record.Max()));
    if (BeginsWith(error, "Value ") && record.MetadataType() == METADATA_ENUM)
        return WithAlternatives(
            about("unknown-enumerator", "no enumerator has the number " + mSource.LastText()),
            EnumeratorNames(record));
    return about("rejected-value", error);
}

// A field has no length of its own on a device: octets fill it, and a text that is longer would be cut off.
void CKeyWalk::JudgeLength(const IMetadata & record)
{
    const bool isOctet = record.InternalType() == keywords::TYPE_OCTET_STRING;
    if (record.MetadataType() != METADATA_SIMPLE ||
        (!isOctet && record.InternalType() != keywords::TYPE_STRING))
        return;
    const auto width = static_cast<std::size_t>(std::max(mWidth, 0));
    const std::size_t held = width > 64 ? width / 16 * 2 : width / 8;   // wide fields are whole words
    const std::size_t length = mSource.LastBytes().size();
    if (length > held || (isOctet && length != held))
        Add(mSource.Last(), record, "wrong-length",
            "expected " + Counted(held, "byte") + (isOctet ? "" : " at most") + ", found " +
                std::to_string(length));
    else if (!isOctet && length != 0 && mSource.LastBytes().back() == '\0')
        Add(mSource.Last(), record, "ends-in-zero",
            "a text in a structure ends where zeros begin; this one ends in one");
}

std::vector<const toml::node *> CKeyWalk::Items(const IMetadata & record)
{
    const toml::node * const node = Find(record);
    if (node == nullptr)
        return {};
    if (!record.IsArray())
        return { node };   // an array is no value, which whoever takes it will find
    auto items = ItemsOf(*node);
    return IsCountGood(*node, record, items.size()) ? items : std::vector<const toml::node *>();
}

std::vector<const toml::node *> CKeyWalk::StructItems(const IMetadata & record)
{
    const toml::node * const node = Find(record);
    if (node == nullptr)
        return {};
    auto items = ItemsOf(*node);
    return IsCountGood(*node, record, items.size()) ? items : std::vector<const toml::node *>();
}

// The values of an array, or the one that stands without brackets.
std::vector<const toml::node *> CKeyWalk::ItemsOf(const toml::node & node)
{
    const toml::array * const array = node.as_array();
    if (array == nullptr)
        return { &node };
    std::vector<const toml::node *> items;
    if (array->size() > MAX_ITEMS)
        return items;
    items.reserve(array->size());
    for (const toml::node & item : *array)
        items.push_back(&item);
    return items;
}

bool CKeyWalk::IsCountGood(const toml::node & node, const IMetadata & record, std::size_t count)
{
    const toml::array * const array = node.as_array();
    if (array != nullptr && array->size() > MAX_ITEMS) {
        mFindings.Add(
            WithExpected(About(node, record, "wrong-count", "found " + Counted(array->size(), "value")),
                std::to_string(MAX_ITEMS) + " at most"));
        return false;
    }
    if (!mLevels.empty())
        return FitsField(node, record, count);
    const bool isNumber = record.MetadataType() == METADATA_SIMPLE && FindNumberType(record.InternalType());
    const bool isAlone = !isNumber && record.MetadataType() != METADATA_STRUCT;
    auto most = mChecks && record.ArrayMaxLength() > 0 ? record.ArrayMaxLength() : std::int64_t{ MAX_ITEMS };
    most = isAlone ? 1 : most;   // the factory keeps one text or enumerator of an array
    const auto least = std::clamp<std::int64_t>(mChecks ? record.ArrayMinLength() : 1, 1, most);
    const auto found = static_cast<std::int64_t>(count);
    if (found >= least && found <= most)
        return true;
    mFindings.Add(WithExpected(
        About(node, record, "wrong-count", "found " + Counted(count, "value")), Between(least, most)));
    return false;
}

// An array in a struct has a fixed number of items: those that its width holds.
bool CKeyWalk::FitsField(const toml::node & node, const IMetadata & record, std::size_t count)
{
    const std::uint64_t held = HeldByField(record);
    if (held == count && count != 0)
        return true;
    if (held == 0)
        Add(node, record, "bad-metadata", "the metadata describes an array without room for an item");
    else
        mFindings.Add(WithExpected(
            About(node, record, "wrong-count", "found " + Counted(count, "value")), std::to_string(held)));
    return false;
}

std::uint64_t CKeyWalk::HeldByField(const IMetadata & record) const
{
    if (record.MetadataType() != METADATA_STRUCT)
        return kit::layout::ItemsHeld(mWidth, record.InternalType());
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    const std::uint64_t size = layout != nullptr ? StructSizeInBits(*layout) : 0;
    return size != 0 ? static_cast<std::uint64_t>(std::max(mWidth, 0)) / size : 0;
}

}   // namespace tomlconfig
