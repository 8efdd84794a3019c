#include "bits.h"

#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr std::int64_t WORD = 16;

/// The bits from `mBegin` up to, but not including, `mEnd`.
struct Span
{
    std::int64_t mBegin;
    std::int64_t mEnd;
    const Field * mField;
};

// In a struct that isn't little-endian, the position of a field or array item of several words names its last word.
bool ReachesDown(const Field & field, bool isLittleEndian)
{
    if (isLittleEndian || field.mTypeWord == nullptr || field.KindOf() == Kind::Structure)
        return false;
    const std::int64_t width = field.IsArray() ? field.mTypeWord->mBits : field.mWidth.mValue;
    return width > WORD && width <= 4 * WORD;
}

std::int64_t WordBegin(std::int64_t bit)
{
    return bit / WORD * WORD;
}

void AddSpans(const Field & field, bool isLittleEndian, std::vector<Span> & spans)
{
    const std::int64_t position = field.mPosition.mValue;
    const std::int64_t width = field.mWidth.mValue;
    if (!ReachesDown(field, isLittleEndian)) {
        spans.push_back({ position, position + width, &field });
        return;
    }
    if (field.IsArray()) {   // the items stand shoulder to shoulder, each reaching down from its own position
        const std::int64_t begin = WordBegin(position) - field.mTypeWord->mBits + WORD;
        spans.push_back({ begin, begin + width, &field });
        return;
    }
    const std::int64_t full = (width - 1) / WORD;   // words below which the partial one lies
    const std::int64_t top = WordBegin(position) - full * WORD;
    spans.push_back({ top, top + width - full * WORD, &field });
    spans.push_back({ top + WORD, top + WORD + full * WORD, &field });
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
    std::int64_t size = 0;
    for (const Field & field : layout.mFields) {
        // Intended, the device format is so: neither arrays nor enumerators count as reaching down here.
        const bool isNumber = field.KindOf() != Kind::Enumeration && !field.IsArray();
        const bool endsWithWord = isNumber && ReachesDown(field, layout.mLittleEndian.mValue);
        size = std::max(size, field.mPosition.mValue + (endsWithWord ? WORD : field.mWidth.mValue));
    }
    return size;
}

void CheckBits(const Layout & layout, CSourceFindings & findings)
{
    const std::vector<Span> spans = SpansOf(layout);
    CheckOverlaps(spans, findings);
    CheckOutside(layout, spans, findings);
}

}   // namespace workbench::compiler
