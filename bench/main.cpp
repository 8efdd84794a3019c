#include "comparison.h"
#include "table.h"

#include <iostream>

int main(int argc, char ** argv)
{
    bench::RegisterLookups();
    bench::RegisterInserts();
    bench::RegisterWrites();
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;

    // Progress goes to standard error, so that standard output holds the table and nothing else.
    bench::TableReporter reporter;
    reporter.SetOutputStream(&std::cerr);
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.PrintTable(std::cout);
    return 0;
}
