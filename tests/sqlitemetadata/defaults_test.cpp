// Default values of every shape, as the elements of a chip configuration that read them.

#include "sqlitemetadata_support.h"

#include <configtools/chipconfig.h>
#include <configtools/elements.h>

#include <gmock/gmock.h>

namespace {

using namespace VrexZynConfigTools;
using namespace VrexZynConfigTools::support;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr int BT = 1;

class Defaults : public RepositoryTest
{
protected:
    Defaults()
    {
        mBt = mRepository.AddSubsystem(mRepository.AddSystem("pottersong", "trindle7"), "bt");
        mContext.SetChip("trindle7");
    }

    void Read()
    {
        mProvider = Provider();
        ASSERT_TRUE(mProvider->Check()) << mErrors.Text();
        auto & reader = dynamic_cast<IConfigReader &>(*mProvider);
        reader.SetObserver(mChip);
        reader.Read(mContext);
    }

    CElement & Element(const std::string & key)
    {
        CZynContext context = ContextOf("trindle7", BT);
        context.SetLayerNumber(0);
        return const_cast<CElement &>(mChip.Element(key, context));
    }

    // The values of an element, each as a text; a complex payload in braces.
    std::vector<std::string> Values(const std::string & key)
    {
        CElement & element = Element(key);
        return element.IsValid() ? Texts(element.GetPayloadCopy(false))
                                 : std::vector<std::string>{ "no element" };
    }

    template <typename ListT>
    static std::vector<std::string> Texts(const ListT & payloads)
    {
        std::vector<std::string> texts;
        for (IPayload * const payload : payloads) {
            auto * const complex = dynamic_cast<CComplexPayload *>(payload);
            texts.push_back(complex == nullptr ? payload->ToString() : Joined(Texts(complex->GetFields())));
        }
        return texts;
    }

    static std::string Joined(const std::vector<std::string> & texts)
    {
        std::string joined;
        for (const std::string & text : texts)
            joined += (joined.empty() ? "" : " ") + text;
        return '{' + joined + '}';
    }

    void AddNumber(const std::string & type, std::int64_t min, std::int64_t max, const std::string & item)
    {
        RecordRow row{ .psid = ++mLast, .name = type, .internalType = type, .min = min, .max = max };
        mRepository.AddDefault(mRepository.AddKey(mBt, row), { item });
    }

    // Reads, and expects what is wrong with the one default value.
    void ExpectReason(const std::string & reason)
    {
        Read();
        EXPECT_THAT(Fault(), HasSubstr(reason));
        EXPECT_FALSE(mChip.HasElements());
    }

    RepositoryBuilder::Id mBt = 0;
    std::int64_t mLast = 0;
    CZynContext mContext;
    std::unique_ptr<IMetadataProvider> mProvider;
    CChipConfig mChip;
};

TEST_F(Defaults, of_numbers_are_elements_of_their_types)
{
    AddNumber("uint8", 0, 255, "255");
    AddNumber("int8", -128, 127, "-128");
    AddNumber("uint16", 0, 65535, "65535");
    AddNumber("int16", -32768, 32767, "-32768");
    AddNumber("uint32", 0, 4294967295, "4294967295");
    AddNumber("int32", -2147483648LL, 2147483647, "-2147483648");
    AddNumber("uint64", 0, -1, "-1");
    AddNumber("int64", INT64_MIN, INT64_MAX, "-9223372036854775808");
    AddNumber("integer", 0, 0, "-7");
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("uint8"), ElementsAre("255"));
    EXPECT_THAT(Values("int8"), ElementsAre("-128"));
    EXPECT_THAT(Values("uint16"), ElementsAre("65535"));
    EXPECT_THAT(Values("int16"), ElementsAre("-32768"));
    EXPECT_THAT(Values("uint32"), ElementsAre("4294967295"));
    EXPECT_THAT(Values("int32"), ElementsAre("-2147483648"));
    EXPECT_THAT(Values("uint64"), ElementsAre("18446744073709551615"));
    EXPECT_THAT(Values("int64"), ElementsAre("-9223372036854775808"));
    EXPECT_THAT(Values("integer"), ElementsAre("-7"));
}

TEST_F(RepositoryTest, the_example_of_the_manual_is_a_repository)
{
    const std::string manual = ContentOf(MANUAL);
    const std::size_t start = manual.find("```sql\n");
    ASSERT_NE(std::string::npos, start);
    mRepository.Run(manual.substr(start + 7, manual.find("```", start + 7) - start - 7));
    const auto provider = Provider();
    CChipConfig chip;
    auto & reader = dynamic_cast<IConfigReader &>(*provider);
    reader.SetObserver(chip);
    CZynContext context = ContextOf("trindle7");
    reader.Read(context);
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    context.Parse("layernumber=0;subsystemtype=1");
    EXPECT_EQ("5", const_cast<CElement &>(chip.Element(100, context)).GetPayloadCopy(false).at(0)->ToString());
    EXPECT_EQ(9, provider->MetadataByName("volume", context).Max());
}

TEST_F(Defaults, of_an_array_have_its_items_in_their_order)
{
    const auto key =
        mRepository.AddKey(mBt, { .psid = 1, .name = "list", .isArray = true, .arrayMaxLength = 3 });
    mRepository.AddDefault(key, { "3", "1", "2" });
    Read();
    EXPECT_THAT(Values("list"), ElementsAre("3", "1", "2"));
}

TEST_F(Defaults, of_texts_and_octet_strings_keep_every_octet)
{
    const RecordRow text{ .psid = 1, .name = "text", .internalType = "string", .max = 9 };
    mRepository.AddDefault(mRepository.AddKey(mBt, text), { "'it''s'" });
    const RecordRow octets{ .psid = 2, .name = "octets", .internalType = "octet_string", .max = 9 };
    mRepository.AddDefault(mRepository.AddKey(mBt, octets), { "x'41004200'" });
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("text"), ElementsAre("it's"));
    auto * const payload = dynamic_cast<CStringPayload *>(Element("octets").GetPayloadCopy(false).at(0));
    ASSERT_NE(nullptr, payload);
    EXPECT_EQ(std::string("A\0B\0", 4), payload->GetValue());   // the last octet is no padding
}

TEST_F(Defaults, of_an_enumeration_have_its_name_and_number)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "mode", .max = 0, .metadataType = 1 });
    mRepository.AddEnumerators(key, { { "off", 0 }, { "on", -1 } });
    mRepository.AddDefault(key, { "-1" });
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    auto * const payload = dynamic_cast<CEnumPayload *>(Element("mode").GetPayloadCopy(false).at(0));
    ASSERT_NE(nullptr, payload);
    EXPECT_EQ("on", payload->GetName());
    EXPECT_EQ(-1, payload->GetValue());
}

TEST_F(Defaults, of_a_table_are_rows_found_by_their_indices)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "gain", .numIndices = 2 });
    mRepository.AddIntIndex(key, 1, "antenna", 0, 3);
    mRepository.AddEnumIndex(key, 2, "band", { { "low", 2 }, { "high", 99999999 } });
    mRepository.AddDefault(key, { "10" }, { 3, 99999999 });
    mRepository.AddDefault(key, { "20" }, { 0, 2 });
    const auto plain = mRepository.AddKey(mBt, { .psid = 2, .name = "plain" });
    mRepository.AddDefault(plain, { "30" });
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("gain.3.99999999"), ElementsAre("10"));
    EXPECT_THAT(Values("gain.0.2"), ElementsAre("20"));
    EXPECT_THAT(Values("gain.3.2"), ElementsAre("no element"));
    EXPECT_THAT(Values("plain"), ElementsAre("30"));   // with no indices left over from the table
}

TEST_F(Defaults, of_a_struct_are_unpacked_from_words_with_their_low_bytes_first)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" });
    mRepository.AddField(key, { .name = "low" }, 0, 3);
    mRepository.AddField(key, { .name = "high" }, 3, 5);
    mRepository.AddField(key, { .name = "straddling", .internalType = "uint16", .max = 65535 }, 8, 16);
    mRepository.AddField(
        key, { .name = "negative", .internalType = "int8", .format = "signed_decimal" }, 24, 8);
    mRepository.AddDefault(key, { "x'8DEFBEFB'" });
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("all"), ElementsAre("{5 17 48879 -5}"));
}

TEST_F(Defaults, of_a_struct_in_octets_are_unpacked_from_its_octets)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" }, true, true);
    mRepository.AddField(key, { .name = "word", .internalType = "uint16", .max = 65535 }, 0, 16);
    mRepository.AddField(key, { .name = "byte" }, 16, 8);
    mRepository.AddDefault(key, { "x'341207'" });
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("all"), ElementsAre("{4660 7}"));
}

TEST_F(Defaults, of_an_array_of_structs_with_arrays_have_every_struct)
{
    for (const bool octets : { false, true }) {
        const std::string name = octets ? "octets" : "words";
        const RecordRow row{ .psid = octets ? 2 : 1, .name = name, .isArray = true, .arrayMaxLength = 3 };
        const auto key = mRepository.AddStructKey(mBt, row, true, octets);
        mRepository.AddField(key, { .name = "list", .isArray = true, .arrayMaxLength = 2 }, 0, 16);
        const auto inner = mRepository.AddStruct("NULL", { .name = "inner", .isArray = true }, true);
        mRepository.PutField(key, inner, 16, 16);
        mRepository.AddField(inner, { .name = "byte" }, 0, 8);
        mRepository.AddDefault(key, { "x'01020304'", "x'05060708'", "x'090A0B0C'" });
    }
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("words"), ElementsAre("{{1 2} {{3} {4}}}", "{{5 6} {{7} {8}}}", "{{9 10} {{11} {12}}}"));
    EXPECT_EQ(Values("words"), Values("octets"));
}

TEST_F(Defaults, point_at_the_records_of_their_keys)
{
    mRepository.AddDefault(mRepository.AddKey(mBt, { .psid = 1, .name = "volume" }), { "5" });
    Read();
    EXPECT_EQ(&mProvider->MetadataById(1, mContext), Element("volume").Metadata());
}

TEST_F(Defaults, out_of_the_range_of_their_key_are_refused)
{
    mRepository.AddDefault(mRepository.AddKey(mBt, { .psid = 7, .name = "volume", .max = 9 }), { "10" });
    ExpectReason("the default value of key 7 \"volume\": Read value 10 is out of range [0,9]");
}

TEST_F(Defaults, out_of_the_range_are_taken_where_data_is_not_checked)
{
    mRepository.AddDefault(mRepository.AddKey(mBt, { .psid = 7, .name = "volume", .max = 9 }), { "10" });
    mContext.SetTag("nodatacheck", std::string("true"));
    Read();
    EXPECT_FALSE(mErrors.IsSet()) << mErrors.Text();
    EXPECT_THAT(Values("volume"), ElementsAre("10"));
}

TEST_F(Defaults, that_do_not_fit_their_type_are_refused_rather_than_cut)
{
    AddNumber("uint8", 0, 255, "257");
    ExpectReason("the value 257 doesn't fit uint8");
}

TEST_F(Defaults, that_are_negative_do_not_fit_an_unsigned_type)
{
    AddNumber("uint32", 0, 4294967295, "-1");
    ExpectReason("the value -1 doesn't fit uint32");
}

TEST_F(Defaults, without_an_enumerator_are_refused)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "mode", .metadataType = 1 });
    mRepository.AddEnumerators(key, { { "off", 0 } });
    mRepository.AddDefault(key, { "1" });
    ExpectReason("Value 1 for element with psid = 1, Name = mode doesn't match a valid enum");
}

TEST_F(Defaults, of_a_wrong_length_are_refused)
{
    const RecordRow text{ .psid = 1, .name = "text", .internalType = "string", .max = 2 };
    mRepository.AddDefault(mRepository.AddKey(mBt, text), { "'abc'" });
    ExpectReason("is out of range [0,2], got 3");
}

TEST_F(Defaults, of_another_kind_than_their_key_are_refused)
{
    AddNumber("uint8", 0, 255, "'5'");
    const RecordRow text{ .psid = 2, .name = "text", .internalType = "string" };
    mRepository.AddDefault(mRepository.AddKey(mBt, text), { "x'41'" });
    const RecordRow octets{ .psid = 3, .name = "octets", .internalType = "octet_string" };
    mRepository.AddDefault(mRepository.AddKey(mBt, octets), { "'A'" });
    const auto key = mRepository.AddStructKey(mBt, { .psid = 4, .name = "all" });
    mRepository.AddField(key, { .name = "byte" }, 0, 8);
    mRepository.AddDefault(key, { "5" });
    Read();
    const std::string beginning = Path() + ": the default value of key ";
    EXPECT_EQ(beginning + "1 \"uint8\": the value has to be an INTEGER\n" + beginning +
                  "2 \"text\": a text has to be a TEXT\n" + beginning +
                  "3 \"octets\": an octet string has to be a BLOB\n" + beginning +
                  "4 \"all\": a packed struct has to be a BLOB",
        mErrors.Text());
}

TEST_F(Defaults, of_a_struct_that_are_too_long_or_too_short_are_refused)
{
    const auto key = mRepository.AddStructKey(mBt, { .psid = 1, .name = "all" });
    mRepository.AddField(key, { .name = "byte" }, 16, 8);
    mRepository.AddDefault(key, { "x'010203'" });
    ExpectReason("the packed struct has 3 octets, but there have to be 4");
}

TEST_F(Defaults, of_a_single_value_are_one_item)
{
    mRepository.AddDefault(mRepository.AddKey(mBt, { .psid = 1, .name = "volume" }), { "1", "2" });
    ExpectReason("it has 2 items, but an element holds one");
}

TEST_F(Defaults, of_an_array_keep_to_its_lengths)
{
    const RecordRow row{ .psid = 1, .name = "list", .isArray = true, .arrayMinLength = 2, .arrayMaxLength = 3 };
    const auto key = mRepository.AddKey(mBt, row);
    mRepository.AddDefault(key, { "1" });
    ExpectReason("it has 1 items, but there have to be from 2 to 3");
}

TEST_F(Defaults, of_an_array_may_not_be_longer_than_it)
{
    const RecordRow row{ .psid = 1, .name = "list", .isArray = true, .arrayMaxLength = 3 };
    mRepository.AddDefault(mRepository.AddKey(mBt, row), { "1", "2", "3", "4" });
    ExpectReason("it has 4 items, but there have to be from 0 to 3");
}

TEST_F(Defaults, of_an_array_of_texts_are_one_text)
{
    const RecordRow row{ .psid = 1, .name = "list", .internalType = "string", .isArray = true };
    mRepository.AddDefault(mRepository.AddKey(mBt, row), { "'a'", "'b'" });
    ExpectReason("it has 2 items, but an element holds one");
}

TEST_F(Defaults, without_items_are_refused)
{
    mRepository.AddDefault(mRepository.AddKey(mBt, { .psid = 1, .name = "volume" }), {});
    ExpectReason("it has no items");
}

TEST_F(Defaults, that_stand_twice_are_refused)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "volume" });
    mRepository.AddDefault(key, { "1" });
    mRepository.AddDefault(key, { "1" });
    ExpectReason("the default value of key 1 \"volume\": there is another one");
}

TEST_F(Defaults, of_a_row_outside_its_table_are_refused)
{
    const auto key = mRepository.AddKey(mBt, { .psid = 1, .name = "gain", .numIndices = 2 });
    mRepository.AddIntIndex(key, 1, "antenna", 1, 3);
    mRepository.AddEnumIndex(key, 2, "band", { { "low", 2 } });
    mRepository.AddDefault(key, { "1" }, { 0, 2 });
    mRepository.AddDefault(key, { "1" }, { 4, 2 });
    mRepository.AddDefault(key, { "1" }, { 1, 3 });
    mRepository.AddDefault(key, { "1" }, { 1 });
    Read();
    EXPECT_THAT(
        mErrors.Text(), HasSubstr("key 1.0.2 \"gain\": the index antenna is 0, but it has to be from 1 to 3"));
    EXPECT_THAT(mErrors.Text(), HasSubstr("key 1.4.2 \"gain\": the index antenna is 4"));
    EXPECT_THAT(mErrors.Text(), HasSubstr("key 1.1.3 \"gain\": the index band is 3, but it has no enumerator"));
    EXPECT_THAT(mErrors.Text(), HasSubstr("key 1.1 \"gain\": the row has 1 indices, the key 2"));
}

TEST_F(Defaults, with_a_gap_among_their_items_are_refused)
{
    const RecordRow row{ .psid = 1, .name = "list", .isArray = true };
    mRepository.AddDefault(mRepository.AddKey(mBt, row), { "1", "2", "3" });
    mRepository.Run("DELETE FROM default_items WHERE position = 1");
    ExpectReason("has a gap among its items");
}

TEST_F(Defaults, that_are_wrong_in_very_many_places_are_told_of_fifty)
{
    for (int number = 1; number <= 60; ++number) {
        const RecordRow row{ .psid = number, .name = "key" + std::to_string(number), .max = 1 };
        mRepository.AddDefault(mRepository.AddKey(mBt, row), { "2" });
    }
    Read();
    EXPECT_THAT(mErrors.Text(), HasSubstr("key 50 \"key50\""));
    EXPECT_THAT(mErrors.Text(), ::testing::Not(HasSubstr("key 51 ")));
    EXPECT_THAT(mErrors.Text(), ::testing::EndsWith(": and 10 more"));
}

}   // namespace
