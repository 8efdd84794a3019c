/// One rule of the compiler: a source with a fault that it finds, and a right one much like it.

#ifndef TESTS_ZYNCONFIG_METADATA_RULE_H
#define TESTS_ZYNCONFIG_METADATA_RULE_H

#include "sourcetext.h"

#include <gmock/gmock.h>

#include <ostream>
#include <string>
#include <vector>

namespace workbench::compiler::test {

using Sources = std::vector<std::string>;

struct Rule
{
    const char * mName;
    Sources mFaulty;
    std::vector<std::string> mFindings;
    Sources mRight;

    friend void PrintTo(const Rule & rule, std::ostream * output) { *output << rule.mName; }
};

/// A source with these keys, the first of which stands in line 10.
inline Sources Keys(const std::string & keys)
{
    return { std::string(HEAD) + "key = [\n" + keys + "\n]\n" };
}

/// A source with this text from line 9 on.
inline Sources Behind(const std::string & text)
{
    return { HEAD + text };
}

class RuleTest : public testing::TestWithParam<Rule>
{
protected:
    static void ExpectFound()
    {
        const Rule & rule = GetParam();
        EXPECT_THAT(FindingsOf(rule.mFaulty), testing::ElementsAreArray(rule.mFindings));
    }

    static void ExpectNeighbourPasses() { EXPECT_THAT(FindingsOf(GetParam().mRight), testing::IsEmpty()); }
};

inline std::string NameOf(const testing::TestParamInfo<Rule> & info)
{
    return info.param.mName;
}

}   // namespace workbench::compiler::test

#endif
