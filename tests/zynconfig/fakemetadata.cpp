/// A plug-in that stands in for the one of metadata repositories. It knows one system by heart, and its argument, the
/// path of the repository, orders what else it does:
///
///     nothing      there is no provider
///     broken       the provider isn't usable, and says why
///     speechless   the provider isn't usable, and doesn't say why
///     several      there are two systems, each with a chip
///     plain        the provider delivers no default values
///     failing      every question leaves an error
///     watched      the end of the provider is told on standard error
///     boundless    a struct that is far too large, with fields outside and on top of each other

#include <support/memory_provider.h>

#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace VrexZynConfigTools;
using support::ARecord;

ARecord Field(const std::string & name, const std::string & type)
{
    return ARecord(0).Named(name).OfType(type).Within(0, 255);
}

class CFakeProvider : public support::MemoryProvider
{
public:
    explicit CFakeProvider(const std::string & path)
        : MemoryProvider({ "trindle7", "other" })
        , mPath(path)
    {
        mChipList = { &mTrindle };
        if (Orders("several"))
            mChipList.push_back(&mOther);
        FillBt();
        FillWlan();
        FillAudio();
        if (Orders("boundless"))
            FillBoundless();
        if (Orders("failing"))
            FailWith("the repository is on strike");
    }
    CFakeProvider(const CFakeProvider &) = delete;
    CFakeProvider & operator=(const CFakeProvider &) = delete;
    ~CFakeProvider() override
    {
        if (Orders("watched"))
            std::fputs("the provider is gone\n", stderr);
    }

    const std::vector<std::string> & Systems() override
    {
        static const std::vector<std::string> ONE = { "trindle" };
        static const std::vector<std::string> TWO = { "trindle", "another" };
        return Orders("several") ? TWO : ONE;
    }
    std::vector<ISubsystemInfo *> & Subsystems(IConfigContext &) override { return mSubsystems; }
    std::vector<IChipInfo *> & Chips(IConfigContext & context) override
    {
        const std::string label = context.GetTag(keywords::TAG_CHIP);
        mSelected.clear();
        for (IChipInfo * const chip : mChipList) {
            if (label.empty() || chip->SystemVersionLabel() == label)
                mSelected.push_back(chip);
        }
        return mSelected;
    }
    bool Check() override
    {
        if (Orders("broken"))
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "fakemetadata", true)
                .SetErrorMsg(0, mPath + ": this is no repository");
        return !Orders("broken") && !Orders("speechless");
    }

private:
    bool Orders(const char * word) const { return mPath.find(word) != std::string::npos; }

    void FillBt()
    {
        Number(SUBSYSTEM_BT, ARecord(257).Named("BtAddress").OfType("octet_string").Within(6, 6));
        Number(SUBSYSTEM_BT, ARecord(258).Named("CrystalTrim").OfType("int8").Within(-8, 7));
        Number(SUBSYSTEM_BT, ARecord(260).Named("TxPowerSteps").OfType("int16").Within(-200, 80).Array(1, 5));
        Enum(SUBSYSTEM_BT, ARecord(261).Named("RadioClass"), { { "CLASS_1", 1 }, { "CLASS_2", 2 } });
        Number(SUBSYSTEM_BT, ARecord(262).Named("Wide").OfType("uint64").Within(0, -1));
        Number(SUBSYSTEM_BT, ARecord(4000000000).Named("Huge").OfType("uint8").Within(0, 9));
        Number(SUBSYSTEM_BT, ARecord(263).Named("Unset").OfType("uint8").Within(0, 9));
    }

    void FillWlan()
    {
        Number(SUBSYSTEM_WLAN, ARecord(258).Named("Country").OfType("string").Within(0, 2));
        CMetadata & gain = Number(
            SUBSYSTEM_WLAN, ARecord(514).Named("GainTrim").OfType("int8").Within(-9, 9).WithNumIndices(2));
        AddIndex(gain, "Band", Enumerators{ { "LOW", 0 }, { "HIGH", 1 } });
        AddIndex(gain, "Chain", 0, 3);
    }

    // Every way in which a field can lie in words.
    void FillAudio()
    {
        auto & little = Struct(SUBSYSTEM_AUDIO, ARecord(784).Named("Little"));
        little.AddField("", &NumberField(Field("Alpha", "uint8").Within(0, 7)), 0, 3);
        little.AddField("", &NumberField(Field("Bravo", "uint8").Within(0, 31)), 3, 5);
        little.AddField("", &NumberField(Field("Charlie", "uint16")), 8, 16);
        little.AddField("", &EnumField(Field("Delta", "uint8"), { { "OFF", 0 }, { "ON", 1 } }), 24, 7);
        little.AddField("", &NumberField(Field("Echo", "uint32")), 32, 32);
        little.AddField("", &NumberField(Field("Foxtrot", "uint64")), 64, 40);

        auto & big = Struct(SUBSYSTEM_AUDIO, ARecord(785).Named("Big"), false);
        big.AddField("", &NumberField(Field("Golf", "uint16")), 0, 16);
        big.AddField("", &NumberField(Field("Hotel", "uint32")), 32, 32);
        big.AddField("", &NumberField(Field("Juliett", "uint8")), 48, 4);
        big.AddField("", &NumberField(Field("Kilo", "uint16")), 52, 12);

        CMetadata & band = StructField(ARecord(0).Named("Bands").Array());
        auto & inner = dynamic_cast<CMetadataDetailStruct &>(*band.Details());
        inner.AddField("", &NumberField(Field("Gain", "int8").Formatted("signed_decimal")), 0, 8);
        inner.AddField("", &NumberField(Field("Shape", "uint8")), 8, 8);
        auto & nested = Struct(SUBSYSTEM_AUDIO, ARecord(786).Named("Nested"));
        nested.AddField("", &NumberField(Field("Count", "uint8")), 0, 8);
        nested.AddField("", &band, 16, 32);
        nested.AddField("", &NumberField(Field("Steps", "uint8").Array(2, 2)), 48, 16);
        nested.AddField("", &NumberField(Field("Lost", "uint16")), 64, 64);
    }

    void FillBoundless()
    {
        auto & wild = Struct(SUBSYSTEM_AUDIO, ARecord(790).Named("Wild"));
        wild.AddField("", &NumberField(Field("One", "uint8")), 0, 8);
        wild.AddField("", &NumberField(Field("Two", "uint8")), 4, 8);
        wild.AddField("", &NumberField(Field("Huge", "uint16").Array()), 16, 100000000);
        CMetadata & itself = StructField(ARecord(0).Named("Self"));
        dynamic_cast<CMetadataDetailStruct &>(*itself.Details()).AddField("", &itself, 0, 8);
        wild.AddField("", &itself, 0, 8);
        wild.AddField("", nullptr, 0, 8);
    }

    std::string mPath;
    CSubsystemInfo mBt{ "bt", "1.2", "bluetooth", "", "", "Short-range radio", "" };
    CSubsystemInfo mWlan{ "wlan", "", "", "", "", "", "" };
    CSubsystemInfo mAudio{ "audio", "", "sound", "", "", "", "" };
    std::vector<ISubsystemInfo *> mSubsystems = { &mBt, &mWlan, &mAudio };
    CChipInfo mTrindle{ "Trindle", "4660", "", "", keywords::MULTIPLE_EFUSES, "trindle7", "A radio", "7", "" };
    CChipInfo mOther{ "Other", "52", "", "", "0", "other", "", "", "" };
    std::vector<IChipInfo *> mChipList;
    std::vector<IChipInfo *> mSelected;
};

/// Delivers the default values of a few keys.
class CFakeProviderWithDefaults : public CFakeProvider, public IConfigReader
{
public:
    using CFakeProvider::CFakeProvider;

    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider &) override {}

    void Read(IConfigContext & context) override
    {
        const std::unique_ptr<IConfigContext> own(context.Clone());
        mObserver->OnReadStarted(*this, *own);
        Start(SUBSYSTEM_BT, *own);
        Deliver(258, "CrystalTrim", 5, *own);
        Deliver(4000000000, "Huge", 9, *own);
        mObserver->OnSubsystemCompleted(*this, *own);
        Start(SUBSYSTEM_WLAN, *own);
        own->SetTag(keywords::TAG_NUM_INDICES, 2);
        own->SetTag("index1", 1);
        own->SetTag("index2", 3);
        Deliver(514, "GainTrim", 7, *own);
        mObserver->OnSubsystemCompleted(*this, *own);
        mObserver->OnReadEnded(*this, *own);
    }

private:
    void Start(SubSystemTypeEnum type, IConfigContext & context)
    {
        context.SetTag(keywords::TAG_SUBSYSTEM_TYPE, static_cast<int>(type));
        mObserver->OnSubsystemFound(*this, context);
    }

    void Deliver(std::uint32_t id, const std::string & name, int value, IConfigContext & context)
    {
        auto element = std::make_unique<CElementNumericArray>(NUMERIC_INT8, id, name, true);
        element->SetValue(std::vector<std::int8_t>{ static_cast<std::int8_t>(value) });
        mElementObserver->OnElementFound(element.release(), context);
    }

    IConfigReaderObserver * mObserver = nullptr;
    IConfigReaderElementObserver * mElementObserver = nullptr;
};

}   // namespace

const char * GetPlugInName()
{
    return "sqlitemetadata";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IMetadataProvider * CreateMetadataProvider(const std::string & argument)
{
    if (argument.find("nothing") != std::string::npos)
        return nullptr;
    if (argument.find("plain") != std::string::npos)
        return new CFakeProvider(argument);
    return new CFakeProviderWithDefaults(argument);
}
