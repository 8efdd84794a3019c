/// Collects the medians and prints them as a table, with the goal beside each row.

#ifndef BENCH_TABLE_H
#define BENCH_TABLE_H

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <functional>
#include <iosfwd>
#include <map>
#include <string>

namespace bench {

inline constexpr std::array<std::size_t, 4> KEY_COUNTS = { 100, 1'000, 10'000, 100'000 };
inline constexpr std::array<std::size_t, 5> COLUMN_COUNTS = { 100, 1'000, 10'000, 100'000, 1'000'000 };
inline constexpr std::array LAYER_COUNTS = { 1, 3, 6, 15 };

/// Registers a benchmark for one cell of the table.
void Register(const std::string & row, std::size_t keysPerLayer, std::function<void(benchmark::State &)> body);

/// Prints progress as the console reporter does, and keeps the medians.
class TableReporter : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> & runs) override;

    /// In Markdown.
    void PrintTable(std::ostream & stream) const;

    /// The same for the struct codec, whose rows know no number of keys.
    void PrintCodecTable(std::ostream & stream) const;

private:
    struct Cell
    {
        double mSubject = 0;   // nanoseconds for each operation
        double mRatio = 0;     // to the yardstick; 0 for none

        double Yardstick() const { return mSubject / mRatio; }
    };
    using Row = std::map<std::size_t, Cell>;   // by number of keys

    std::map<std::string, Row> mRows;
};

}   // namespace bench

#endif
