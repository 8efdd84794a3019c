// Which subsystem a text means.

#include "chip_provider.h"

#include <configtools/helper.h>
#include <configtools/zyncontext.h>

#include <support/framework_errors.h>

#include <gtest/gtest.h>

#include <string>

namespace VrexZynConfigTools {
namespace {

using support::ChipProvider;

class SubsystemFromString : public testing::Test
{
protected:
    SubSystemTypeEnum TypeOf(const std::string & text)
    {
        return CHelper::Ref().SubsystemFromString(mProvider, mContext, text);
    }

    ChipProvider mProvider;
    CZynContext mContext;
};

TEST_F(SubsystemFromString, knows_the_fixed_names_in_any_case)
{
    EXPECT_EQ(TypeOf("curator"), SUBSYSTEM_CURATOR);
    EXPECT_EQ(TypeOf("WLAN"), SUBSYSTEM_WLAN);
    EXPECT_EQ(TypeOf("PsAudio"), SUBSYSTEM_PSAUDIO);
}

TEST_F(SubsystemFromString, knows_an_alias_in_any_case_by_way_of_its_name)
{
    mProvider.Subsystem("bt", "blueRadio").Subsystem("Audio", "sound");
    EXPECT_EQ(TypeOf("BlueRadio"), SUBSYSTEM_BT);
    EXPECT_EQ(TypeOf("SOUND"), SUBSYSTEM_AUDIO);
}

TEST_F(SubsystemFromString, compares_an_alias_after_the_fixed_names)
{
    mProvider.Subsystem("bt", "audio").Subsystem("bt", "AUDIO");
    EXPECT_EQ(TypeOf("audio"), SUBSYSTEM_AUDIO);
}

TEST_F(SubsystemFromString, takes_the_first_of_several_aliases_even_if_its_name_means_nothing)
{
    mProvider.Subsystem("bt", "radio").Subsystem("wlan", "radio");
    EXPECT_EQ(TypeOf("radio"), SUBSYSTEM_BT);
    mProvider.Subsystem("camera", "lens").Subsystem("wlan", "lens");
    EXPECT_EQ(TypeOf("lens"), SUBSYSTEM_UNKNOWN);
}

TEST_F(SubsystemFromString, knows_a_subsystem_by_its_alias_and_not_by_a_name_of_its_own)
{
    mProvider.Subsystem("camera", "eye");
    EXPECT_EQ(TypeOf("camera"), SUBSYSTEM_UNKNOWN);
}

TEST_F(SubsystemFromString, any_other_text_is_unknown_and_no_error)
{
    const support::FrameworkErrors errors;
    const support::GroupErrors coreErrors(GROUP_CORE_CLASSES);
    EXPECT_EQ(TypeOf("radio"), SUBSYSTEM_UNKNOWN);
    mProvider.Subsystem("bt", "radio");
    for (const char * const text : { "", "radi", "radios", " radio", "1" })
        EXPECT_EQ(TypeOf(text), SUBSYSTEM_UNKNOWN) << text;
    EXPECT_FALSE(errors.IsSet() || coreErrors.IsSet());
}

TEST_F(SubsystemFromString, an_empty_text_means_a_subsystem_without_an_alias)
{
    mProvider.Subsystem("wlan", "");
    EXPECT_EQ(TypeOf(""), SUBSYSTEM_WLAN);
}

TEST_F(SubsystemFromString, passes_over_a_place_without_a_subsystem)
{
    mProvider.Nothing().Subsystem("bt", "radio");
    EXPECT_EQ(TypeOf("radio"), SUBSYSTEM_BT);
}

}   // namespace
}   // namespace VrexZynConfigTools
