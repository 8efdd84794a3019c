#include "fittedtree.h"

#include "words.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <kit/layout/scalars.h>
#include <kit/layout/structtree.h>

#include <algorithm>

namespace imageconfig {

using namespace VrexZynConfigTools;

namespace {

constexpr std::size_t WORD_BITS = 16;
constexpr std::size_t MAX_ITEMS = 1U << 20U;   // more than any value of an image has

std::string NumberText(IPayload & payload)
{
    const std::uint64_t value = ValueOf(payload).value_or(0);
    return IsNegative(payload) ? std::to_string(static_cast<std::int64_t>(value)) : std::to_string(value);
}

/// Whether unpacking gives the value back that packing was given: the lowest bits, with the sign that the format says,
/// in a number as wide as the one given.
bool ComesBack(IPayload & payload, std::size_t bits, bool isSigned)
{
    const std::uint64_t value = ValueOf(payload).value_or(0);
    const auto ownBits = static_cast<std::size_t>(8 * payload.Length());
    const std::uint64_t unpacked = Cut(value, bits, isSigned && bits > 1);
    return Cut(unpacked, ownBits, false) == Cut(value, ownBits, false);
}

/// Whether the bits hold an item. It comes back unsigned anyway, intended.
bool IsHeld(IPayload & payload, std::size_t bits)
{
    const std::uint64_t value = ValueOf(payload).value_or(0);
    return Cut(value, bits, IsNegative(payload)) == value;
}

std::unique_ptr<IPayload> Narrowed(IPayload & payload, std::size_t bits)
{
    if (bits == WORD_BITS)
        return std::make_unique<CUint16Payload>(static_cast<std::uint16_t>(ValueOf(payload).value_or(0)));
    return kit::layout::CopyNumber(payload);
}

class CTreeFitter
{
public:
    bool FitStruct(CComplexPayload & tree, CMetadataDetailStruct & layout, CComplexPayload & to);
    const std::string & Error() const { return mError; }

private:
    bool FitField(IPayload & value, const CStructField & field, CComplexPayload & to);
    bool FitStructField(CComplexPayload & value, const IMetadata & record, CComplexPayload & to);
    bool FitArray(CComplexPayload & items, const CStructField & field, CComplexPayload & to);
    bool Refuse(IPayload & value, std::size_t bits, const IMetadata & record);

    std::string mError;
};

bool CTreeFitter::Refuse(IPayload & value, std::size_t bits, const IMetadata & record)
{
    mError = record.Name() + ": the value " + NumberText(value) + " doesn't fit into " + std::to_string(bits) +
             " bits";
    return false;
}

bool CTreeFitter::FitStruct(CComplexPayload & tree, CMetadataDetailStruct & layout, CComplexPayload & to)
{
    const std::vector<const CStructField *> & fields = *layout.GetStructFields();
    const std::vector<IPayload *> & values = tree.GetFields();   // one per field
    for (std::size_t place = 0; place < std::min(fields.size(), values.size()); ++place)
        if (!FitField(*values[place], *fields[place], to))
            return false;
    return true;
}

bool CTreeFitter::FitField(IPayload & value, const CStructField & field, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    auto * const list = dynamic_cast<CComplexPayload *>(&value);
    if (list != nullptr && record.MetadataType() == METADATA_STRUCT)
        return FitStructField(*list, record, kit::layout::AddList(to, nullptr));
    if (list != nullptr && record.IsArray())
        return FitArray(*list, field, kit::layout::AddList(to, nullptr));
    if (list != nullptr) {   // the words of a wide field
        CComplexPayload & words = kit::layout::AddList(to, nullptr);
        for (IPayload * const word : list->GetFields())
            words.AddField(Narrowed(*word, WORD_BITS).release());
        return true;
    }
    const auto bits = static_cast<std::size_t>(std::max(field.ElemBitWidth(), 0));
    if (!ComesBack(value, bits, record.Format() == keywords::FORMAT_SIGNED_DECIMAL))
        return Refuse(value, bits, record);
    to.AddField(Narrowed(value, bits).release());
    return true;
}

bool CTreeFitter::FitStructField(CComplexPayload & value, const IMetadata & record, CComplexPayload & to)
{
    auto * const layout = dynamic_cast<CMetadataDetailStruct *>(record.Details());
    if (layout == nullptr)
        return false;
    if (!record.IsArray())
        return FitStruct(value, *layout, to);
    for (IPayload * const item : value.GetFields()) {
        auto * const instance = dynamic_cast<CComplexPayload *>(item);
        if (instance == nullptr || !FitStruct(*instance, *layout, kit::layout::AddList(to, nullptr)))
            return false;
    }
    return true;
}

bool CTreeFitter::FitArray(CComplexPayload & items, const CStructField & field, CComplexPayload & to)
{
    const IMetadata & record = *field.Metadata();
    const auto width = static_cast<std::size_t>(std::max(field.ElemBitWidth(), 0));
    const auto held =
        static_cast<std::size_t>(kit::layout::ItemsHeld(field.ElemBitWidth(), record.InternalType()));
    const std::size_t count = std::max(items.GetFields().size(), held);
    if (held > MAX_ITEMS) {
        mError = record.Name() + ": the metadata describes an array of " + std::to_string(held) + " items";
        return false;
    }
    for (IPayload * const item : items.GetFields()) {
        const std::size_t bits = width / count;
        if (!IsHeld(*item, bits))
            return Refuse(*item, bits, record);
        to.AddField(Narrowed(*item, bits).release());
    }
    for (std::size_t missing = count - items.GetFields().size(); missing > 0; --missing)
        to.AddField(new CUint16Payload(0));
    return true;
}

}   // namespace

std::unique_ptr<CComplexPayload> FittedTree(
    CComplexPayload & tree, CMetadataDetailStruct & layout, std::string & error)
{
    auto fitted = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    CTreeFitter fitter;
    if (fitter.FitStruct(tree, layout, *fitted))
        return fitted;
    error = fitter.Error();
    return nullptr;
}

}   // namespace imageconfig
