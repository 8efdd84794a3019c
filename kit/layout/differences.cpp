#include "fitting.h"

#include "scalars.h"

#include <configtools/metadata.h>
#include <kit/text/utf8.h>

#include <algorithm>

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

class CComparer
{
public:
    struct Names
    {
        std::string mPath;
        std::string mLabel;
    };

    void CompareStruct(
        IPayload * tree, IPayload * back, const std::vector<StructEntry> & entries, const Names & outer)
    {
        for (std::size_t place = 0; place < std::min(ItemsOf(tree).size(), entries.size()); ++place) {
            const std::string name = entries[place].mRecord->Name();
            CompareField(*ItemsOf(tree)[place], ItemAt(back, place), entries[place],
                { outer.mPath + name, outer.mLabel + name });
        }
    }

    std::vector<Change> mChanges;

private:
    void CompareField(IPayload & value, IPayload * back, const StructEntry & entry, const Names & names)
    {
        if (entry.mKind == StructEntryKind::STRUCT)
            return CompareStruct(&value, back, entry.mParts, { names.mPath + '.', names.mLabel + '.' });
        if (entry.mKind == StructEntryKind::STRUCTS) {
            for (std::size_t place = 0; place < ItemsOf(&value).size(); ++place)
                CompareStruct(ItemsOf(&value)[place], ItemAt(back, place), entry.mParts.at(place).mParts,
                    { names.mPath + "[].", names.mLabel + '[' + std::to_string(place) + "]." });
            return;
        }
        if (IsSame(value, back))
            return;
        IPayload * const misfit = Misfit(value, entry);
        const std::uint32_t bits =
            entry.mParts.empty() || !entry.mRecord->IsArray() ? entry.mWidth : entry.mParts.front().mWidth;
        mChanges.push_back({ names.mLabel, names.mPath, ValueText(misfit != nullptr ? *misfit : value),
            back != nullptr ? ValueText(*back) : "nothing", misfit != nullptr ? Loss::TOO_WIDE : Loss::NONE,
            bits });
    }
};

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

std::vector<Change> Differences(
    CComplexPayload & tree, CComplexPayload & back, const std::vector<StructEntry> & entries)
{
    CComparer comparer;
    comparer.CompareStruct(&tree, &back, entries, { "", "" });
    return comparer.mChanges;
}

}   // namespace kit::layout
