#include "fitting.h"

#include "fields.h"
#include "scalars.h"

#include <configtools/metadata.h>
#include <kit/text/utf8.h>

#include <algorithm>
#include <optional>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

IPayload * ItemAt(IPayload * value, std::size_t place)
{
    return place < ItemsOf(value).size() ? ItemsOf(value)[place] : nullptr;
}

// Missing items come back as 0, and of several names of one enumerator any; neither is a change.
bool IsSame(IPayload & value, IPayload * back)
{
    if (dynamic_cast<CComplexPayload *>(&value) != nullptr) {
        for (std::size_t place = 0; place < ItemsOf(&value).size(); ++place)
            if (!IsSame(*ItemsOf(&value)[place], ItemAt(back, place)))
                return false;
        return true;
    }
    const auto number = ValueOf(value);
    return back != nullptr && (number ? number == ValueOf(*back) : value == *back);
}

// The number, of an array the first one, that has more bits than there are for it; null for none.
IPayload * Misfit(IPayload & value, const StructEntry & entry)
{
    if (entry.mKind == StructEntryKind::ARRAY) {
        const auto found = std::find_if(ItemsOf(&value).begin(), ItemsOf(&value).end(), [&](IPayload * item) {
            return !entry.mParts.empty() && Misfit(*item, entry.mParts.front()) != nullptr;
        });
        return found != ItemsOf(&value).end() ? *found : nullptr;
    }
    const auto number = ValueOf(value);
    if (!number)
        return nullptr;
    const NumberForm form{ entry.mWidth, entry.mHasSign || number->mIsNegative };
    return form.Holds(*number) ? nullptr : &value;
}

// The values of the fields of all structs, in the order of `CFields::Places`; null for those of missing structs.
void AddValues(IPayload * tree, const std::vector<StructEntry> & entries, std::vector<IPayload *> & values)
{
    for (std::size_t place = 0; place < entries.size(); ++place) {
        const StructEntry & entry = entries[place];
        IPayload * const value = ItemAt(tree, place);
        if (entry.mKind == StructEntryKind::STRUCT)
            AddValues(value, entry.mParts, values);
        else if (entry.mKind != StructEntryKind::STRUCTS)
            values.push_back(value);
        else
            for (std::size_t item = 0; item < entry.mParts.size(); ++item)
                AddValues(ItemAt(value, item), entry.mParts[item].mParts, values);
    }
}

// A field that loses nothing by itself is changed by another's value that is out of range.
Change ChangeOf(IPayload & value, IPayload * back, const Field & field, const std::string & label)
{
    const StructEntry & entry = *field.mEntry;
    IPayload * const misfit = Misfit(value, entry);
    const Loss loss = misfit != nullptr           ? Loss::TOO_WIDE
                      : field.mLoss == Loss::NONE ? Loss::SHARED_BITS
                                                  : field.mLoss;
    const bool isArray = entry.mKind == StructEntryKind::ARRAY && !entry.mParts.empty();
    return { label, field.mPath, ValueText(misfit != nullptr ? *misfit : value),
        back != nullptr ? ValueText(*back) : "nothing", loss,
        isArray ? entry.mParts.front().mWidth : entry.mWidth };
}

}   // namespace

std::string ValueText(IPayload & payload)
{
    if (auto * const bytes = dynamic_cast<CStringPayload *>(&payload))
        return kit::text::Printable(bytes->GetValue());
    auto * const enumerator = dynamic_cast<CEnumPayload *>(&payload);
    if (enumerator != nullptr && enumerator->GetName().empty())
        return std::to_string(enumerator->GetValue());
    if (dynamic_cast<CComplexPayload *>(&payload) == nullptr)
        return payload.ToString();
    std::string text;
    for (IPayload * const item : ItemsOf(&payload))
        text += (text.empty() ? "" : ", ") + ValueText(*item);
    return '[' + text + ']';
}

std::vector<Change> Differences(CComplexPayload & tree, CComplexPayload & back, CMetadataDetailStruct & layout,
    const std::vector<StructEntry> & entries)
{
    std::vector<IPayload *> values;
    std::vector<IPayload *> found;
    AddValues(&tree, entries, values);
    AddValues(&back, entries, found);
    std::vector<Change> changes;
    std::optional<CFields> fields;   // looked at for a change alone, since the answer takes long
    for (std::size_t place = 0; place < values.size(); ++place) {
        if (values[place] == nullptr || IsSame(*values[place], found[place]))
            continue;
        if (!fields)
            fields.emplace(layout, SIZE_MAX);
        const FieldPlace & where = fields->Places()[place];
        changes.push_back(ChangeOf(*values[place], found[place], fields->List()[where.mField], where.mLabel));
    }
    return changes;
}

}   // namespace kit::layout
