#include <configtools/metadataprovider.h>

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>

namespace VrexZynConfigTools {
namespace {

CSubsystemInfo SevenTexts()
{
    return CSubsystemInfo("1", "2", "3", "4", "5", "6", "7");
}

TEST(CSubsystemInfo, keeps_the_seven_texts_in_the_order_of_its_constructor)
{
    const CSubsystemInfo info = SevenTexts();

    EXPECT_EQ(info.Name(), "1");
    EXPECT_EQ(info.Version(), "2");
    EXPECT_EQ(info.Alias(), "3");
    EXPECT_EQ(info.Layer(), "4");
    EXPECT_EQ(info.Variant(), "5");
    EXPECT_EQ(info.Description(), "6");
    EXPECT_EQ(info.BuildDate(), "7");
}

TEST(CSubsystemInfo, copies_and_moves_member_by_member)
{
    CSubsystemInfo source("n", "v", "a", "l", "variant", "d", "b");
    const CSubsystemInfo copy(source);
    CSubsystemInfo assigned = SevenTexts();
    assigned = source;
    EXPECT_EQ(copy.Variant(), "variant");
    EXPECT_EQ(assigned.Variant(), "variant");
    EXPECT_EQ(source.Variant(), "variant");

    CSubsystemInfo moved = SevenTexts();
    moved = CSubsystemInfo(std::move(source));
    EXPECT_EQ(moved.Name(), "n");
    EXPECT_EQ(moved.BuildDate(), "b");
    static_assert(std::is_nothrow_move_constructible_v<CSubsystemInfo>);
    static_assert(std::is_nothrow_move_assignable_v<CSubsystemInfo>);
}

struct TypeAndKeyword
{
    int mType;
    const char * mKeyword;
};

constexpr TypeAndKeyword SUBSYSTEMS[] = { { 0, "curator" }, { 1, "bt" }, { 2, "wlan" }, { 3, "audio" },
    { 4, "gnss" }, { 5, "nfc" }, { 6, "janitor" }, { 7, "app" }, { 8, "ble" }, { 9, "psapps" },
    { 10, "psaudio" } };

TEST(GetSubsystemType, maps_each_keyword_to_its_type_and_back)
{
    for (const TypeAndKeyword & subsystem : SUBSYSTEMS) {
        EXPECT_EQ(CSubsystemInfo::GetSubsystemType(subsystem.mKeyword), subsystem.mType);
        EXPECT_EQ(CSubsystemInfo::GetSubsystemType(static_cast<SubSystemTypeEnum>(subsystem.mType)),
            subsystem.mKeyword);
    }
}

TEST(GetSubsystemType, ignores_case)
{
    EXPECT_EQ(CSubsystemInfo::GetSubsystemType("WLAN"), SUBSYSTEM_WLAN);
    EXPECT_EQ(CSubsystemInfo::GetSubsystemType("wlan"), SUBSYSTEM_WLAN);
    EXPECT_EQ(CSubsystemInfo::GetSubsystemType("PsAudio"), SUBSYSTEM_PSAUDIO);
}

TEST(GetSubsystemType, any_other_text_is_unknown)
{
    for (const char * const text : { "", "unknown", "none", "wla", "wlans", " wlan", "wlan ", "2" })
        EXPECT_EQ(CSubsystemInfo::GetSubsystemType(text), SUBSYSTEM_UNKNOWN) << text;
    EXPECT_EQ(CSubsystemInfo::GetSubsystemType(std::string("bt\0", 3)), SUBSYSTEM_UNKNOWN);
}

TEST(GetSubsystemType, a_value_outside_the_table_has_no_keyword)
{
    for (const int type : { -1, 11, -2, std::numeric_limits<int>::min(), std::numeric_limits<int>::max() })
        EXPECT_EQ(CSubsystemInfo::GetSubsystemType(static_cast<SubSystemTypeEnum>(type)), "") << type;
}

}   // namespace
}   // namespace VrexZynConfigTools
