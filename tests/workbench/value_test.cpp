#include <workbench/value.h>

#include <configtools/elements.h>
#include <configtools/metadata.h>
#include <configtools/payloads.h>
#include <configtools/zyncontext.h>

#include <support/memory_provider.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

/// A record that tells shape alone.
std::unique_ptr<CMetadata> Record(bool isArray, MetadataTypeEnum type)
{
    return std::make_unique<CMetadata>(
        0, 1, "", "", "", false, "", 0, 0, "", "", "", isArray, 0, 0, "", "", "", "", "", "", "", "", 0, type);
}

std::unique_ptr<CElementNumericArray> Numbers(std::vector<IPayload *> payloads)
{
    return std::make_unique<CElementNumericArray>(1, "", payloads, false);
}

std::string TextOf(CElement & element)
{
    return ToText(ValueOf(element));
}

CComplexPayload * Complex(const std::vector<IPayload *> & fields)
{
    auto complex = std::make_unique<CComplexPayload>(PAYLOAD_COMPLEX);
    for (IPayload * const field : fields)
        complex->AddField(field);
    return complex.release();
}

template <typename PayloadT, typename NumberT>
void ExpectExtremes(const std::string & type)
{
    using Limits = std::numeric_limits<NumberT>;
    const auto element = Numbers({ new PayloadT(Limits::min()), new PayloadT(Limits::max()) });
    EXPECT_EQ(
        TextOf(*element), '[' + std::to_string(Limits::min()) + ", " + std::to_string(Limits::max()) + ']');
    EXPECT_EQ(ValueOf(*element).mType, type);
}

}   // namespace

TEST(ValueOf, keeps_width_and_sign_of_every_number)
{
    ExpectExtremes<CInt8Payload, std::int8_t>("int8");
    ExpectExtremes<CInt16Payload, std::int16_t>("int16");
    ExpectExtremes<CInt32Payload, std::int32_t>("int32");
    ExpectExtremes<CInt64Payload, std::int64_t>("int64");
    ExpectExtremes<CUint8Payload, std::uint8_t>("uint8");
    ExpectExtremes<CUint16Payload, std::uint16_t>("uint16");
    ExpectExtremes<CUint32Payload, std::uint32_t>("uint32");
    ExpectExtremes<CUint64Payload, std::uint64_t>("uint64");
}

TEST(ValueOf, makes_a_single_payload_no_list)
{
    EXPECT_EQ(TextOf(*Numbers({ new CUint8Payload(5) })), "5");
}

TEST(ValueOf, makes_an_array_of_one_a_list)
{
    const auto record = Record(true, METADATA_SIMPLE);
    const auto element = Numbers({ new CUint8Payload(5) });
    element->Use(*record);
    EXPECT_EQ(TextOf(*element), "[5]");
}

TEST(ValueOf, makes_an_element_without_payloads_an_empty_list)
{
    const auto element = Numbers({});
    EXPECT_EQ(TextOf(*element), "[]");
    EXPECT_EQ(ValueOf(*element).mType, "");
}

TEST(ValueOf, passes_over_null_payloads)
{
    EXPECT_EQ(TextOf(*Numbers({ nullptr, new CUint8Payload(5) })), "5");
}

TEST(ValueOf, tells_text_from_octets)
{
    CElementString text(1, "", "a\"b\n", false, false);
    EXPECT_EQ(TextOf(text), "\"a\\\"b\\n\"");
    EXPECT_EQ(ValueOf(text).mType, "string");
    CElementString octets(1, "", std::string("\x00\xff\x0a", 3), true, false);
    EXPECT_EQ(TextOf(octets), "00 ff 0a");
    EXPECT_EQ(ValueOf(octets).mType, "octet_string");
    CElementString empty(1, "", "", true, false);
    EXPECT_EQ(TextOf(empty), "(no octets)");
}

TEST(ValueOf, shows_an_enumerator_by_name_and_number)
{
    CElementEnum element(1, "", false);
    element.AddEnum("FAST", -3);
    EXPECT_EQ(TextOf(element), "FAST (-3)");
    EXPECT_EQ(ValueOf(element).mType, "enum");
}

TEST(ValueOf, takes_the_payloads_of_a_structure_for_its_fields)
{
    CElementStruct element(1, "", false);
    element.AddField(new CUint8Payload(1));
    EXPECT_EQ(TextOf(element), "{1}");
    element.AddField(Complex({ new CInt8Payload(-1), new CStringPayload("x", false) }));
    EXPECT_EQ(TextOf(element), "{1, {-1, \"x\"}}");
    EXPECT_EQ(ValueOf(element).mType, "struct");
}

TEST(ValueOf, keeps_the_only_field_of_a_structure_within_it)
{
    CElementStruct element(1, "", false);
    element.AddField(Complex({ new CUint8Payload(1) }));
    EXPECT_EQ(TextOf(element), "{{1}}");
}

TEST(ValueOf, makes_an_array_of_structures_a_list)
{
    const auto record = Record(true, METADATA_STRUCT);
    CElementStruct element(1, "", false);
    element.AddField(Complex({ new CUint8Payload(1) }));
    element.AddField(Complex({ new CUint8Payload(2) }));
    element.Use(*record);
    EXPECT_EQ(TextOf(element), "[{1}, {2}]");
}

TEST(ValueOf, takes_a_row_of_a_structured_table_for_a_structure)
{
    const auto record = Record(false, METADATA_STRUCT);
    CIndexedElement fields(1, "", { 3 }, { new CUint8Payload(1), new CUint8Payload(2) }, false);
    fields.Use(*record);
    EXPECT_EQ(TextOf(fields), "{1, 2}");
    CIndexedElement whole(1, "", { 3 }, { Complex({ new CUint8Payload(1) }) }, false);
    whole.Use(*record);
    EXPECT_EQ(TextOf(whole), "{1}");
}

TEST(ValueOf, shows_what_a_raw_element_holds)
{
    CElementRaw element(1, "", { new CUint8Payload(1), new CStringPayload("\x01", true) }, false);
    EXPECT_EQ(TextOf(element), "{1, 01}");
    EXPECT_EQ(ValueOf(element).mType, "raw");
}

TEST(ValueOf, gives_structs_of_a_record_one_entry_a_field_however_they_were_read)
{
    support::MemoryProvider provider({ "x" });
    auto & layout = provider.Struct(SUBSYSTEM_BT, support::ARecord(5).Named("S"));
    CMetadata & count = provider.NumberField(support::ARecord(0).Named("Count").OfType("uint8"));
    CMetadata & steps = provider.NumberField(support::ARecord(0).Named("Steps").OfType("uint8").Array(2, 2));
    layout.AddField("", &count, 0, 8);
    layout.AddField("", &steps, 8, 16);
    CZynContext context;
    const IMetadata & record = provider.MetadataById(5, context);

    // Field by field, the items of an array stand in the list of their struct.
    CElementStruct byField(5, "", false);
    byField.AddField(Complex({ new CUint8Payload(1), new CUint8Payload(2), new CUint8Payload(3) }));
    byField.Use(record);
    EXPECT_EQ(TextOf(byField), "{1, {2, 3}}");
    CElementStruct asBlock(5, "", false);
    asBlock.AddField(
        Complex({ new CUint8Payload(1), Complex({ new CUint8Payload(2), new CUint8Payload(3) }) }));
    asBlock.Use(record);
    EXPECT_EQ(TextOf(asBlock), "{1, {2, 3}}");
}

TEST(ValueOf, asks_the_payloads_of_a_row_for_the_record)
{
    const auto record = Record(true, METADATA_SIMPLE);
    auto * const only = new CUint8Payload(7);
    only->Use(*record);
    CIndexedElement row(record->PsId(), "", { 3 }, { only }, false);
    EXPECT_EQ(TextOf(row), "[7]");
    CIndexedElement other(record->PsId() + 1, "", { 3 }, { new CUint8Payload(7) }, false);
    dynamic_cast<IMetadataUser &>(*other.GetPayloadCopy(false).front()).Use(*record);
    EXPECT_EQ(TextOf(other), "7");
}

}   // namespace workbench
