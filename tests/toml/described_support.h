/// What the tests of keys that metadata describe share: a description with a key of every shape, and files for it.

#ifndef TESTS_TOML_DESCRIBED_SUPPORT_H
#define TESTS_TOML_DESCRIBED_SUPPORT_H

#include "toml_support.h"

#include <support/memory_provider.h>

#include <configtools/metadata.h>

#include <limits>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

/// All keys belong to "bt", which is the subsystem of `HEAD`; but "Elsewhere" does to "wlan".
inline void DescribeChip(MemoryProvider & provider)
{
    const MemoryProvider::Enumerators kinds = { { "LEFT", 0 }, { "RIGHT", 1 }, { "CENTRE", 3 } };
    provider.Number(SUBSYSTEM_BT, ARecord(16).Named("Volume").OfType("uint8").Within(0, 100));
    provider.Enum(SUBSYSTEM_BT, ARecord(17).Named("Mode").OfType("uint8"),
        { { "OFF", 0 }, { "ON", 1 }, { "LOUD", 2 }, { "STILL", 0 }, { "", 9 } });
    provider.Number(SUBSYSTEM_BT, ARecord(18).Named("Title").OfType("string").Within(1, 8));
    provider.Number(SUBSYSTEM_BT, ARecord(19).Named("Address").OfType("octet_string").Within(2, 6));
    provider.Number(SUBSYSTEM_BT, ARecord(119).Named("Fingerprint").OfType("octet_string").Within(4, 4));
    provider.Number(SUBSYSTEM_BT, ARecord(20).Named("Curve").OfType("int16").Within(-100, 100).Array(2, 4));
    provider.Number(SUBSYSTEM_BT, ARecord(21).Named("Serial").OfType("uint64").Within(5, -2));
    auto & fit = provider.Struct(SUBSYSTEM_BT, ARecord(22).Named("Fit"));
    fit.AddField("",
        &provider.NumberField(
            ARecord(0).Named("Gain").OfType("int8").Formatted("signed_decimal").Within(-8, 7)),
        0, 4);
    fit.AddField("", &provider.EnumField(ARecord(0).Named("Kind").OfType("uint8"), kinds), 4, 4);
    fit.AddField(
        "", &provider.NumberField(ARecord(0).Named("Bands").OfType("int8").Within(-9, 9).Array()), 8, 24);
    CMetadata & inner = provider.StructField(ARecord(0).Named("Inner"));
    fit.AddField("", &inner, 32, 32);
    auto & innerFields = dynamic_cast<CMetadataDetailStruct &>(*inner.Details());
    innerFields.AddField("",
        &provider.NumberField(
            ARecord(0).Named("Low").OfType("integer").Formatted("hexadecimal").Within(0, 4095)),
        0, 12);
    innerFields.AddField(
        "", &provider.NumberField(ARecord(0).Named("High").OfType("int16").Within(-500, 500)), 16, 16);
    CMetadata & points = provider.StructField(ARecord(0).Named("Points").Array());
    fit.AddField("", &points, 64, 32);
    auto & point = dynamic_cast<CMetadataDetailStruct &>(*points.Details());
    point.AddField("", &provider.NumberField(ARecord(0).Named("X").OfType("uint8").Within(0, 9)), 0, 8);
    point.AddField("", &provider.NumberField(ARecord(0).Named("Y").OfType("uint8").Within(0, 9)), 8, 8);
    auto & profiles = provider.Struct(SUBSYSTEM_BT, ARecord(23).Named("Profiles").Array(1, 3));
    profiles.AddField("", &provider.NumberField(ARecord(0).Named("Level").OfType("uint8").Within(0, 9)), 0, 8);
    profiles.AddField(
        "", &provider.NumberField(ARecord(0).Named("Steps").OfType("uint8").Within(0, 9).Array()), 8, 16);
    CMetadata & trim = provider.Number(
        SUBSYSTEM_BT, ARecord(24).Named("GainTrim").OfType("int8").Within(-9, 9).WithNumIndices(2));
    MemoryProvider::AddIndex(trim, "channel", 1, 8);
    MemoryProvider::AddIndex(trim, "band", { { "LOW", 0 }, { "HIGH", 1 } });
    provider.Number(SUBSYSTEM_BT, ARecord(25).Named("Offset").OfType("integer").Within(1, 2));
    provider.Number(SUBSYSTEM_WLAN, ARecord(26).Named("Elsewhere").OfType("uint8").Within(0, 9));
    auto & label = provider.Struct(SUBSYSTEM_BT, ARecord(27).Named("Label"));
    label.AddField(
        "", &provider.NumberField(ARecord(0).Named("Id").OfType("octet_string").Within(0, 12)), 0, 96);
    label.AddField("", &provider.NumberField(ARecord(0).Named("Tag").OfType("string").Within(0, 4)), 96, 32);
}

/// A key in line 7 of a file.
inline std::string ADescribedKey(const std::string & fields)
{
    return HEAD + "key = [{ " + fields + " }]\n";
}

/// Keeps the status messages of a scope.
class StatusRecorder : public IMessageSink
{
public:
    StatusRecorder()
        : mGuard(this)
    {}
    void OnDebugLine(const DebugLine & /*line*/) override {}
    void OnStatus(GroupEnum /*group*/, StatusLevels /*level*/, const std::string & text) override
    {
        mTexts.push_back(text);
    }
    const std::vector<std::string> & Texts() const { return mTexts; }

private:
    std::vector<std::string> mTexts;
    CMessageSinkGuard mGuard;
};

inline const std::string A_FIT =
    "Gain = -8, Kind = 'RIGHT', Bands = [1, -2, 3], Inner = { Low = 0xfff, High = -500 }, "
    "Points = [{ X = 1, Y = 2 }, { Y = 4, X = 3 }]";

class DescribedTest : public TomlTest
{
protected:
    DescribedTest() { DescribeChip(mProvider); }

    IMetadataProvider * Provider() override { return &mProvider; }

    /// The elements that a file with these fields of a key in line 7 becomes; or its error.
    std::vector<std::string> Read(const std::string & fields, const std::string & tags = "")
    {
        return ReadFile(ADescribedKey(fields), tags);
    }

    std::vector<std::string> ReadFile(const std::string & text, const std::string & tags = "")
    {
        ReadChip chip;
        chip.Use(&mProvider);
        if (!chip.Read(Put(text), tags))
            return { ErrorOf(text, tags) };
        std::vector<std::string> elements;
        for (CElement * element : chip.Elements())
            elements.push_back(Describe(*element));
        return elements;
    }

    MemoryProvider mProvider{ { "abc", "abd" } };
};

}   // namespace VrexZynConfigTools::support

#endif
