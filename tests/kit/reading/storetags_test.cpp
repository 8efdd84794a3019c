// The tags by which tools and plug-ins exchange layers and sizes of stores.

#include <configtools/zyncontext.h>
#include <kit/reading/storetags.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace kit::reading {
namespace {

TEST(StoreLayers, are_parsed_as_they_are_composed)
{
    const StoreLayers layers = { { { -1, 0 }, 1 }, { { 15, 65535 }, 15 }, { { 1, 1 }, 2 } };
    EXPECT_EQ(ComposeStoreLayers(layers), "-1.0:1,1.1:2,15.65535:15");
    EXPECT_EQ(ParseStoreLayers(ComposeStoreLayers(layers)), layers);
    EXPECT_EQ(ParseStoreLayers(""), StoreLayers());
    EXPECT_EQ(ComposeStoreLayers({}), "");
}

TEST(StoreLayers, are_rejected_in_any_other_form)
{
    for (const char * bad : { "1", "1.1", "1.1:", "1.1:0", "1.1:16", "-2.1:1", "1.-1:1", "1.65536:1", "1.1:1,",
             ",1.1:1", "1.1:1,1.1:2", " 1.1:1", "1.1:+1", "1:1.1", "1.1:1:1" })
        EXPECT_EQ(ParseStoreLayers(bad), std::nullopt) << bad;
}

TEST(StoreSizes, are_parsed_as_they_are_composed)
{
    const StoreSizes sizes = { { { 0, 3 }, 0 }, { { 15, 1 }, 4294967295U } };
    EXPECT_EQ(ComposeStoreSizes(sizes), "0.3:0,15.1:4294967295");
    EXPECT_EQ(ParseStoreSizes(ComposeStoreSizes(sizes)), sizes);
}

TEST(StoreSizes, are_rejected_for_no_device_and_beyond_32_bits)
{
    for (const char * bad : { "-1.1:1", "15.1:4294967296", "15.1:-1" })
        EXPECT_EQ(ParseStoreSizes(bad), std::nullopt) << bad;
}

TEST(WhyNoStoreLayers, quotes_the_tag_and_says_what_is_expected)
{
    VrexZynConfigTools::CZynContext context;
    EXPECT_EQ(WhyNoStoreLayers(context), "");
    EXPECT_EQ(WhyNoStoreSizes(context), "");
    context.Parse("storelayers=junk;storesizes=1.1");
    EXPECT_EQ(WhyNoStoreLayers(context), "the context tag \"storelayers\" reads \"junk\"; expected "
                                         "DEVICE.STORE:LAYER,... in decimal, such as \"1.1:1,15.1:2\"");
    EXPECT_EQ(WhyNoStoreSizes(context), "the context tag \"storesizes\" reads \"1.1\"; expected "
                                        "DEVICE.STORE:SIZE,... in decimal, such as \"1.1:512,15.1:8192\"");
}

}   // namespace
}   // namespace kit::reading
