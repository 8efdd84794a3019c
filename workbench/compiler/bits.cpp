#include "bits.h"

#include "records.h"

#include <configtools/structlayout.h>

#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Quoted;

using namespace VrexZynConfigTools;

namespace {

constexpr std::int64_t WORD = 16;

/// How much farther up fields are laid out here, so that what lies before the struct isn't cut off.
constexpr std::int64_t SHIFT = 64;

/// The bits from `mBegin` up to, but not including, `mEnd`.
struct Span
{
    std::int64_t mBegin;
    std::int64_t mEnd;
    const Field * mField;
};

/// Whether a field lies where its position and width say; others are laid out in words whose last one has the position.
bool IsNominal(const std::vector<Span> & spans, std::int64_t position)
{
    return spans.empty() || spans.front().mBegin >= position / WORD * WORD;
}

void AddRuns(const Field & field, const StructEntry & entry, std::vector<Span> & spans)
{
    for (const BitRun & run : entry.mPacked) {
        const std::int64_t begin = std::int64_t{ run.mWord } * WORD + run.mBit - SHIFT;
        const std::int64_t count =
            std::min<std::int64_t>(run.mCount, std::int64_t{ entry.mWidth } - run.mValueBit);
        if (count > 0)
            spans.push_back({ begin, begin + count, &field });
    }
    for (const StructEntry & part : entry.mParts)
        AddRuns(field, part, spans);
}

// The lowest word of a number may be a partial one; what is above it is whole, as the items of an array are.
std::vector<Span> Merged(std::vector<Span> spans, bool isArray)
{
    std::sort(spans.begin(), spans.end(),
        [](const Span & left, const Span & right) { return left.mBegin < right.mBegin; });
    const std::size_t begin = isArray ? 0 : 1;
    if (spans.size() > begin + 1) {
        spans[begin].mEnd = spans.back().mEnd;
        spans.resize(begin + 1);
    }
    return spans;
}

void AddSpans(const Field & field, bool isLittleEndian, std::vector<Span> & spans)
{
    const std::int64_t position = field.mPosition.mValue;
    std::vector<Span> words;
    if (field.mTypeWord != nullptr && field.KindOf() != Kind::Structure) {
        const CLevelRecords level({ &field }, isLittleEndian, SHIFT);
        const CStructLayout levelLayout(level.Struct());
        for (const StructEntry & entry : levelLayout.Entries())
            AddRuns(field, entry, words);
        words = Merged(std::move(words), field.IsArray());
    }
    if (IsNominal(words, position))
        words = { { position, position + field.mWidth.mValue, &field } };
    spans.insert(spans.end(), words.begin(), words.end());
}

std::vector<Span> SpansOf(const Layout & layout)
{
    std::vector<Span> spans;
    for (const Field & field : layout.mFields)
        if (field.mIsSound)
            AddSpans(field, layout.mLittleEndian.mValue, spans);
    std::sort(spans.begin(), spans.end(),
        [](const Span & left, const Span & right) { return left.mBegin < right.mBegin; });
    return spans;
}

void ReportOverlap(const Span & left, const Span & right, CSourceFindings & findings)
{
    const auto [earlier, later] = std::minmax(left, right,
        [](const Span & one, const Span & other) { return one.mField->mPlace < other.mField->mPlace; });
    const std::int64_t first = std::max(left.mBegin, right.mBegin);
    const std::int64_t last = std::min(left.mEnd, right.mEnd) - 1;
    const std::string bits = first == last ? "bit " + std::to_string(first)
                                           : "bits " + std::to_string(first) + " to " + std::to_string(last);
    findings.Error(later.mField->mPosition.mPlace,
        Quoted(later.mField->mName.mValue) + " overlaps " + Quoted(earlier.mField->mName.mValue) + " (" +
            findings.PlaceText(earlier.mField->mPlace) + ") in the " + bits);
}

// Each span is held against the one that reaches farthest of those before it.
void CheckOverlaps(const std::vector<Span> & spans, CSourceFindings & findings)
{
    const Span * farthest = nullptr;
    for (const Span & span : spans) {
        if (farthest != nullptr && span.mBegin < farthest->mEnd && span.mField != farthest->mField)
            ReportOverlap(*farthest, span, findings);
        if (farthest == nullptr || span.mEnd > farthest->mEnd)
            farthest = &span;
    }
}

void CheckOutside(const Layout & layout, const std::vector<Span> & spans, CSourceFindings & findings)
{
    for (const Span & span : spans) {
        const std::string name = Quoted(span.mField->mName.mValue);
        if (span.mBegin < 0)
            findings.Error(
                span.mField->mPosition.mPlace, name + " begins at the bit " + std::to_string(span.mBegin) +
                                                   ", before the struct: as this isn't little-endian, the "
                                                   "position of a field of 17 to 64 bits "
                                                   "names its last word");
        if (layout.mBits.mIsGiven && span.mEnd > layout.mBits.mValue)
            findings.Error(span.mField->mPosition.mPlace,
                name + " ends at the bit " + std::to_string(span.mEnd) + ", outside the " +
                    std::to_string(layout.mBits.mValue) + " bits of the struct");
    }
}

}   // namespace

std::int64_t SizeOf(const Layout & layout)
{
    std::vector<const Field *> fields;
    for (const Field & field : layout.mFields)
        fields.push_back(&field);
    return static_cast<std::int64_t>(
        StructSizeInBits(CLevelRecords(fields, layout.mLittleEndian.mValue, 0).Struct()));
}

void CheckBits(const Layout & layout, CSourceFindings & findings)
{
    const std::vector<Span> spans = SpansOf(layout);
    CheckOverlaps(spans, findings);
    CheckOutside(layout, spans, findings);
}

}   // namespace workbench::compiler
