// The library's chip and a model that follows the rules word for word go through the same random reads, lookups, writes
// and removals, and after each step the whole of the one must be equal to the whole of the other.

#include "chip_and_model.h"

#include <gtest/gtest.h>
#include <messages/messages.h>

#include <ostream>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

struct Plan
{
    const char * mName;
    int mSteps;
    RandomWork mWork;
    bool mDebug = false;
};

void PrintTo(const Plan & plan, std::ostream * stream)
{
    *stream << plan.mName;
}

class CChipConfigDifferential : public testing::TestWithParam<Plan>
{
protected:
    ~CChipConfigDifferential() override { CTheMsgHnd::SwitchDebugOff(); }
};

TEST_P(CChipConfigDifferential, behaves_as_the_model)
{
    const Plan & plan = GetParam();
    if (plan.mDebug)
        CTheMsgHnd::SetDebugLevel(3);
    ChipAndModel both(plan.mWork);
    for (int step = 0; step < plan.mSteps && !HasFatalFailure(); ++step) {
        both.Step();
        if (!HasFatalFailure())
            both.CompareAll();
        if (HasFatalFailure())
            ADD_FAILURE() << "step " << step << ": " << both.Last();
    }
}

using Kinds = std::vector<PooledContext::Kind>;

INSTANTIATE_TEST_SUITE_P(Plans, CChipConfigDifferential,
    testing::Values(Plan{ "chip_contexts", 40000, { 1, Kinds{ PooledContext::ZYN, PooledContext::ZYN }, 0 } },
        Plan{ "chip_contexts_again", 40000, { 2, Kinds{ PooledContext::ZYN }, 0 } },
        Plan{ "foreign_elements", 40000, { 3, Kinds{ PooledContext::ZYN, PooledContext::ZYN }, 5 } },
        Plan{ "all_contexts", 40000,
            { 4, Kinds{ PooledContext::ZYN, PooledContext::BASE, PooledContext::PREFIXED }, 2 } },
        Plan{ "debug_output_changes_nothing", 8000, { 5, Kinds{ PooledContext::ZYN, PooledContext::ZYN }, 3 },
            true }),
    [](const testing::TestParamInfo<Plan> & plan) { return std::string(plan.param.mName); });

}   // namespace
