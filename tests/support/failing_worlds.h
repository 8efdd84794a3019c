/// Runs an operation once for each allocation that it makes, with that one failing, each time in a world of its own.
/// A test that uses this lists allocations.cpp among its sources.

#ifndef TESTS_SUPPORT_FAILING_WORLDS_H
#define TESTS_SUPPORT_FAILING_WORLDS_H

#include <support/allocations.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <new>

namespace VrexZynConfigTools::support {

/// `make` gives a world, `act` runs while allocations fail, `check` gets the world and whether `act` failed.
/// Returns how many allocations failed before one run succeeded.
template <typename MakeT, typename ActT, typename CheckT>
std::uint64_t FailInEachWorld(MakeT make, ActT act, CheckT check)
{
    for (std::uint64_t granted = 0;; ++granted) {
        auto world = make();
        bool failed = false;
        FailAllocationsAfter(granted);
        try {
            act(*world);
        } catch (const std::bad_alloc &) {
            failed = true;
        }
        LetAllocationsPass();
        SCOPED_TRACE(granted);
        check(*world, failed);
        if (!failed || testing::Test::HasFailure())
            return granted;
    }
}

}   // namespace VrexZynConfigTools::support

#endif
