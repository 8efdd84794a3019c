#include "table.h"

#include "comparison.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ostream>
#include <utility>
#include <vector>

namespace bench {

namespace {

constexpr double NO_GOAL = 0;
constexpr double PASSES = 7;

/// What a row stands for: the highest ratio wanted, and the highest exponent of growth with the number of keys.
struct RowText
{
    std::string mRow;
    std::string mText;
    double mRatioGoal;
    double mGrowthGoal;
};

constexpr double LOOKUP_GROWTH = 0.35;

void AddChipRows(std::vector<RowText> & texts, const std::string & key)
{
    struct Kind
    {
        const char * mRow;
        const char * mText;
        double mGoal;
    };
    constexpr Kind KINDS[] = { { "chip", "no filter", 3 }, { "filter/top", "filter 15, in the top layer", 4 },
        { "filter/any", "filter 15, in any layer", 4 },
        { "filter/bottom", "filter 15, in the bottom layer only", 4 },
        { "filter/none", "filter 15, in no layer", 4 } };
    for (const Kind & kind : KINDS) {
        for (const int layers : LAYER_COUNTS) {
            const std::string count = std::to_string(layers);
            texts.push_back({ std::string(kind.mRow) + "/" + key + "/" + count,
                "`CChipConfig::Element(" + key + ")`, " + kind.mText + ", layers: " + count, kind.mGoal,
                LOOKUP_GROWTH });
        }
    }
}

void AddIndexRows(std::vector<RowText> & texts)
{
    const std::vector<RowText> rows = {
        { "rows/find", "a table row by `NAME.i.j`, against a plain key by name", NO_GOAL, LOOKUP_GROWTH },
        { "rows/new", "a row, \"new\", refused, against a plain key", NO_GOAL, LOOKUP_GROWTH },
        { "rows/overwrite", "a row, \"overwrite\", replaced, against a plain key", NO_GOAL, LOOKUP_GROWTH },
        { "rows/remove", "`RemoveElement(id, indices)`, against a plain key", NO_GOAL, LOOKUP_GROWTH },
        { "script/cyrillic", "`CSubsystemConfig::Element(name)` in Cyrillic, against ASCII", 2.0, LOOKUP_GROWTH },
        { "script/chinese", "the same in Chinese", 2.0, LOOKUP_GROWTH },
        { "heap/keys", "memory of a plain key, against the same without index (bytes for ns)", 1.3, NO_GOAL },
        { "heap/rows", "memory of a table row (bytes for ns)", 1.3, NO_GOAL },
    };
    texts.insert(texts.end(), rows.begin(), rows.end());
}

std::vector<RowText> RowTexts()
{
    std::vector<RowText> texts = {
        { "subsystem/id/hit", "`CSubsystemConfig::Element(id)`, found", 1.0, LOOKUP_GROWTH },
        { "subsystem/id/miss", "`CSubsystemConfig::Element(id)`, not found", 1.0, LOOKUP_GROWTH },
        { "subsystem/name/hit", "`CSubsystemConfig::Element(name)`, found", 1.3, LOOKUP_GROWTH },
        { "subsystem/name/miss", "`CSubsystemConfig::Element(name)`, not found", 1.3, LOOKUP_GROWTH },
        { "insert/append", "insert, any other mode", 1.2, LOOKUP_GROWTH },
        { "insert/new", "insert, \"new\", all new", 1.2, LOOKUP_GROWTH },
        { "insert/overwrite", "insert, \"overwrite\", all new", 1.2, LOOKUP_GROWTH },
        { "insert/new/refused", "insert, \"new\", all refused", 1.2, LOOKUP_GROWTH },
        { "insert/overwrite/replaced", "insert, \"overwrite\", all replaced", 1.2, LOOKUP_GROWTH },
        { "same/new/refused", "the same, against maps that refuse", NO_GOAL, NO_GOAL },
        { "same/overwrite/replaced", "the same, against maps that replace", NO_GOAL, NO_GOAL },
    };
    AddIndexRows(texts);
    AddChipRows(texts, "id");
    AddChipRows(texts, "name");
    texts.push_back({ "write/full", "full write, each key", NO_GOAL, 0.1 });
    texts.push_back({ "write/filtered", "filtered write, each key", NO_GOAL, 0.2 });
    texts.push_back({ "read/keys", "a key through element factory and codec", NO_GOAL, 0.1 });
    return texts;
}

/// A row of the codec's table. Where plug-ins derive the struct's class there is no goal.
struct CodecRowText
{
    const char * mRow;
    const char * mText;
    double mRatioGoal;
};
constexpr CodecRowText CODEC_ROWS[] = { { "small8/encode", "pack 8 fields of 1 to 16 bits", 15 },
    { "small8/decode", "unpack them", 18 }, { "mixed40/encode", "pack 40 fields of 1 to 64 bits", 6 },
    { "mixed40/decode", "unpack them", 18 }, { "array64/encode", "pack an array of 64 numbers of 16 bits", 25 },
    { "array64/decode", "unpack it", 60 } };

std::string Number(double value, int digits)
{
    char text[32];
    std::snprintf(text, sizeof(text), "%.*f", digits, value);
    return text;
}

/// The exponent e for which the time of one operation grows as the number of keys to the power of e, from its time
/// with 1 000 keys and with 100 000.
double Growth(double few, double many)
{
    return std::log(many / few) / std::log(100);
}

std::string Verdict(double value, double goal)
{
    if (goal == NO_GOAL)
        return "";
    return value <= goal ? " ✓" : " ✗";
}

}   // namespace

void Register(const std::string & row, std::size_t keysPerLayer, std::function<void(benchmark::State &)> body)
{
    const std::string name = row + "@" + std::to_string(keysPerLayer);
    benchmark::RegisterBenchmark(
        name.c_str(), [body = std::move(body)](benchmark::State & state) { body(state); })
        ->UseManualTime()
        ->MinTime(0.02)
        ->Repetitions(static_cast<int>(PASSES))
        ->ReportAggregatesOnly()
        ->Unit(benchmark::kMicrosecond);
}

void TableReporter::ReportRuns(const std::vector<Run> & runs)
{
    for (const Run & run : runs) {
        if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median" || run.error_occurred)
            continue;
        const std::string & name = run.run_name.function_name;
        const std::size_t at = name.find('@');
        const auto count = static_cast<std::size_t>(std::stoul(name.substr(at + 1)));
        const auto ratio = run.counters.find(COUNTER_RATIO);
        mRows[name.substr(0, at)][count] = { run.counters.at(COUNTER_SUBJECT),
            ratio != run.counters.end() ? ratio->second.value : 0 };
    }
    ConsoleReporter::ReportRuns(runs);
}

void TableReporter::PrintCodecTable(std::ostream & stream) const
{
    const auto print = [&](const std::string & name, double goal) {
        const auto found = mRows.find(name);
        if (found == mRows.end())
            return;
        const Cell & cell = found->second.begin()->second;
        stream << " " << Number(cell.mRatio, 1) << Verdict(cell.mRatio, goal) << " ("
               << Number(cell.mSubject, 1) << " ns) |";
    };
    stream << "\n| | goal | a field | of a derived class |\n|---|---|---|---|\n";
    for (const CodecRowText & text : CODEC_ROWS) {
        stream << "| " << text.mText << " | " << Number(text.mRatioGoal, 0) << " |";
        print(std::string("codec/") + text.mRow, text.mRatioGoal);
        print(std::string("literal/") + text.mRow, NO_GOAL);
        stream << "\n";
    }
}

void TableReporter::PrintTable(std::ostream & stream) const
{
    stream << "| | goal |";
    for (const std::size_t count : COLUMN_COUNTS)
        stream << " " << count << " keys |";
    stream << " growth | goal |\n|---|---|---|---|---|---|---|---|---|\n";
    for (const RowText & text : RowTexts()) {
        const auto found = mRows.find(text.mRow);
        if (found == mRows.end())
            continue;
        const Row & row = found->second;
        stream << "| " << text.mText << " | " << (text.mRatioGoal != NO_GOAL ? Number(text.mRatioGoal, 1) : "")
               << " |";
        for (const std::size_t count : COLUMN_COUNTS) {
            const auto cell = row.find(count);
            if (cell == row.end()) {
                stream << " |";
                continue;
            }
            const double subject = cell->second.mSubject;
            const double ratio = cell->second.mRatio;
            if (ratio != 0)
                stream << " " << Number(ratio, 2) << Verdict(ratio, text.mRatioGoal);
            stream << " (" << Number(subject, 0) << " ns) |";
        }
        if (row.count(1'000) != 0 && row.count(100'000) != 0) {
            const Cell & few = row.at(1'000);
            const Cell & many = row.at(100'000);
            const double growth = Growth(few.mSubject, many.mSubject);
            stream << " " << Number(growth, 2) << Verdict(growth, text.mGrowthGoal);
            if (few.mRatio != 0)
                stream << " (" << Number(Growth(few.Yardstick(), many.Yardstick()), 2) << ")";
        }
        stream << " | " << (text.mGrowthGoal != NO_GOAL ? Number(text.mGrowthGoal, 2) : "") << " |\n";
    }
}

}   // namespace bench
