// The value of a key that applies: from the highest layer that has one, or its default.

#include "chip_provider.h"

#include <configtools/chipconfig.h>
#include <configtools/elements.h>
#include <configtools/helper.h>
#include <configtools/readerwriter.h>
#include <configtools/zyncontext.h>

#include <support/element_builder.h>
#include <support/framework_errors.h>
#include <support/scripted_reader.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools {
namespace {

using support::AnElement;
using support::ASubsystem;
using support::ChipProvider;

/// Default values are read once in the life of a process: each test has one of its own, whose expectations count.
void InOwnProcess(const std::function<void()> & test)
{
    const auto run = [&test] {
        test();
        std::exit(testing::Test::HasFailure() ? 1 : 0);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "");
}

/// Elements in layers, by the text of the tag; notes each question as "key@layer".
class Layers : public IElementProvider
{
public:
    Layers & With(const std::string & layer, std::uint32_t value)
    {
        mElements[layer] = AnElement(100).Named("volume").Number(value).Build();
        return *this;
    }
    Layers & WithEmpty(const std::string & layer)
    {
        mElements[layer] = std::make_unique<CElementStruct>(100, "volume", true);
        return *this;
    }

    const CElement & Element(const std::string & name, IConfigContext & context) const override
    {
        mAsked.push_back(name + "@" + context.GetTag("layernumber"));
        const auto found = mElements.find(context.GetTag("layernumber"));
        return found != mElements.end() ? *found->second : CNullElement::Ref();
    }
    const CElement & Element(std::uint32_t /*id*/, IConfigContext & /*context*/) const override
    {
        ADD_FAILURE() << "asked by number";
        return CNullElement::Ref();
    }

    const std::vector<std::string> & Asked() const { return mAsked; }

private:
    std::map<std::string, std::unique_ptr<CElement>> mElements;
    mutable std::vector<std::string> mAsked;
};

/// A provider of default values: "volume" of 5 unless told otherwise.
class DefaultsProvider : public ChipProvider, public IConfigReader
{
public:
    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider & /*provider*/) override { ADD_FAILURE(); }
    void Read(IConfigContext & context) override
    {
        mReadWith.push_back(&context);
        mObserver->OnReadStarted(*this, context);
        if (mHasValues)
            Deliver(context);
        if (mBreaksOff)
            throw std::bad_alloc();
        mObserver->OnReadEnded(*this, context);
    }

    bool mHasValues = true;
    bool mBreaksOff = false;
    std::uint32_t mValue = 5;
    std::vector<IConfigContext *> mReadWith;

private:
    void Deliver(IConfigContext & context)
    {
        const std::unique_ptr<IConfigContext> subsystem(context.Clone());
        mObserver->OnSubsystemFound(*this, *subsystem);
        auto element = AnElement(100).Named("volume").Number(mValue).Build();
        mElementObserver->OnElementFound(element.release(), *subsystem);
        mObserver->OnSubsystemCompleted(*this, *subsystem);
    }

    IConfigReaderObserver * mObserver = nullptr;
    IConfigReaderElementObserver * mElementObserver = nullptr;
};

class ApplicableValue : public testing::Test
{
protected:
    ApplicableValue()
    {
        mContext.SetChip("chip");
        mContext.SetSubsystemType(SUBSYSTEM_AUDIO);
    }

    /// The payloads' texts, parted by blanks.
    std::string Value(IMetadataProvider & provider, const std::string & key = "volume")
    {
        return Value(provider, mLayers, key);
    }
    std::string Value(IMetadataProvider & provider, const IElementProvider & elements, const std::string & key)
    {
        std::string text;
        for (IPayload * const payload :
            CHelper::Ref().RetrieveApplicablePayload(provider, elements, mContext, key))
            text += (text.empty() ? "" : " ") + payload->ToString();
        return text;
    }

    Layers mLayers;
    CZynContext mContext;
    const support::FrameworkErrors mErrors;
    const support::GroupErrors mCoreErrors{ GROUP_CORE_CLASSES };
};

const std::string NO_READER = "The metadata provider cannot behave like a data reader";

TEST_F(ApplicableValue, is_that_of_the_highest_layer_and_leaves_its_number)
{
    ChipProvider provider;
    mLayers.With("3", 30).With("7", 70);

    EXPECT_EQ(Value(provider), "70");
    EXPECT_EQ(mContext.GetTag("layernumber"), "7");
    EXPECT_FALSE(mCoreErrors.IsSet());
}

TEST_F(ApplicableValue, is_looked_for_from_layer_15_down_by_name)
{
    ChipProvider provider;
    mLayers.With("12", 1);
    Value(provider);
    EXPECT_EQ(
        mLayers.Asked(), (std::vector<std::string>{ "volume@15", "volume@14", "volume@13", "volume@12" }));
}

TEST_F(ApplicableValue, is_looked_for_in_every_layer_down_to_0)
{
    ChipProvider provider;
    mLayers.With("0", 1).With("16", 2).With("", 3);

    EXPECT_EQ(Value(provider), "1");
    EXPECT_EQ(mContext.GetTag("layernumber"), "0");
    ASSERT_EQ(mLayers.Asked().size(), 16U);
    EXPECT_EQ(mLayers.Asked().front(), "volume@15");
    EXPECT_EQ(mLayers.Asked().back(), "volume@0");
}

TEST_F(ApplicableValue, is_found_in_layer_15_at_once)
{
    ChipProvider provider;
    mLayers.With("15", 1);
    EXPECT_EQ(Value(provider), "1");
    EXPECT_EQ(mLayers.Asked().size(), 1U);
}

TEST_F(ApplicableValue, passes_over_an_element_without_payloads)
{
    ChipProvider provider;
    mLayers.WithEmpty("9").With("2", 20);
    EXPECT_EQ(Value(provider), "20");
    EXPECT_EQ(mContext.GetTag("layernumber"), "2");
}

TEST_F(ApplicableValue, stays_its_element_s)
{
    ChipProvider provider;
    mLayers.With("3", 30);
    const auto payloads = CHelper::Ref().RetrieveApplicablePayload(provider, mLayers, mContext, "volume");
    mContext.SetTag("layernumber", std::string("3"));
    auto & element = const_cast<CElement &>(mLayers.Element("volume", mContext));
    EXPECT_EQ(payloads, element.GetPayloadCopy(false));
}

TEST_F(ApplicableValue, comes_from_the_layers_of_a_real_chip)
{
    CChipConfig chip;
    support::StoreReportingReader reader;
    reader.Reports(IStoreManager::DEVICE_OTP, 1).Reports(IStoreManager::DEVICE_EEPROM, 1);
    const std::string audio = "chip=chip;subsystemtype=3";
    const auto volume = [](std::uint32_t value) {
        return AnElement(100).Named("volume").Number(value).Build().release();
    };
    reader.Delivers(ASubsystem()
                        .Tagged(audio)
                        .In(IStoreManager::DEVICE_OTP, 1)
                        .Holding(volume(1))
                        .Holding(AnElement(101).Named("only below").Number(9).Build().release()));
    reader.Delivers(ASubsystem().Tagged(audio).In(IStoreManager::DEVICE_EEPROM, 1).Holding(volume(2)));
    reader.ReadInto(chip);

    ChipProvider provider;
    EXPECT_EQ(Value(provider, chip, "VOLUME"), "2");
    EXPECT_EQ(mContext.GetTag("layernumber"), "2");
    EXPECT_EQ(Value(provider, chip, "only below"), "9");
    EXPECT_EQ(mContext.GetTag("layernumber"), "1");
}

/// Asks a chip for each layer.
class AskingChip : public IElementProvider
{
public:
    explicit AskingChip(const CChipConfig & chip)
        : mChip(chip)
    {}
    const CElement & Element(const std::string & name, IConfigContext & context) const override
    {
        return mChip.Element(name, context);
    }
    const CElement & Element(std::uint32_t id, IConfigContext & context) const override
    {
        return mChip.Element(id, context);
    }

private:
    const CChipConfig & mChip;
};

TEST_F(ApplicableValue, of_a_chip_is_the_same_as_by_asking_for_each_layer)
{
    CChipConfig chip;
    support::StoreReportingReader reader;
    std::uint32_t value = 0;
    for (std::uint16_t store = 1; store <= 15; ++store) {
        reader.Reports(IStoreManager::DEVICE_EEPROM, store);
        ASubsystem subsystem;
        std::move(subsystem).Tagged("subsystemtype=3").In(IStoreManager::DEVICE_EEPROM, store);
        for (int key = 0; key < 20; ++key) {
            const std::string name = std::string(1, static_cast<char>('a' + key));
            if (++value % 7 == 0)
                std::move(subsystem).Holding(AnElement(100).Named(name).Number(value).Build().release());
            else if (value % 5 == 0)
                std::move(subsystem).Holding(new CElementStruct(100, name, true));
        }
        reader.Delivers(std::move(subsystem));
    }
    reader.ReadInto(chip);

    InOwnProcess([&] {
        DefaultsProvider provider;
        const AskingChip literal(chip);
        for (const char * tags :
            { "chip=", "layerfilter=5", "layerfilter=", "subsystemtype=2", "subsystemtype=3" }) {
            mContext.Parse(tags);
            for (const char * key :
                { "a", "b", "c", "d", "e", "f", "g", "G", "t", "unknown", "100", "a.1", "" }) {
                const std::string expected = Value(provider, literal, key);
                const std::string layer = mContext.GetTag("layernumber");
                mContext.SetTag("layernumber", std::string("4"));
                EXPECT_EQ(Value(provider, chip, key), expected) << tags << ", " << key;
                EXPECT_EQ(mContext.GetTag("layernumber"), layer) << tags << ", " << key;
            }
        }
    });
}

TEST_F(ApplicableValue, of_a_key_set_nowhere_is_its_default)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        EXPECT_EQ(Value(provider), "5");
        EXPECT_EQ(Value(provider, "VOLUME"), "5");
        EXPECT_EQ(mContext.GetTag("layernumber"), "0");
        EXPECT_FALSE(mErrors.IsSet() || mCoreErrors.IsSet());
    });
}

TEST_F(ApplicableValue, of_a_key_set_somewhere_asks_for_no_defaults)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        mLayers.With("0", 1);
        EXPECT_EQ(Value(provider), "1");
        EXPECT_TRUE(provider.mReadWith.empty());
    });
}

TEST_F(ApplicableValue, reads_the_defaults_with_the_caller_s_context_in_layer_0)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        Value(provider);
        ASSERT_EQ(provider.mReadWith.size(), 1U);
        EXPECT_EQ(provider.mReadWith.front(), &mContext);
    });
}

TEST_F(ApplicableValue, reads_the_defaults_once_whatever_the_provider)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        Value(provider);
        provider.mValue = 6;
        EXPECT_EQ(Value(provider), "5");
        EXPECT_EQ(Value(provider, "unknown"), "");
        EXPECT_EQ(provider.mReadWith.size(), 1U);

        DefaultsProvider other;
        other.mValue = 7;
        EXPECT_EQ(Value(other), "5");
        EXPECT_TRUE(other.mReadWith.empty());
        ChipProvider noReader;
        EXPECT_EQ(Value(noReader), "5");
        EXPECT_FALSE(mCoreErrors.IsSet());
    });
}

TEST_F(ApplicableValue, keeps_the_defaults_when_their_provider_is_gone)
{
    InOwnProcess([this] {
        {
            DefaultsProvider provider;
            Value(provider);
        }
        DefaultsProvider other;
        EXPECT_EQ(Value(other), "5");
    });
}

TEST_F(ApplicableValue, tries_again_while_there_are_no_defaults)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        provider.mHasValues = false;
        EXPECT_EQ(Value(provider), "");
        EXPECT_EQ(Value(provider), "");
        EXPECT_EQ(provider.mReadWith.size(), 2U);
        DefaultsProvider other;
        EXPECT_EQ(Value(other), "5");
    });
}

TEST_F(ApplicableValue, keeps_no_part_of_a_read_that_broke_off)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        provider.mBreaksOff = true;
        EXPECT_THROW(Value(provider), std::bad_alloc);
        provider.mBreaksOff = false;
        provider.mValue = 6;
        EXPECT_EQ(Value(provider), "6");
    });
}

TEST_F(ApplicableValue, without_a_provider_that_reads_is_empty_and_an_error)
{
    InOwnProcess([this] {
        ChipProvider provider;
        EXPECT_EQ(Value(provider), "");
        EXPECT_EQ(mCoreErrors.Text(), NO_READER);
        EXPECT_EQ(mCoreErrors.Code(), 0);
        EXPECT_FALSE(mErrors.IsSet());
        EXPECT_EQ(mContext.GetTag("layernumber"), "0");

        DefaultsProvider reader;
        EXPECT_EQ(Value(reader), "5") << "the defaults have stayed empty, so the next provider is read";
    });
}

TEST_F(ApplicableValue, the_default_is_that_of_the_selected_chip_and_subsystem)
{
    InOwnProcess([this] {
        DefaultsProvider provider;
        EXPECT_EQ(Value(provider), "5");
        mContext.SetSubsystemType(SUBSYSTEM_BT);
        EXPECT_EQ(Value(provider), "");
        mContext.SetSubsystemType(SUBSYSTEM_AUDIO);
        mContext.SetChip("other");
        EXPECT_EQ(Value(provider), "");
        EXPECT_EQ(provider.mReadWith.size(), 1U);
    });
}

}   // namespace
}   // namespace VrexZynConfigTools
