#include "comparison.h"
#include "table.h"

#include <iostream>

#include <malloc.h>

namespace {

/// Memory that was freed stays with the process, so that no side pays for what the system does with it.
void KeepMemory()
{
    constexpr int AS_MUCH_AS_POSSIBLE = 1 << 30;
    mallopt(M_MMAP_THRESHOLD, AS_MUCH_AS_POSSIBLE);
    mallopt(M_TRIM_THRESHOLD, AS_MUCH_AS_POSSIBLE);
}

}   // namespace

int main(int argc, char ** argv)
{
    KeepMemory();
    bench::RegisterLookups();
    bench::RegisterInserts();
    bench::RegisterIndex();
    bench::RegisterWrites();
    bench::RegisterReads();
    bench::RegisterCodec();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;

    // Progress goes to standard error, so that standard output holds the table and nothing else.
    bench::TableReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintTable(std::cout);
    reporter.PrintCodecTable(std::cout);
    return 0;
}
