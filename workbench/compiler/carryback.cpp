#include "carryback.h"

#include "packing.h"

#include <kit/text/utf8.h>

#include <array>
#include <set>

namespace workbench::compiler {

using kit::text::Printable;
using kit::text::Quoted;

namespace {

constexpr std::uint64_t ALTERNATING = 0x5555555555555555;
constexpr std::size_t LONGEST_QUOTE = 60;   // bytes of a value in a warning
constexpr int MAX_LONE_ATTEMPTS = 100;      // in one struct; each packs all of it

/// What the fields of a struct hold in one attempt.
enum class Pattern
{
    Smallest,
    Largest,
    EvenLargest,   // and the odd ones smallest, so that each stands between others
    OddLargest,
    Alternating,
    Opposite,   // the other bits of the one before
    Mixed,
    MixedAgain
};

constexpr std::array PATTERNS = { Pattern::Largest, Pattern::Smallest, Pattern::EvenLargest,
    Pattern::OddLargest, Pattern::Alternating, Pattern::Opposite, Pattern::Mixed, Pattern::MixedAgain };

// Scrambled bits, the same in every run.
std::uint64_t Scrambled(std::uint64_t seed)
{
    seed = (seed + 1) * 0x9E3779B97F4A7C15;
    seed ^= seed >> 31;
    seed *= 0xBF58476D1CE4E5B9;
    return seed ^ (seed >> 29);
}

std::uint64_t BitsOf(Pattern pattern, std::uint64_t place)
{
    switch (pattern) {
    case Pattern::Alternating:
        return ALTERNATING;
    case Pattern::Opposite:
        return ~ALTERNATING;
    case Pattern::Mixed:
        return Scrambled(place);
    default:
        return Scrambled(~place);
    }
}

CNumber Within(const NumberRange & range, std::uint64_t bits)
{
    const std::uint64_t span = range.mMax.Bits() - range.mMin.Bits();
    const std::uint64_t offset = span == ~std::uint64_t{ 0 } ? bits : bits % (span + 1);
    const std::uint64_t sum = range.mMin.Bits() + offset;
    const CNumber asSigned(static_cast<std::int64_t>(sum));
    return range.Holds(asSigned) ? asSigned : CNumber::Unsigned(sum);
}

CNumber NumberOf(const NumberRange & range, Pattern pattern, std::uint64_t place)
{
    const bool isEven = place % 2 == 0;
    switch (pattern) {
    case Pattern::Smallest:
        return range.mMin;
    case Pattern::Largest:
        return range.mMax;
    case Pattern::EvenLargest:
        return isEven ? range.mMax : range.mMin;
    case Pattern::OddLargest:
        return isEven ? range.mMin : range.mMax;
    default:
        return Within(range, BitsOf(pattern, place));
    }
}

LeafValue ValueOf(const Field & field, Pattern pattern, std::uint64_t place)
{
    LeafValue value;
    if (field.KindOf() == Kind::Enumeration) {
        const auto & enumerators = field.mValues.mValue;
        const NumberRange choice{ 0, static_cast<std::int64_t>(enumerators.size()) - 1 };
        const Enumerator & each = enumerators.at(NumberOf(choice, pattern, place).Bits());
        value.mNumbers.emplace_back(each.mNumber);
        value.mText = each.mName;
    } else if (field.KindOf() != Kind::Number) {
        const std::uint64_t length = NumberOf(field.mLength.mValue, pattern, place).Bits();
        value.mText.assign(length, 'U');
    } else if (field.IsWide()) {
        const std::int64_t words = (field.mWidth.mValue + 15) / 16;
        for (std::int64_t word = 0; word < words; ++word) {
            const auto bits = std::min<std::int64_t>(field.mWidth.mValue - word * 16, 16);
            value.mNumbers.push_back(NumberOf({ 0, (std::int64_t{ 1 } << bits) - 1 }, pattern, place));
        }
    } else {
        for (std::uint64_t item = 0; item < field.Count(); ++item)
            value.mNumbers.push_back(NumberOf(field.mRange.mValue, pattern, place + item));
    }
    return value;
}

/// Attempts on one struct.
class CProbe
{
public:
    explicit CProbe(const Key & key)
        : mRecords(key)
        , mLeaves(LeavesOf(mRecords))
    {}

    void Run(CSourceFindings & findings)
    {
        for (const Pattern pattern : PATTERNS)
            Attempt(pattern, findings);
    }

private:
    void Attempt(Pattern pattern, CSourceFindings & findings)
    {
        LeafValues values;
        values.reserve(mLeaves.size());
        for (std::size_t place = 0; place < mLeaves.size(); ++place)
            values.push_back(ValueOf(*mLeaves[place], pattern, place));
        const std::vector<std::string> sent = TextsOf(mRecords, values);
        const std::vector<std::string> back = SendAndReceive(values);
        for (std::size_t place = 0; place < mLeaves.size(); ++place)
            if (sent[place] != back[place] && mWarned.insert(mLeaves[place]).second)
                Warn(place, values, sent[place], back[place], findings);
    }

    std::vector<std::string> SendAndReceive(const LeafValues & values)
    {
        std::string error;
        const std::string octets = Pack(mRecords, values, error);
        return Unpack(mRecords, octets, error);
    }

    void Warn(std::size_t place, const LeafValues & values, const std::string & sent, const std::string & back,
        CSourceFindings & findings)
    {
        const Field & field = *mLeaves[place];
        const bool isAlone = SurvivesAlone(place, values, sent);
        findings.Warning(
            field.mPosition.mPlace, "the device format doesn't carry " + Quoted(field.mName.mValue) +
                                        " back unchanged: " + Shortened(sent) + " comes back as " +
                                        Shortened(back) + (isAlone ? " because of the fields beside it" : ""));
    }

    // Whether the field comes back where all others are empty. In a struct of very many bad fields the later ones aren't
    // asked.
    bool SurvivesAlone(std::size_t place, const LeafValues & values, const std::string & sent)
    {
        if (++mLoneAttempts > MAX_LONE_ATTEMPTS)
            return false;
        LeafValues alone = values;
        for (std::size_t other = 0; other < alone.size(); ++other)
            if (other != place)
                for (CNumber & number : alone[other].mNumbers)
                    number = 0;
        return SendAndReceive(alone)[place] == sent;
    }

    static std::string Shortened(const std::string & text)
    {
        if (text.empty())
            return "nothing";
        return text.size() <= LONGEST_QUOTE ? Printable(text)
                                            : Printable(text.substr(0, LONGEST_QUOTE)) + "...";
    }

    CStructRecords mRecords;
    std::vector<const Field *> mLeaves;
    std::set<const Field *> mWarned;
    int mLoneAttempts = 0;
};

}   // namespace

void CheckCarriedBack(const Key & key, CSourceFindings & findings)
{
    CProbe(key).Run(findings);
}

}   // namespace workbench::compiler
