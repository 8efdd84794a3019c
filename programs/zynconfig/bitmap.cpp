#include "bitmap.h"

#include <configtools/metadata.h>
#include <kit/layout/fields.h>
#include <kit/text/utf8.h>
#include <workbench/shape.h>

#include <algorithm>
#include <array>
#include <map>
#include <optional>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace kit::layout;
using namespace workbench;
using kit::text::Columns;
using kit::text::Cut;
using kit::text::Padded;
using kit::text::Printable;

namespace {

constexpr int WORD_BITS = 16;
constexpr std::size_t WIDEST_CELL = 6;   // the columns of a bit, with the line beside it
constexpr std::size_t NARROWEST_CELL = 2;
constexpr std::uint64_t MOST_WORDS = 256;
constexpr std::string_view NOTHING = "-";    // bits of no field
constexpr std::string_view CONFLICT = "!";   // bits of several fields

constexpr int FREE = -1;
constexpr int SHARED = -2;

/// Which piece holds each bit of a word, or FREE or SHARED.
using WordBits = std::array<int, WORD_BITS>;

std::vector<WordBits> BitsOf(const CFields & fields, const std::vector<Piece> & pieces)
{
    const auto words = static_cast<std::size_t>(std::min(fields.Layout().Words(), MOST_WORDS));
    WordBits free = {};
    free.fill(FREE);
    std::vector<WordBits> bits(words, free);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        const BitRun & run = pieces[i].mRun;
        for (std::uint32_t bit = run.mBit; run.mWord < words && bit < run.mBit + run.mCount; ++bit) {
            int & holder = bits[run.mWord][bit];
            holder = holder == FREE ? static_cast<int>(i) : SHARED;
        }
    }
    return bits;
}

// "Bands[1].Gain[3]" without what stands before the last dot.
std::string ShortLabel(const std::string & label)
{
    const auto dot = label.rfind('.');
    return dot == std::string::npos ? label : label.substr(dot + 1);
}

std::string BitsText(const Piece & piece)
{
    const BitRun & run = piece.mRun;
    const std::string low = std::to_string(run.mValueBit);
    return piece.mIsWhole    ? ""
           : run.mCount == 1 ? ' ' + low
                             : ' ' + std::to_string(run.mValueBit + run.mCount - 1) + ':' + low;
}

// The fullest of the texts that fits; none if none does.
std::optional<std::string> Fitting(const std::vector<std::string> & texts, std::size_t width)
{
    const auto found = std::find_if(
        texts.begin(), texts.end(), [width](const std::string & text) { return Columns(text) <= width; });
    return found == texts.end() ? std::nullopt : std::optional(*found);
}

std::optional<std::string> NameFor(const Piece & piece, std::size_t width)
{
    const std::string label = Printable(piece.mLabel);
    const std::string bits = BitsText(piece);
    return Fitting({ label + bits, ShortLabel(label) + bits, label, ShortLabel(label) }, width);
}

// A to Z, a to z, A1 to Z1 and so on.
std::string LetterNumber(std::size_t number)
{
    constexpr std::string_view LETTERS = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const std::size_t round = number / LETTERS.size();
    return LETTERS[number % LETTERS.size()] + (round == 0 ? "" : std::to_string(round));
}

/// Draws words whose bits are so many columns wide.
class CMapPainter
{
public:
    CMapPainter(const CFields & fields, const std::vector<Piece> & pieces, std::size_t cell, std::size_t margin)
        : mFields(fields)
        , mPieces(pieces)
        , mBits(BitsOf(fields, pieces))
        , mCell(cell)
        , mMargin(margin)
    {
        ChooseLetters();
    }

    /// By field; empty for one that is drawn by its name everywhere.
    const std::vector<std::string> & Letters() const { return mLetters; }

    void Paint(CLineMaker & lines) const
    {
        lines.Add(Heading(), BOLD);
        for (std::size_t word = 0; word < mBits.size(); ++word)
            lines.Add(WordLine(word));
    }

private:
    // Calls `visit(holder, columns)` for each run of bits that one piece holds, from bit 15 to bit 0.
    template <typename VisitT>
    void ForEachRun(const WordBits & bits, VisitT visit) const
    {
        for (int high = WORD_BITS - 1; high >= 0;) {
            int low = high;
            while (low > 0 && bits[static_cast<std::size_t>(low - 1)] == bits[static_cast<std::size_t>(high)])
                --low;
            visit(bits[static_cast<std::size_t>(high)], static_cast<std::size_t>(high - low + 1) * mCell - 1);
            high = low - 1;
        }
    }

    void ChooseLetters()
    {
        std::vector<bool> isNeeded(mFields.List().size(), false);
        for (const WordBits & bits : mBits) {
            ForEachRun(bits, [&](int holder, std::size_t width) {
                if (holder >= 0 && !NameFor(PieceOf(holder), width))
                    isNeeded[PieceOf(holder).mField] = true;
            });
        }
        std::size_t count = 0;
        for (const bool isLetter : isNeeded)
            mLetters.push_back(isLetter ? LetterNumber(count++) : "");
    }

    std::string Heading() const
    {
        std::string text;
        for (int bit = WORD_BITS - 1; bit >= 0; --bit) {
            // In the narrowest cells two digits take the room of two numbers.
            if (mCell == NARROWEST_CELL && bit % 3 != 0)
                continue;
            const std::string number = std::to_string(bit);
            const std::size_t spare = std::max(mCell - 1, number.size()) - number.size();
            const std::size_t column = mMargin + 1 + static_cast<std::size_t>(WORD_BITS - 1 - bit) * mCell;
            text.append(column + spare / 2 - text.size(), ' ').append(number);
        }
        return text;
    }

    std::string WordLine(std::size_t word) const
    {
        const std::string number = std::to_string(word);
        std::string text = std::string(mMargin - GAP.size() + 1 - number.size(), ' ') + number + " |";
        ForEachRun(mBits[word],
            [&](int holder, std::size_t width) { text += Centred(ContentOf(holder, width), width) + '|'; });
        return text;
    }

    std::string ContentOf(int holder, std::size_t width) const
    {
        if (holder < 0)
            return std::string(holder == FREE ? NOTHING : CONFLICT);
        const Piece & piece = PieceOf(holder);
        const std::string & letter = mLetters[piece.mField];
        const std::string label = ShortLabel(Printable(piece.mLabel));
        const auto bracket = label.find('[');
        const std::string item = bracket == std::string::npos ? "" : label.substr(bracket);
        const auto name = NameFor(piece, width);
        return name ? *name
                    : Fitting(
                          { letter + item + BitsText(piece), letter + BitsText(piece), letter + item }, width)
                          .value_or(letter);
    }

    static std::string Centred(const std::string & text, std::size_t width)
    {
        const std::string cut = Cut(text, width);
        return Padded(std::string((width - Columns(cut)) / 2, ' ') + cut, width);
    }

    const Piece & PieceOf(int holder) const { return mPieces[static_cast<std::size_t>(holder)]; }

    const CFields & mFields;
    const std::vector<Piece> & mPieces;
    std::vector<WordBits> mBits;
    std::size_t mCell;
    std::size_t mMargin;   // of the words' numbers
    std::vector<std::string> mLetters;
};

std::string ValuesText(const Field & field)
{
    if (IsRowOfWords(field))
        return "any";
    const auto enumerators = EnumeratorsOf(*field.mEntry->mRecord);
    return enumerators.empty() ? RangeText(*field.mEntry->mRecord) : ToText(enumerators);
}

void AddLegend(const CFields & fields, const std::vector<std::string> & letters, CLineMaker & lines)
{
    std::vector<Cells> rows;
    for (std::size_t i = 0; i < fields.List().size(); ++i) {
        const Field & field = fields.List()[i];
        const IMetadata & record = *field.mEntry->mRecord;
        // Bad metadata puts a field below 0.
        const auto position = static_cast<std::int32_t>(field.mEntry->mPosition);
        rows.push_back({ letters.empty() ? "" : letters[i], Printable(field.mPath),
            std::to_string(position) + (field.mLoss == Loss::NONE ? "" : " *"),
            std::to_string(field.mEntry->mWidth), TypeText(record), ValuesText(field),
            Printable(record.Description()) });
    }
    AddTable({ "", "FIELD", "BIT", "WIDTH", "TYPE", "VALUES", "" }, rows, lines);
}

void AddNotes(const CFields & fields, bool isCutOff, CLineMaker & lines)
{
    const bool comesBack = std::all_of(fields.List().begin(), fields.List().end(),
        [](const Field & field) { return field.mLoss == Loss::NONE; });
    if (!comesBack)
        lines.AddWrapped("* The device does not give back every value of this field unchanged.", 2);
    if (!fields.Layout().Error().empty())
        lines.AddWrapped("The library doesn't pack this struct: " + Printable(fields.Layout().Error()), 2);
    if (isCutOff || fields.Layout().Words() > MOST_WORDS)
        lines.AddWrapped("There is more, which is left out here.", 2);
}

}   // namespace

void AddBitMap(const CFields & fields, CLineMaker & lines)
{
    constexpr std::size_t MARGIN = 6;
    const std::size_t cell = lines.Columns() > MARGIN + 2 ? (lines.Columns() - MARGIN - 2) / WORD_BITS : 0;
    bool isCutOff = false;
    const std::vector<Piece> pieces = PiecesOf(fields, isCutOff);
    if (cell < NARROWEST_CELL) {
        AddLegend(fields, {}, lines);
    } else {
        const CMapPainter painter(fields, pieces, std::min(cell, WIDEST_CELL), MARGIN);
        painter.Paint(lines);
        lines.Add("");
        AddLegend(fields, painter.Letters(), lines);
    }
    AddNotes(fields, isCutOff, lines);
}

}   // namespace zynconfig
