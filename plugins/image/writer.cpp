#include "writer.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <kit/reading/devices.h>
#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>
#include <kit/text/number.h>
#include <kit/text/words.h>

#include <algorithm>
#include <cstring>

namespace imageconfig {

using namespace kit::reporting;
using kit::text::ParseWholeIn;

namespace {

constexpr int NO_LAYER = 255;   // above all of them
constexpr std::size_t MAX_FINDINGS = 100;
constexpr std::size_t MAX_LISTED = 10;   // keys in a warning
constexpr std::uint32_t SMALLEST_SIZE = 4096;

// The size of a store that none is known of: the smallest of 4096, 8192, 16384 and so on that is large enough.
std::uint32_t DefaultSize(std::uint64_t used)
{
    std::uint64_t size = SMALLEST_SIZE;
    while (size < used)
        size *= 2;
    return size < SIZE_UNKNOWN ? static_cast<std::uint32_t>(size) : SIZE_UNKNOWN;
}

}   // namespace

CImageWriter::CImageWriter(const std::string & path)
    : mPath(path)
{}

// Whatever goes wrong in a call, the file must not take its place.
template <typename ActionT>
void CImageWriter::Run(ActionT action)
{
    Guarded(mPath, action, [this] { mIsRunning = false; });
}

// For what makes the rest of the write pointless: told at once, so that the write ends.
void CImageWriter::Refuse(const std::string & code, const std::string & text)
{
    mIsRunning = false;
    ReportError(code, mPath, text);
}

void CImageWriter::RefuseToWrite(const std::string & reason)
{
    Refuse("unwritable-file", std::string(keywords::ERROR_UNABLE_TO_WRITE_FILE) + " (" + reason + ')');
}

void CImageWriter::PrepareWriter(IConfigContext &) {}

void CImageWriter::StartWrite(IConfigContext & context)
{
    Run([&] { Begin(context); });
}

void CImageWriter::Begin(IConfigContext & context)
{
    mStores.clear();
    mPlaces.clear();
    mChip.reset();
    mFindings = CFindings(mPath, MAX_FINDINGS);
    mChanges = CFindings(mPath, MAX_FINDINGS);
    mChecks = !context.TagMatches(keywords::TAG_NO_DATA_CHECK, std::string(keywords::VALUE_TRUE));
    mStore.reset();
    mElement.reset();
    mLosses.clear();
    mIsRunning = true;
    if (!context.GetTag(keywords::TAG_LAYER_FILTER).empty())
        return Refuse(
            "filtered-write", "a filtered write has layers in place of stores; an image needs stores");
    const std::string wrongSizes = kit::reading::WhyNoStoreSizes(context);
    if (!wrongSizes.empty())
        return Refuse("bad-context-tag", wrongSizes);
    mSizes = *kit::reading::ParseStoreSizes(context.GetTag(kit::reading::TAG_STORE_SIZES));
    std::string reason;
    if (!mFile.Open(mPath, reason))
        RefuseToWrite(reason);
    const std::string chip = context.GetTag(keywords::TAG_CHIP);
    if (!chip.empty())
        mChip = chip;
}

void CImageWriter::StartSubsystem(IConfigContext & context)
{
    Run([&] {
        if (mIsRunning)
            OpenSubsystem(context);
        else if (!IsErrorSet())
            Refuse("invalid-operation",
                std::string(keywords::ERROR_INVALID_OPERATION) + " (no write has been started)");
    });
}

void CImageWriter::OpenSubsystem(IConfigContext & context)
{
    CloseSubsystem();
    TakeChip(context);
    if (!mIsRunning)
        return;
    const auto device = NumberTag(context, keywords::TAG_DEVICE, -1);
    const auto number = NumberTag(context, keywords::TAG_STORE, 0);
    mSubsystemType = NumberTag(context, keywords::TAG_SUBSYSTEM_TYPE, -1);
    const auto [place, isNew] = mPlaces.try_emplace({ device, number }, mStores.size());
    if (isNew) {
        const auto layer = ParseWholeIn(context.GetTag(keywords::TAG_LAYER_NUMBER), 0, NO_LAYER);
        mStores.push_back({ layer.value_or(NO_LAYER), {} });
        mStores.back().mStore.mDevice = device;
        mStores.back().mStore.mNumber = number;
    }
    mStore = place->second;
    mHasKeys = false;
}

void CImageWriter::TakeChip(IConfigContext & context)
{
    const std::string chip = context.GetTag(keywords::TAG_CHIP);
    if (mStores.empty())
        mChip = chip;
    if (chip != mChip)
        Refuse("two-chips",
            "subsystems of two chips, \"" + *mChip + "\" and \"" + chip + "\"; an image holds those of one");
    else if (chip.size() > MAX_BYTES_OF_LABEL)
        Refuse("label-too-long", "the label of the chip has " + std::to_string(chip.size()) +
                                     " bytes; an image holds " + std::to_string(MAX_BYTES_OF_LABEL));
}

std::optional<int> CImageWriter::NumberTag(IConfigContext & context, const char * tag, int min)
{
    const std::string text = context.GetTag(tag);
    const auto number = ParseWholeIn(text, min, kit::reading::MAX_TAG_NUMBER);
    if (!number && !text.empty())
        mFindings.Add(MakeFinding("bad-context-tag", "a subsystem whose context tag \"" + std::string(tag) +
                                                         "\" reads \"" + text + "\"; expected a number up to " +
                                                         std::to_string(kit::reading::MAX_TAG_NUMBER)));
    return number;
}

void CImageWriter::EndSubsystem(IConfigContext &)
{
    Run([this] { CloseSubsystem(); });   // also without a start: an empty filtered write ends so
}

void CImageWriter::CloseSubsystem()
{
    if (mIsRunning && mStore && !mHasKeys)
        AddChunk({ mSubsystemType, std::nullopt }, "a subsystem");
    mStore.reset();
}

void CImageWriter::StartElement(IConfigContext & context)
{
    Run([&] {
        mElement.reset();
        mIsRaw = context.TagMatches(keywords::TAG_RAW_MODE, keywords::VALUE_TRUE);
    });
}

void CImageWriter::WriteKeyId(std::uint32_t psId, IConfigContext &)
{
    Run([&] {
        if (mIsRunning && !mStore)
            return Refuse("invalid-operation",
                std::string(keywords::ERROR_INVALID_OPERATION) + " (a key outside of a subsystem)");
        if (mIsRunning)
            mElement.emplace(psId, mIsRaw);
    });
}

void CImageWriter::WriteNamedData(
    const std::string & name, const void * data, std::uint32_t size, IConfigContext &)
{
    Run([&] {
        if (!mElement || name == keywords::TAG_NUM_INDICES)
            return;   // the indices that follow are counted
        std::uint32_t index = 0;
        if (name != keywords::TAG_INDEX || data == nullptr || size != sizeof index)
            return AddFinding(
                mFindings, "unsupported-data", mElement->Name(), "named data that an image can't hold");
        std::memcpy(&index, data, sizeof index);
        mElement->AddIndex(index);
    });
}

void CImageWriter::WritePayload(IPayload & payload, IConfigContext &)
{
    Run([&] {
        if (mElement)
            mElement->Add(payload);
    });
}

void CImageWriter::EndElement(IConfigContext &)
{
    Run([this] {
        if (mElement && mIsRunning && mStore)
            CloseElement();
        mElement.reset();
    });
}

void CImageWriter::CloseElement()
{
    mHasKeys = true;
    const auto key = mElement->Finish();
    if (!key)
        return AddFinding(mFindings, "unfit-value", mElement->Name(), mElement->Error());
    for (const std::string & change : mElement->Changes())
        AddFinding(mChecks ? mFindings : mChanges, "changed-value", mElement->Name(), change);
    if (mElement->LosesNameOrType())
        mLosses.push_back(mElement->Name());
    AddChunk({ mSubsystemType, key }, mElement->Name());
}

// About the key, or whatever else `key` names, in the store that is open.
void CImageWriter::AddFinding(
    CFindings & findings, const std::string & code, const std::string & key, const std::string & text) const
{
    Finding finding = MakeFinding(code, StoreName() + ", " + key + ": " + text);
    const Store & store = mStores[*mStore].mStore;
    finding.mStore = kit::reading::StoreName({ std::nullopt, store.mDevice, store.mNumber });
    finding.mSubsystem = kit::reading::SubsystemName(mSubsystemType);
    finding.mKey = mElement ? mElement->Name() : "";
    findings.Add(std::move(finding));
}

void CImageWriter::AddChunk(const Chunk & chunk, const std::string & what)
{
    if (!AppendChunk(mStores[*mStore].mStore, ComposeChunk(chunk)))
        AddFinding(mFindings, "store-full", what,
            "the store has no number left for it; it holds " + std::to_string(MAX_CHUNKS) + " chunks");
}

std::string CImageWriter::StoreName() const
{
    const Store & store = mStores[*mStore].mStore;
    return imageconfig::StoreName(store.mDevice, store.mNumber);
}

void CImageWriter::EndWrite(IConfigContext &)
{
    Run([this] { Finish(); });
    mFile.Discard();   // nothing is left of it if it took its place
    mStores.clear();
    mIsRunning = false;
}

void CImageWriter::Finish()
{
    if (!mIsRunning)
        return;
    SettleSizes();
    if (!mFindings.IsEmpty())
        return ReportErrors(mFindings);
    if (IsErrorSet())
        return;
    std::stable_sort(mStores.begin(), mStores.end(),
        [](const OpenStore & left, const OpenStore & right) { return left.mLayer < right.mLayer; });
    Image image;
    image.mChip = mChip.value_or("");
    for (OpenStore & open : mStores)
        image.mStores.push_back(std::move(open.mStore));
    std::string reason;
    if (!mFile.Commit(ComposeImage(image), reason))
        return RefuseToWrite(reason);
    for (const Finding & change : mChanges.InOrder())
        ReportWarning(change);
    WarnOfLosses();
}

void CImageWriter::SettleSizes()
{
    std::uint64_t total = 0;
    for (OpenStore & open : mStores) {
        Store & store = open.mStore;
        const std::uint64_t used = BytesUsed(*store.mChunks);
        const auto known = mSizes.find({ store.mDevice.value_or(-1), store.mNumber.value_or(-1) });
        store.mSize = known != mSizes.end() ? known->second : DefaultSize(used);
        if (!SettleFreeSize(store))
            mFindings.Add(MakeFinding("store-full", imageconfig::StoreName(store.mDevice, store.mNumber) +
                                                        ": the keys take " + std::to_string(used) +
                                                        " bytes; its size is " + std::to_string(store.mSize)));
        total += used;
    }
    if (total > MAX_BYTES_OF_IMAGE / 2 || mStores.size() > MAX_STORES)
        mFindings.Add(MakeFinding("image-too-large",
            "the configuration takes " + std::to_string(total) + " bytes in " + std::to_string(mStores.size()) +
                " stores; an image holds " + std::to_string(MAX_BYTES_OF_IMAGE / 2) + " in " +
                std::to_string(MAX_STORES)));
}

void CImageWriter::WarnOfLosses() const
{
    if (!mLosses.empty())
        ReportWarning(WithPlace(
            MakeFinding("lost-names", "name and type of " + kit::text::Counted(mLosses.size(), "key") +
                                          " are not in the image, as no metadata describe them: " +
                                          kit::text::Joined(mLosses, ", ", MAX_LISTED)),
            mPath));
}

}   // namespace imageconfig
