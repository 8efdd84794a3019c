#include <configtools/helper.h>

#include <configtools/chipconfig.h>
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/metadataprovider.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <typeinfo>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

constexpr int TOP_LAYER = 15;
constexpr std::size_t MAX_FUSE_DIGITS = 4;
constexpr std::string_view UNKNOWN_FUSES = "XXXX";

bool EqualsIgnoringCase(const std::string & left, std::string_view right)
{
    return stringutil::ToLower(left) == stringutil::ToLower(std::string(right));
}

/// The value of a key in the layer that the context names.
std::vector<IPayload *> PayloadsOf(
    const IElementProvider & elements, const std::string & key, IConfigContext & context)
{
    // Copying the list needs an element that isn't const, but changes nothing unless the payloads are transferred.
    // NOLINTNEXTLINE(*-const-cast): the contract has the copy on an element that isn't const only
    auto & element = const_cast<CElement &>(elements.Element(key, context));
    return element.GetPayloadCopy(false);
}

/// Reads into an empty configuration, which is empty again if the read breaks off: nobody would complete it.
void ReadAll(IConfigReader & reader, IConfigContext & context, CChipConfig & chip)
{
    reader.SetObserver(chip);
    try {
        reader.Read(context);
    } catch (...) {
        chip.Clear();
        throw;
    }
}

/// The four digits for a chip's number: its low byte, then the two nibbles above, the lower one first, intended.
std::string ChipDigits(std::uint32_t id)
{
    char text[30];
    std::snprintf(text, sizeof text, "%02X%X%X", id & 0xFFU, (id >> 8) & 0xFU, (id >> 12) & 0xFU);
    std::string digits = text;
    if ((id & 0xFF00U) == 0)
        digits.replace(2, 2, "XX");
    return digits;
}

std::string FuseDigits(std::uint32_t hash)
{
    char text[30];
    std::snprintf(text, sizeof text, "%04X", hash);
    return text;
}

/// The value in the tag "efusehash" of a chip that exists with several; false without a usable one.
bool SelectedFuses(IConfigContext & context, bool placeholders, CMessageHandler & handler, std::uint32_t & hash)
{
    const std::string selected = context.GetTag(keywords::TAG_EFUSE_HASH);
    if (!selected.empty() && selected.size() <= MAX_FUSE_DIGITS) {
        hash = stringutil::HexStrToInt(selected);
        return true;
    }
    if (!selected.empty() || !placeholders)
        handler.NotifyStatus(STATUS_WARNING, "The specified eFuse hash must be between 1 and 4 nibbles.");
    return false;
}

/// The value of a chip's fuses; false if it isn't known.
bool KnownFuses(const std::string & fuse, IConfigContext & context, bool placeholders,
    CMessageHandler & handler, std::uint32_t & hash)
{
    // A fuse value is a decimal number; any other text reads as 0 and so isn't known.
    hash = static_cast<std::uint32_t>(stringutil::DecimalToInt(fuse));
    const bool isKnown = hash != 0 || fuse == "0";
    if (!EqualsIgnoringCase(fuse, keywords::MULTIPLE_EFUSES))
        return isKnown;
    return SelectedFuses(context, placeholders, handler, hash);
}

}   // namespace

CHelper::CHelper()
{
    ZYN_SENTRY("VrexZynConfigTools::CHelper::CHelper");
}

bool CHelper::IsSystemLabelVersionValid(IMetadataProvider & provider, std::string & label)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CHelper::IsSystemLabelVersionValid", result);

    CBaseContext anySystem("");
    const std::vector<IChipInfo *> & chips = provider.Chips(anySystem);
    if (chips.size() == 1 && chips.front() != nullptr && label.empty())
        label = chips.front()->SystemVersionLabel();
    const auto found = std::find_if(chips.begin(), chips.end(), [&label](const IChipInfo * chip) {
        return chip != nullptr && EqualsIgnoringCase(chip->SystemVersionLabel(), label);
    });
    if (found == chips.end())
        return result = false;
    label = (*found)->SystemVersionLabel();
    return result = true;
}

const std::vector<IPayload *> CHelper::RetrieveApplicablePayload(IMetadataProvider & provider,
    const IElementProvider & elements, IConfigContext & context, const std::string & key)
{
    ZYN_SENTRY("VrexZynConfigTools::CHelper::RetrieveApplicablePayload");

    std::vector<IPayload *> payloads;
    int layer = TOP_LAYER;
    const bool isChip = typeid(elements) == typeid(CChipConfig);
    if (isChip && static_cast<const CChipConfig &>(elements).FindTopmostValue(key, context, layer, payloads)) {
        context.SetTag(keywords::TAG_LAYER_NUMBER, std::to_string(layer));
    } else {
        for (; payloads.empty() && layer >= 0; --layer) {
            context.SetTag(keywords::TAG_LAYER_NUMBER, std::to_string(layer));
            payloads = PayloadsOf(elements, key, context);
        }
    }
    if (!payloads.empty())
        return payloads;
    if (!mDefaults.HasElements()) {
        if (auto * const reader = dynamic_cast<IConfigReader *>(&provider))
            ReadAll(*reader, context, mDefaults);
        else
            ZYN_HANDLER(zynFunction).SetErrorMsg(0, "The metadata provider cannot behave like a data reader");
    }
    return PayloadsOf(mDefaults, key, context);
}

const std::string CHelper::GetRefCodeForSelectedChip(
    IMetadataProvider & provider, IConfigContext & context, bool placeholders) const
{
    std::string result;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CHelper::GetRefCodeForSelectedChip", result);

    const std::vector<IChipInfo *> chips = provider.Chips(context);
    const std::string label = context.GetTag(keywords::TAG_CHIP);
    for (const IChipInfo * const chip : chips) {
        if (chip == nullptr || chip->SystemVersionLabel() != label)
            continue;
        result = ChipDigits(static_cast<std::uint32_t>(stringutil::DecimalToInt(chip->ChipId())));
        std::uint32_t hash = 0;
        if (KnownFuses(chip->EfuseHash(), context, placeholders, ZYN_HANDLER(zynFunction), hash))
            result += FuseDigits(hash);
        else if (placeholders)
            result += UNKNOWN_FUSES;
        else
            result.clear();
        if (!result.empty())
            break;
    }
    return result;
}

SubSystemTypeEnum CHelper::SubsystemFromString(
    IMetadataProvider & provider, IConfigContext & context, const std::string & name)
{
    SubSystemTypeEnum result = SUBSYSTEM_UNKNOWN;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CHelper::SubsystemFromString", result);

    result = CSubsystemInfo::GetSubsystemType(name);
    if (result != SUBSYSTEM_UNKNOWN)
        return result;
    const std::vector<ISubsystemInfo *> & subsystems = provider.Subsystems(context);
    const auto found =
        std::find_if(subsystems.begin(), subsystems.end(), [&name](const ISubsystemInfo * subsystem) {
            return subsystem != nullptr && EqualsIgnoringCase(subsystem->Alias(), name);
        });
    if (found != subsystems.end())
        result = CSubsystemInfo::GetSubsystemType((*found)->Name());
    return result;
}

int CHelper::GetAssociatedChipId(IMetadataProvider * provider, IConfigContext & context)
{
    int result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CHelper::GetAssociatedChipId", result);

    if (provider == nullptr)
        return result = 0;
    const std::string label = context.GetTag(keywords::TAG_CHIP);
    const std::vector<IChipInfo *> & chips = provider->Chips(context);
    const auto found = std::find_if(chips.begin(), chips.end(), [&label](const IChipInfo * chip) {
        return chip != nullptr && (label.empty() || chip->SystemVersionLabel() == label);
    });
    if (found != chips.end())
        result = stringutil::DecimalToInt((*found)->ChipId()) & 0xFF;
    return result;
}

}   // namespace VrexZynConfigTools
