#include "layouts.h"

#include <configtools/structcodec.h>
#include <support/debug_capture.h>
#include <support/framework_errors.h>
#include <support/slots.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <new>
#include <type_traits>

namespace VrexZynConfigTools {
namespace {

using namespace support;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr char GET_TYPE[] = "VrexZynConfigTools::CStructCodec::GetIntTypeFromBitWidth";

TEST(StructCodec, has_the_two_slots_of_a_writable)
{
    static_assert(std::is_base_of_v<IWritable, CStructCodec>);
    static_assert(CStructCodec::BITS_IN_UINT16 == 16);
    static_assert(std::is_same_v<decltype(CStructCodec::BITS_IN_UINT16), const std::uint32_t>);
    EXPECT_EQ((SlotOf<bool(IConfigWriter &, IConfigContext &)>(&CStructCodec::Write)), 0);
    EXPECT_EQ(SlotAfter<CStructCodec>(), 3) << "the destructor takes two";
}

TEST(StructCodec, knows_the_width_of_each_integer_type)
{
    EXPECT_EQ(CStructCodec::BitsForInternalType("uint8"), 8U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("int8"), 8U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("uint16"), 16U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("int16"), 16U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("uint32"), 32U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("int32"), 32U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("uint64"), 64U);
    EXPECT_EQ(CStructCodec::BitsForInternalType("int64"), 64U);
}

TEST(StructCodec, knows_no_width_of_any_other_text)
{
    const std::string withNul("uint8\0", 6);
    for (const std::string & text :
        { std::string("integer"), std::string("string"), std::string("octet_string"), std::string(),
            std::string("uint"), std::string("int"), std::string("UINT8"), std::string("uint8 "),
            std::string(" uint8"), std::string("uint128"), std::string("uint1"), withNul })
        EXPECT_EQ(CStructCodec::BitsForInternalType(text), 0U) << text;
}

struct WidthAndTypes
{
    int mFirst;
    int mLast;
    const char * mSigned;
    const char * mUnsigned;
};

TEST(StructCodec, finds_the_smallest_type_for_a_width)
{
    constexpr WidthAndTypes TABLE[] = { { 1, 8, "int8", "uint8" }, { 9, 16, "int16", "uint16" },
        { 17, 32, "int32", "uint32" }, { 33, 64, "int64", "uint64" } };
    DebugCapture debug;
    for (const WidthAndTypes & row : TABLE) {
        for (int width = row.mFirst; width <= row.mLast; ++width) {
            EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth(std::to_string(width), false), row.mSigned) << width;
            EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth(std::to_string(width), true), row.mUnsigned)
                << width;
        }
    }
    EXPECT_THAT(debug.TextsOf(GET_TYPE), IsEmpty());
}

TEST(StructCodec, reads_the_width_as_atoi_does)
{
    EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth(" 12bits", true), "uint16");
    EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth("+064", false), "int64");
    EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth("0x20", false), "");
}

TEST(StructCodec, finds_no_type_for_a_width_outside_1_to_64_and_says_so)
{
    const std::vector<std::pair<std::string, std::string>> widths = { { "0", "0" }, { "-1", "-1" },
        { "-64", "-64" }, { "65", "65" }, { "1000", "1000" }, { "", "0" }, { "wide", "0" } };
    for (const auto & [width, number] : widths) {
        for (const bool isUnsigned : { false, true }) {
            DebugCapture debug;
            EXPECT_EQ(CStructCodec::GetIntTypeFromBitWidth(width, isUnsigned), "") << width;
            EXPECT_THAT(debug.TextsOf(GET_TYPE),
                ElementsAre("Unable to return the correct integer type. bitWidth = " + number));
        }
    }
}

/// Two fields of 16 bits, which show each word as it stands.
Layout TwoWords(bool isOctetsInBin = false)
{
    Layout layout(LITTLE_ENDIAN_TARGET, isOctetsInBin);
    layout.Field(0, 16, ANumber("uint16")).Field(16, 16, ANumber("uint16"));
    return layout;
}

void EncodeTwoWords(CStructCodec & codec, std::uint16_t first, std::uint16_t second, bool isOctetsInBin = false)
{
    Layout layout = TwoWords(isOctetsInBin);
    codec.Encode(*ATree(new CUint16Payload(first), new CUint16Payload(second)), layout.Detail());
}

TEST(StructCodecWrite, gives_a_payload_of_16_bits_per_word_in_ascending_order)
{
    FrameworkErrors errors;
    CStructCodec codec;
    EncodeTwoWords(codec, 0x1234, 0xFEDC);
    CollectingWriter writer;
    EXPECT_TRUE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 5:4660", "WritePayload 5:65244"));
    EXPECT_FALSE(writer.mHasMetadata);
}

TEST(StructCodecWrite, passes_the_context_on)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    CBaseContext context("bt");
    context.SetTag("chip", "a");
    RecordingWriter writer({ "chip" });
    EXPECT_TRUE(codec.Write(writer, context));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 5:1 chip=a", "WritePayload 5:2 chip=a"));
}

TEST(StructCodecWrite, can_be_called_again)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    EXPECT_THAT(WordsOf(codec), ElementsAre(1, 2));
    EXPECT_THAT(WordsOf(codec), ElementsAre(1, 2));
}

TEST(StructCodecWrite, stops_at_an_error)
{
    FrameworkErrors errors;
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    RecordingWriter writer;
    writer.FailsIn("WritePayload", "disk full");
    EXPECT_FALSE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 5:1"));
    EXPECT_EQ(errors.Text(), "disk full");
}

TEST(StructCodecWrite, sees_an_earlier_error_after_the_first_word)
{
    FrameworkErrors errors;
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    errors.Set("earlier");
    RecordingWriter writer;
    EXPECT_FALSE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 5:1"));
}

TEST(StructCodecWrite, writes_nothing_of_an_empty_array_and_is_content)
{
    FrameworkErrors errors;
    CStructCodec fresh;
    CStructCodec empty;
    Layout layout(LITTLE_ENDIAN_TARGET);
    empty.Encode(*ATree(), layout.Detail());
    errors.Set("earlier");   // is not looked at without a word
    for (CStructCodec * const codec : { &fresh, &empty }) {
        RecordingWriter writer;
        EXPECT_TRUE(codec->Write(writer, CNullContext::Ref()));
        EXPECT_THAT(writer.Calls(), IsEmpty());
    }
}

TEST(StructCodecWrite, gives_octets_as_one_octet_string)
{
    FrameworkErrors errors;
    CStructCodec codec;
    EncodeTwoWords(codec, 0x0041, 0x4342, true);
    CollectingWriter writer;
    EXPECT_TRUE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_EQ(writer.Calls().size(), 1U);
    EXPECT_EQ(writer.mOctets, std::string("A\0BC", 4)) << "the low byte of each word is first";
    EXPECT_TRUE(writer.mIsOctet);
    EXPECT_FALSE(writer.mHasMetadata);
}

TEST(StructCodecWrite, gives_only_the_octets_that_the_fields_reach_into)
{
    CStructCodec codec;
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(0, 16, ANumber("uint16")).Field(16, 1);
    codec.Encode(*ATree(new CUint16Payload(0x4241), new CUint8Payload(1)), layout.Detail());
    EXPECT_EQ(OctetsOf(codec), std::string("AB\x01"));
}

TEST(StructCodecWrite, gives_an_empty_octet_string_for_an_empty_struct)
{
    FrameworkErrors errors;
    CStructCodec codec;
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    codec.Encode(*ATree(), layout.Detail());
    RecordingWriter writer;
    EXPECT_TRUE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_THAT(writer.Calls(), ElementsAre("WritePayload 8:"));
}

TEST(StructCodecWrite, tells_of_an_error_with_octets)
{
    FrameworkErrors errors;
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2, true);
    RecordingWriter writer;
    writer.FailsIn("WritePayload", "disk full");
    EXPECT_FALSE(codec.Write(writer, CNullContext::Ref()));
    EXPECT_EQ(writer.Calls().size(), 1U);
}

TEST(StructCodecLife, one_codec_serves_structs_one_after_the_other)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 0x1111, 0x2222);
    EXPECT_THAT(WordsOf(codec), ElementsAre(0x1111, 0x2222));
    EncodeTwoWords(codec, 0x4241, 0x4443, true);
    EXPECT_EQ(OctetsOf(codec), "ABCD");
    EncodeTwoWords(codec, 0x3333, 0x4444);
    EXPECT_THAT(WordsOf(codec), ElementsAre(0x3333, 0x4444));
}

TEST(StructCodecLife, no_word_of_an_earlier_struct_stays)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 0xFFFF, 0xFFFF);
    Layout layout = TwoWords();
    codec.Encode(*ATree(), layout.Detail());
    EXPECT_THAT(WordsOf(codec), ElementsAre(0, 0));
}

TEST(StructCodecLife, holds_the_words_of_the_last_decode_too)
{
    CStructCodec codec;
    Layout layout = TwoWords();
    ScriptedSource source;
    source.Numbers({ 0xABCD, 0x1234 });
    bool more = false;
    const auto out = ATree();
    ASSERT_TRUE(codec.Decode(source, layout.Detail(), out.get(), more));
    EXPECT_THAT(WordsOf(codec), ElementsAre(0xABCD, 0x1234));

    ScriptedSource ended;
    codec.Decode(ended, layout.Detail(), out.get(), more);
    EXPECT_THAT(WordsOf(codec), ElementsAre(0, 0)) << "reset every time";
}

TEST(StructCodecLife, a_field_added_between_two_structs_counts)
{
    CStructCodec codec;
    Layout layout = TwoWords();
    const auto tree = ATree(new CUint16Payload(1), new CUint16Payload(2), new CUint16Payload(3));
    codec.Encode(*ATree(new CUint16Payload(1)), layout.Detail());
    layout.Field(32, 16);
    codec.Encode(*tree, layout.Detail());
    EXPECT_THAT(WordsOf(codec), ElementsAre(1, 2, 3));
}

TEST(StructCodecLife, an_enumerator_added_between_two_structs_counts)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Enum(0, 8, { { "off", "0" } });
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(10:)");
    static_cast<CMetadataDetailEnum *>(layout.FieldRecord(0).Details())->AddEnum("on", "1");
    EXPECT_EQ(DecodedText(layout, { 1 }), "9:(10:on)");
}

TEST(StructCodecLife, a_record_given_a_new_meaning_between_two_structs_counts)
{
    Layout layout(LITTLE_ENDIAN_TARGET);
    layout.Field(0, 8, ANumber("int8"));
    EXPECT_EQ(DecodedText(layout, { 0xFF }), "9:(0:-1)");
    layout.FieldRecord(0) = *ANumber("uint32").Build();
    EXPECT_EQ(DecodedText(layout, { 0xFF }), "9:(6:255)");
}

/// The data members, which stand behind the table of virtual operations.
struct Members
{
    std::uint16_t * mWords;
    std::uint64_t mNumWords;
    std::uint64_t mBitSize;
    std::uint64_t mNumOctets;
    bool mOctetsInBin;
};

Members MembersOf(const CStructCodec & codec)
{
    static_assert(sizeof(CStructCodec) >= sizeof(void *) + sizeof(Members));
    Members members;
    std::memcpy(&members, reinterpret_cast<const char *>(&codec) + sizeof(void *), sizeof members);
    return members;
}

/// A place for a codec whose destructor must not run, because it shares its words.
class NeverDestroyedCodec
{
public:
    template <typename... ArgumentT>
    explicit NeverDestroyedCodec(const ArgumentT &... argument)
        : mCodec(new (mPlace) CStructCodec(argument...))
    {}

    CStructCodec & operator*() { return *mCodec; }

private:
    alignas(CStructCodec) std::byte mPlace[sizeof(CStructCodec)];
    CStructCodec * mCodec;
};

TEST(StructCodecLife, a_new_one_holds_nothing)
{
    const Members members = MembersOf(CStructCodec());
    EXPECT_EQ(members.mWords, nullptr);
    EXPECT_EQ(members.mNumWords, 0U);
    EXPECT_EQ(members.mBitSize, 0U);
    EXPECT_EQ(members.mNumOctets, 0U);
    EXPECT_FALSE(members.mOctetsInBin);
}

TEST(StructCodecLife, keeps_the_sizes_of_the_struct)
{
    CStructCodec codec;
    Layout layout(LITTLE_ENDIAN_TARGET, true);
    layout.Field(0, 16).Field(16, 1);
    codec.Encode(*ATree(), layout.Detail());
    const Members members = MembersOf(codec);
    EXPECT_NE(members.mWords, nullptr);
    EXPECT_EQ(members.mNumWords, 2U);
    EXPECT_EQ(members.mBitSize, 17U);
    EXPECT_EQ(members.mNumOctets, 3U);
    EXPECT_TRUE(members.mOctetsInBin);
}

TEST(StructCodecLife, a_copy_shares_the_words)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2, true);
    NeverDestroyedCodec copy(codec);
    EXPECT_EQ(MembersOf(*copy).mWords, MembersOf(codec).mWords);
    EXPECT_EQ(MembersOf(*copy).mNumWords, 2U);
    EXPECT_EQ(MembersOf(*copy).mBitSize, 32U);
    EXPECT_EQ(MembersOf(*copy).mNumOctets, 4U);
    EXPECT_TRUE(MembersOf(*copy).mOctetsInBin);
    MembersOf(codec).mWords[0] = 0x4241;
    EXPECT_EQ(OctetsOf(*copy), std::string("AB\x02\0", 4));
}

TEST(StructCodecLife, an_assigned_one_shares_the_words_and_loses_its_own)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    NeverDestroyedCodec assigned;
    EncodeTwoWords(*assigned, 7, 8, true);
    const std::uint16_t * const lost = MembersOf(*assigned).mWords;
    *assigned = codec;
    EXPECT_EQ(MembersOf(*assigned).mWords, MembersOf(codec).mWords);
    EXPECT_THAT(WordsOf(*assigned), ElementsAre(1, 2));
    EXPECT_FALSE(MembersOf(*assigned).mOctetsInBin);
    EXPECT_EQ(lost[0], 7) << "lost, but not freed: another copy may share it";
}

TEST(StructCodecLife, one_that_holds_nothing_can_be_copied_and_assigned)
{
    const CStructCodec empty;
    CStructCodec copy(empty);
    CStructCodec assigned;
    assigned = empty;
    EncodeTwoWords(copy, 1, 2);
    EncodeTwoWords(assigned, 3, 4);
    EXPECT_THAT(WordsOf(copy), ElementsAre(1, 2));
    EXPECT_THAT(WordsOf(assigned), ElementsAre(3, 4));
}

TEST(StructCodecLife, assigning_to_itself_changes_nothing)
{
    CStructCodec codec;
    EncodeTwoWords(codec, 1, 2);
    const CStructCodec & same = codec;
    codec = same;
    EXPECT_THAT(WordsOf(codec), ElementsAre(1, 2));
}

}   // namespace
}   // namespace VrexZynConfigTools
