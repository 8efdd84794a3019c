#include "typedkey.h"

#include "recordfacts.h"
#include "values.h"

#include <configtools/keywords.h>

#include <algorithm>
#include <limits>

namespace tomlconfig {

using kit::reading::Key;

namespace {

constexpr std::int64_t MAX_UINT32 = std::numeric_limits<std::uint32_t>::max();

// A type word sorted by what makes its element.
enum class Shape
{
    NUMBERS,
    TEXT,
    ENUMERATORS,
    STRUCTURE,
    RAW
};

Shape ShapeOf(const std::string & typeWord)
{
    if (FindNumberType(typeWord) != nullptr)
        return Shape::NUMBERS;
    if (typeWord == word::ENUM)
        return Shape::ENUMERATORS;
    if (typeWord == word::STRUCT)
        return Shape::STRUCTURE;
    return typeWord == word::RAW ? Shape::RAW : Shape::TEXT;
}

MetadataTypeEnum MetadataTypeOf(Shape shape)
{
    if (shape == Shape::ENUMERATORS)
        return METADATA_ENUM;
    return shape == Shape::STRUCTURE ? METADATA_STRUCT : METADATA_SIMPLE;
}

// What the fields of a key say about it, its value aside.
struct KeyHead
{
    std::uint32_t mId = 0;
    std::string mName;
    std::string mType;
    bool mIsRow = false;
    std::vector<std::uint32_t> mIndices;
};

// An element that takes its payloads as a list. Until it has them, `payloads` own them.
template <typename ElementT>
std::unique_ptr<CElement> MakeOfList(const KeyHead & head, PayloadList & payloads)
{
    std::vector<IPayload *> list;
    for (const auto & payload : payloads)
        list.push_back(payload.get());
    auto element = std::make_unique<ElementT>(head.mId, head.mName, list, true);
    for (auto & payload : payloads)
        payload.release();   // the element owns it now
    return element;
}

// No context tags can say that a row has no indices, so it is made a row here.
std::unique_ptr<CElement> MakeRowWithoutIndices(const KeyHead & head, CElement & element)
{
    PayloadList payloads;
    payloads.reserve(element.GetPayloadCopy(false).size());
    for (IPayload * payload : element.TransferPayload())
        payloads.emplace_back(payload);
    std::vector<IPayload *> list;
    for (const auto & payload : payloads)
        list.push_back(payload.get());
    auto row = std::make_unique<CIndexedElement>(head.mId, head.mName, head.mIndices, list, true);
    for (auto & payload : payloads)
        payload.release();   // the row owns it now
    return row;
}

class CTypedKeyReader
{
public:
    CTypedKeyReader(CFindings & findings, RecordList & records, CKeyLookup * lookup, IConfigContext & context)
        : mFindings(findings)
        , mValues(findings)
        , mRecords(records)
        , mLookup(lookup)
        , mContext(context)
    {}

    std::optional<Key> Read(const toml::table & table)
    {
        mValues.CheckFields(
            table, "a key", { field::ID, field::NAME, field::TYPE, field::INDEX, field::VALUE });
        KeyHead head;
        const bool isHeadGood = ReadHead(table, head);
        const toml::node * value = mValues.Required(table, field::VALUE, "a key has a value");
        if (value == nullptr || head.mType.empty())
            return std::nullopt;
        auto element = MakeElement(head, *value);   // its findings are wanted even if the head is wrong
        if (!isHeadGood || element == nullptr)
            return std::nullopt;
        if (head.mIsRow && head.mIndices.empty())
            element = MakeRowWithoutIndices(head, *element);
        element->Use(AddRecord(head, value->is_array()));
        const toml::source_position place = table.source().begin;
        return Key{ std::move(element), head.mIndices, place.line, place.column };
    }

private:
    bool ReadHead(const toml::table & table, KeyHead & head)
    {
        const bool hasId = ReadId(table, head);
        const bool hasName = ReadName(table, head);
        const bool hasType = ReadType(table, head);
        return ReadIndices(table, head) && hasId && hasName && hasType;
    }

    // A key is known by its number, which metadata know by the name too.
    bool ReadId(const toml::table & table, KeyHead & head)
    {
        if (mLookup != nullptr && !table.contains(field::ID) && table.contains(field::NAME)) {
            const IMetadata * const record = mLookup->KeyOf(table, mContext);
            head.mId = record != nullptr ? record->PsId() : 0;
            return record != nullptr;
        }
        const toml::node * node = mValues.Required(table, field::ID, "a key has a number");
        const auto number = node != nullptr ? mValues.Integer(*node, field::ID, 1, MAX_UINT32) : std::nullopt;
        head.mId = static_cast<std::uint32_t>(number.value_or(0));
        return number.has_value();
    }

    bool IsTypeRight(const toml::node & node, const KeyHead & head)
    {
        const IMetadata * const record =
            mLookup != nullptr && head.mId != 0 ? mLookup->ById(head.mId, node, mContext) : nullptr;
        if (record == nullptr || head.mType == word::RAW || !IsDescribed(*record))
            return true;
        const std::string expected = TypeWordOf(*record);
        const auto isInteger = [](const std::string & type) {
            return type == keywords::TYPE_INTEGER || type == keywords::TYPE_INT64;
        };
        if (head.mType == expected || (isInteger(head.mType) && isInteger(expected)))
            return true;
        Finding finding = FindingAt(node, "wrong-type",
            "the type " + Quoted(head.mType) + " contradicts the metadata, by which " +
                Quoted(KeyText(*record)) + " is " + Quoted(expected) + "; leave the type out, or correct it");
        finding.mField = field::TYPE;
        finding.mExpected = expected;
        mFindings.Add(std::move(finding));
        return false;
    }

    bool ReadName(const toml::table & table, KeyHead & head)
    {
        const toml::node * node = table.get(field::NAME);
        if (node == nullptr)
            return true;
        auto name = mValues.Text(*node, field::NAME);
        head.mName = name.value_or("");
        return name.has_value();
    }

    bool ReadType(const toml::table & table, KeyHead & head)
    {
        const toml::node * node =
            mValues.Required(table, field::TYPE, "without metadata a key says the type of its value");
        if (node == nullptr)
            return false;
        const auto * text = node->as_string();
        if (text == nullptr) {
            mValues.AddMismatch(*node, field::TYPE, "a type word such as \"uint8\"");
            return false;
        }
        const auto & known = TypeWords();
        if (std::find(known.begin(), known.end(), text->get()) == known.end()) {
            mFindings.Add(WithAdvice(
                FindingAt(*node, "unknown-type", "unknown type " + Quoted(text->get())), text->get(), known));
            return false;
        }
        head.mType = text->get();
        return IsTypeRight(*node, head);
    }

    // One index as a number, several as an array.
    bool ReadIndices(const toml::table & table, KeyHead & head)
    {
        const toml::node * node = table.get(field::INDEX);
        if (node == nullptr)
            return true;
        head.mIsRow = true;
        const toml::array * array = node->as_array();
        if (array == nullptr)
            return AddIndex(*node, head);
        bool isGood = true;
        for (const toml::node & entry : *array)
            isGood = AddIndex(entry, head) && isGood;
        return isGood;
    }

    bool AddIndex(const toml::node & node, KeyHead & head)
    {
        const auto number = mValues.Integer(node, field::INDEX, 0, MAX_UINT32);
        if (number)
            head.mIndices.push_back(static_cast<std::uint32_t>(*number));
        return number.has_value();
    }

    std::unique_ptr<CElement> MakeElement(const KeyHead & head, const toml::node & value)
    {
        switch (ShapeOf(head.mType)) {
        case Shape::NUMBERS:
            return MakeNumbers(head, value);
        case Shape::TEXT:
            return MakeText(head, value);
        case Shape::ENUMERATORS:
            return MakeOfLeaves<CElementEnum>(head, value);
        default:
            return MakeStructure(head, value);
        }
    }

    std::unique_ptr<CElement> MakeNumbers(const KeyHead & head, const toml::node & value)
    {
        const NumberType & type = *FindNumberType(head.mType);
        std::vector<NumericVariable> variables;
        const bool isGood = EachItem(value, [&](const toml::node & item) {
            const auto bits = mValues.Number(item, head.mType);
            if (bits)
                variables.push_back(kit::numbertypes::VariableOf(type, *bits));
            return bits.has_value();
        });
        if (!isGood)
            return nullptr;
        auto element = std::make_unique<CElementNumericArray>(type.mType, head.mId, head.mName, true);
        element->SetValue(variables);
        return element;
    }

    std::unique_ptr<CElement> MakeText(const KeyHead & head, const toml::node & value)
    {
        if (head.mIsRow && value.is_array())
            return MakeOfLeaves<CElementString>(head, value);
        const bool isOctet = head.mType == keywords::TYPE_OCTET_STRING;
        const auto text = mValues.TextOrOctets(value, isOctet);
        return text ? std::make_unique<CElementString>(head.mId, head.mName, *text, isOctet, true) : nullptr;
    }

    template <typename ElementT>
    std::unique_ptr<CElement> MakeOfLeaves(const KeyHead & head, const toml::node & value)
    {
        PayloadList payloads;
        const bool isGood = EachItem(value, [&](const toml::node & item) {
            auto payload = mValues.Leaf(item, head.mType);
            if (payload == nullptr)
                return false;
            payloads.push_back(std::move(payload));
            return true;
        });
        return isGood ? MakeOfList<ElementT>(head, payloads) : nullptr;
    }

    std::unique_ptr<CElement> MakeStructure(const KeyHead & head, const toml::node & value)
    {
        const toml::array * array = value.as_array();
        if (array == nullptr) {
            mValues.AddMismatch(value, field::VALUE, "an array of fields [ ... ]");
            return nullptr;
        }
        if (array->empty() && !head.mName.empty()) {
            mFindings.Add(FindingAt(value, "empty-structure",
                "a structure without fields can't keep its name when it is written; give it a field or leave "
                "out "
                "the name"));
            return nullptr;
        }
        auto fields = mValues.Fields(*array, 0);
        if (head.mType == word::RAW)
            return MakeOfList<CElementRaw>(head, fields);
        auto element = std::make_unique<CElementStruct>(head.mId, head.mName, true);
        for (auto & field : fields) {
            element->AddField(field.get());
            field.release();   // the element owns it now
        }
        return element;
    }

    // One value, or several in an array; all are looked at, so that each gets its finding.
    template <typename ActionT>
    bool EachItem(const toml::node & value, ActionT action)
    {
        const toml::array * array = value.as_array();
        if (array == nullptr)
            return action(value);
        if (array->empty())
            mFindings.Add(FindingAt(
                value, "wrong-count", "\"value\": expected one value at least, found an empty array"));
        bool isGood = !array->empty();
        for (const toml::node & item : *array)
            isGood = action(item) && isGood;
        return isGood;
    }

    // Name and shape of a key reach a writer in this way only: it is told nothing but numbers and payloads.
    const CMetadata & AddRecord(const KeyHead & head, bool isInArray)
    {
        const Shape shape = ShapeOf(head.mType);
        const bool isArray = isInArray && shape != Shape::STRUCTURE && shape != Shape::RAW;
        const bool isSimple = MetadataTypeOf(shape) == METADATA_SIMPLE;
        mRecords.push_back(std::make_unique<CMetadata>(0, head.mId, head.mName, "", "", false, "", 0, 0, "",
            isSimple ? head.mType : "", "", isArray, 0, 0, "", "", "", "", "", "", "", "",
            static_cast<std::uint32_t>(head.mIndices.size()), MetadataTypeOf(shape)));
        return *mRecords.back();
    }

    CFindings & mFindings;
    CValueReader mValues;
    RecordList & mRecords;
    CKeyLookup * mLookup;   // null without metadata
    IConfigContext & mContext;
};

}   // namespace

std::optional<Key> ReadTypedKey(const toml::table & table, CFindings & findings, RecordList & records,
    CKeyLookup * lookup, IConfigContext & context)
{
    return CTypedKeyReader(findings, records, lookup, context).Read(table);
}

}   // namespace tomlconfig
