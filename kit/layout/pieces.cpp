#include "pieces.h"

#include <algorithm>

namespace kit::layout {

using namespace VrexZynConfigTools;

namespace {

constexpr std::uint32_t WORD_BITS = 16;
constexpr std::size_t MOST_PIECES = 4096;

}   // namespace

std::vector<Piece> PiecesOf(const CFields & fields, bool & isCutOff)
{
    std::vector<Piece> pieces;
    for (const Cell & cell : fields.Cells()) {
        const StructEntry & field = *fields.List()[cell.mField].mEntry;
        const bool isWord = field.mKind == StructEntryKind::WORDS;
        const std::uint32_t before = isWord ? WORD_BITS * cell.mItem : 0;
        const std::uint32_t end = isWord ? field.mWidth : cell.mEntry->mWidth;
        const BitRuns & runs = cell.mEntry->mPacked;
        for (BitRun run : runs) {
            run.mValueBit += before;
            run.mCount = std::min(run.mCount, end - std::min(end, run.mValueBit));
            if (run.mCount != 0 && pieces.size() < MOST_PIECES)
                pieces.push_back({ run, cell.mField, fields.LabelOf(cell), !isWord && runs.size() == 1 });
        }
    }
    isCutOff = fields.Layout().IsCutOff() || pieces.size() == MOST_PIECES;
    return pieces;
}

}   // namespace kit::layout
