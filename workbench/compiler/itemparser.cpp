#include "itemparser.h"

#include <limits>

namespace workbench::compiler {

namespace {

constexpr std::int64_t MAX_UINT32 = std::numeric_limits<std::uint32_t>::max();
constexpr std::int64_t MIN_INT = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t MAX_INT = std::numeric_limits<std::int32_t>::max();

void ParseTexts(CTableReader & reader, Item & item)
{
    item.mLabel = reader.PlainText("label");
    item.mCategory = reader.PlainText("category");
    item.mUnits = reader.PlainText("units");
    item.mOid = reader.PlainText("oid");
    item.mTable = reader.PlainText("table");
    item.mDescription = reader.PlainText("description");
    item.mInternalDescription = reader.PlainText("internal_description");
    item.mReference = reader.PlainText("reference");
    item.mTemporality = reader.PlainText("temporality");
    item.mHash = reader.PlainText("hash");
    item.mIsInternal = reader.Flag("internal", false).mValue;
    item.mAccess = reader.Text("access");
}

// What a table says of a value's shape. The layout is its own struct's, or null if it refers to a shared one.
void ParseShape(CTableReader & reader, Item & item, std::size_t file, CSourceFindings & findings)
{
    item.mPlace = reader.Begin();
    item.mName = reader.Text("name");
    item.mType = reader.Text("type");
    item.mFormat = reader.Text("format");
    item.mRange = reader.Range("range");
    item.mLength = reader.Length("length");
    item.mArray = reader.Length("array");
    item.mEnumName = reader.Text("enum");
    item.mValues = reader.EnumeratorTable("values");
    item.mStructName = reader.Text("struct");
    auto layout = ParseLayout(reader, file, findings);
    if (!layout->mFields.empty() || layout->mBits.mIsGiven || layout->mLittleEndian.mIsGiven)
        item.mLayout = std::move(layout);
}

Field ParseField(const toml::table & table, std::size_t file, CSourceFindings & findings)
{
    const std::size_t errors = findings.ErrorCount();
    CTableReader reader(table, file, "a field of a struct", findings);
    Field field;
    ParseShape(reader, field, file, findings);
    ParseTexts(reader, field);
    field.mPosition = reader.Integer("position", MIN_INT, MAX_INT);
    field.mWidth = reader.Integer("width", MIN_INT, MAX_INT);
    field.mIsSound = findings.ErrorCount() == errors;
    reader.RefuseUnknown();
    return field;
}

Index ParseIndex(const toml::table & table, std::size_t file, CSourceFindings & findings)
{
    CTableReader reader(table, file, "an index", findings);
    Index index;
    index.mPlace = reader.Begin();
    index.mName = reader.Text("name");
    index.mRange = reader.Range("range");
    index.mValues = reader.EnumeratorTable("values");
    reader.RefuseUnknown();
    return index;
}

}   // namespace

Key ParseKey(const toml::table & table, std::size_t file, CSourceFindings & findings)
{
    const std::size_t errors = findings.ErrorCount();
    CTableReader reader(table, file, "a key", findings);
    Key key;
    key.mId = reader.Integer("id", 1, MAX_UINT32);
    ParseShape(reader, key, file, findings);
    ParseTexts(reader, key);
    key.mOctets = reader.Flag("octets", false);
    for (const toml::table * index : reader.Tables("index", "[[subsystem.key.index]]"))
        key.mIndices.push_back(ParseIndex(*index, file, findings));
    if (const toml::node * list = reader.Find("index");
        list != nullptr && list->is_array() && list->as_array()->empty())
        findings.Error(reader.PlaceOf(*list), "\"index\": expected one index at least");
    key.mDefault = reader.AnyValue("default");
    key.mIsSound = findings.ErrorCount() == errors;
    reader.RefuseUnknown();
    return key;
}

// As deep as toml++ itself lets tables nest.
std::shared_ptr<Layout> ParseLayout(CTableReader & reader, std::size_t file, CSourceFindings & findings)
{
    auto layout = std::make_shared<Layout>();
    layout->mPlace = reader.Begin();
    layout->mLittleEndian = reader.Flag("little_endian", true);
    layout->mBits = reader.Integer("bits", 1, MAX_STRUCT_BITS);
    for (const toml::table * field : reader.Tables("field", "[[field]]"))
        layout->mFields.push_back(ParseField(*field, file, findings));
    return layout;
}

}   // namespace workbench::compiler
