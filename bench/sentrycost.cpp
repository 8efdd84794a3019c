// Calls one of two functions that differ by a sentry alone, as often as told. Run by callgrind, which counts the
// instructions: the difference of the two, divided by the number of calls, is what a sentry costs.

#include <messages/trace.h>

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

using namespace VrexZynConfigTools;

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

[[gnu::noinline]] std::uint32_t WithoutSentry(std::uint32_t value)
{
    asm volatile("");   // keeps the call
    return value + 1;
}

[[gnu::noinline]] std::uint32_t WithSentry(std::uint32_t value)
{
    ZYN_SENTRY("WithSentry");
    asm volatile("");
    return value + 1;
}

[[gnu::noinline]] std::uint32_t WithSentryResult(std::uint32_t value)
{
    std::uint32_t result = 0;
    ZYN_SENTRY_RESULT("WithSentryResult", result);
    asm volatile("");
    return result = value + 1;
}

}   // namespace

int main(int argc, char ** argv)
{
    const std::string which = argc == 3 ? argv[1] : "";
    const auto calls = static_cast<std::uint32_t>(argc == 3 ? std::atoi(argv[2]) : 0);
    auto * const function = which == "none"     ? &WithoutSentry
                            : which == "plain"  ? &WithSentry
                            : which == "result" ? &WithSentryResult
                                                : nullptr;
    if (function == nullptr) {
        std::cerr << "usage: configtools_sentrycost none|plain|result CALLS\n";
        return 2;
    }
    std::uint32_t value = 0;
    for (std::uint32_t call = 0; call < calls; ++call)
        value = function(value);
    return value == calls ? 0 : 1;
}
