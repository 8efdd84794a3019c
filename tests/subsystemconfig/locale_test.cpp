// Names are equal without case by the `tolower` of the locale in force at the lookup, whatever it was when the elements
// came.

#include "subsystem_fixture.h"

#include <support/made_locale.h>

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;

namespace {

class CSubsystemConfigLocale : public SubsystemTest
{
protected:
    static std::string Lowered(std::string text)
    {
        std::transform(text.begin(), text.end(), text.begin(),
            [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
        return text;
    }

    /// Names that differ in one byte, which is at the end of the first word of eight or in the second.
    static std::vector<std::string> NamesWithEachByte()
    {
        std::vector<std::string> names;
        for (int byte = 1; byte < 256; ++byte) {
            if (byte == '.')
                continue;
            const char character = static_cast<char>(byte);
            names.push_back(std::string("n") + character);
            names.push_back(std::string("longer") + character + "_name");
        }
        return names;
    }

    void AddAll(const std::vector<std::string> & names)
    {
        for (const std::string & name : names) {
            ++mLastId;
            Add(Traced(static_cast<int>(mLastId), mLastId, name));
        }
    }

    /// Every name is found where a walk finds it.
    void ExpectAsAWalk(const std::vector<std::string> & names)
    {
        std::vector<std::string> stored;
        for (const CElement * element : mSubsystem.Elements())
            stored.push_back(Lowered(element->Name()));
        for (const std::string & name : names) {
            const auto found = std::find(stored.begin(), stored.end(), Lowered(name));
            const int expected =
                found != stored.end() ? static_cast<int>(found - stored.begin()) + 1 : NULL_ELEMENT;
            ASSERT_EQ(UidOf(mSubsystem.Element(name)), expected) << testing::PrintToString(name);
        }
    }

    MadeLocales mLocales;
    std::uint32_t mLastId = 0;
};

TEST_F(CSubsystemConfigLocale, decides_which_names_are_equal_in_every_single_byte_alphabet)
{
    const std::vector<std::string> names = NamesWithEachByte();
    AddAll(names);
    for (const SingleByteLocale & locale : SINGLE_BYTE_LOCALES) {
        mLocales.Switch(locale.mName);
        ExpectAsAWalk(names);
        ASSERT_FALSE(HasFatalFailure()) << locale.mName;
    }
    mLocales.Switch("C");
    ExpectAsAWalk(names);
}

TEST_F(CSubsystemConfigLocale, joins_ASCII_with_other_letters_in_Turkish)
{
    AddAll({ "PIN", "p\xDDn" });
    mLocales.Switch("Turkish ISO-8859-9");

    EXPECT_EQ(UidOf(mSubsystem.Element("p\xFDn")), 1);
    EXPECT_EQ(UidOf(mSubsystem.Element("pin")), 2);
    mLocales.Switch("C");
    EXPECT_EQ(UidOf(mSubsystem.Element("pin")), 1);
    EXPECT_EQ(UidOf(mSubsystem.Element("p\xDDn")), 2);
}

TEST_F(CSubsystemConfigLocale, may_change_between_insert_replacement_and_removal)
{
    AddAll({ "\xE6\xE7\xE8", "\xC6\xC7\xC8", "other" });
    mLocales.Switch("KOI8-R");
    EXPECT_EQ(UidOf(mSubsystem.Element("\xC6\xE7\xC8")), 1);

    mLocales.Switch("C");
    Add(Traced(4, 1, "\xE6"), "insertmode=overwrite");
    mLocales.Switch("CP1251");
    EXPECT_EQ(UidOf(mSubsystem.Element("\xC6")), 4);
    mSubsystem.RemoveElement("\xC6\xE7\xC8", nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 4, 3 }));
    mLocales.Switch("KOI8-R");
    mSubsystem.RemoveElement("\xC6", nullptr);
    EXPECT_EQ(Uids(), (std::vector<int>{ 3 }));
}

TEST_F(CSubsystemConfigLocale, decides_about_the_names_of_rows)
{
    Add(TracedRow(1, 100, { 1, 2 }, "\xE6\xE7"));
    Add(TracedRow(2, 200, { 1, 2 }, "\xC6\xC7"));
    EXPECT_EQ(UidOf(mSubsystem.Element("\xC6\xC7.1.2")), 2);
    mLocales.Switch("CP1251");

    EXPECT_EQ(UidOf(mSubsystem.Element("\xC6\xC7.1.2")), 1);
    mLocales.Switch("C");
    EXPECT_EQ(UidOf(mSubsystem.Element("\xC6\xC7.1.2")), 2);
}

}   // namespace
