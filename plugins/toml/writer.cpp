#include "writer.h"

#include "recordfacts.h"
#include "vocabulary.h"

#include <configtools/context.h>
#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <kit/reading/storetags.h>
#include <kit/reporting/channel.h>
#include <kit/reporting/guard.h>
#include <kit/text/number.h>

#include <algorithm>
#include <cstring>

namespace tomlconfig {

using kit::reading::TagWord;
using kit::text::ParseWholeIn;

namespace {

constexpr char FILTERED_NOTE[] =
    "# A filtered write: each key once, from the layer that won. For reading by people and "
    "scripts;\n# a reader needs devices and stores and refuses this file.\n";

constexpr int NO_LAYER = 255;   // above all of them

std::string Line(const std::string & name, const std::string & value)
{
    return name + " = " + value + '\n';
}

std::string Quotes(const std::string & text)
{
    return '"' + text + '"';
}

// The keyword of a type or device; the number where it has none.
std::string WordOrNumber(int number, const std::vector<TagWord> & words)
{
    const std::string * const word = kit::reading::WordOf(number, words);
    return word != nullptr ? Quotes(*word) : std::to_string(number);
}

bool IsText(const std::string & typeWord)
{
    return typeWord == keywords::TYPE_STRING || typeWord == keywords::TYPE_OCTET_STRING;
}

// One index as a number, any other count as an array.
std::string IndicesText(const std::vector<std::uint32_t> & indices)
{
    std::string text;
    for (const std::uint32_t index : indices)
        text += (text.empty() ? "" : ", ") + std::to_string(index);
    return indices.size() == 1 ? text : '[' + text + ']';
}

// A payload may carry the record of a struct's field; only that of the key itself says how the key is called.
const IMetadata * MetadataOf(IPayload & payload, std::uint32_t psId)
{
    auto * user = dynamic_cast<IMetadataUser *>(&payload);
    const IMetadata * metadata = user != nullptr ? user->Metadata() : nullptr;
    return metadata != nullptr && metadata->IsValid() && metadata->PsId() == psId ? metadata : nullptr;
}

void NoteRecord(Element & element, const IMetadata & metadata)
{
    element.mRecord =
        Record{ metadata.Name(), metadata.InternalType(), metadata.IsArray(), metadata.MetadataType() };
    const bool isRaw = element.mIsRaw && !element.mIsRow;   // rows switch raw mode on for reasons of their own
    element.mIsDescribed = IsDescribed(metadata) && !isRaw;
    element.mMetadata = element.mIsDescribed ? &metadata : nullptr;
}

// The class of an element isn't told. What its record says comes first, then what its payloads look like.
std::string TypeWord(const Element & element)
{
    const auto & record = element.mRecord;
    const bool isRawRow = element.mIsRow && record && record->mInternalType == word::RAW;
    if (isRawRow || (element.mIsRaw && !element.mIsRow))   // rows switch raw mode on for reasons of their own
        return word::RAW;
    const auto & values = element.mValues;
    if (values.empty() || (record && record->mMetadataType == METADATA_STRUCT))
        return word::STRUCT;
    const ValueText & first = values.front();
    const bool areAlike = std::all_of(values.begin(), values.end(),
        [&first](const ValueText & value) { return value.mIsLeaf && value.mWord == first.mWord; });
    const bool isTextAlone = values.size() == 1 || element.mIsRow || !IsText(first.mWord);
    if (!areAlike || !isTextAlone)   // only a row holds several texts
        return word::STRUCT;
    const bool isInteger =
        first.mWord == keywords::TYPE_INT64 && record && record->mInternalType == keywords::TYPE_INTEGER;
    return isInteger ? keywords::TYPE_INTEGER : first.mWord;
}

std::string ValueOf(const Element & element, const std::string & typeWord)
{
    const auto & values = element.mValues;
    if (typeWord == word::STRUCT || typeWord == word::RAW)
        return FieldsText(values, 0);
    const bool mayBeArray = element.mIsRow || !IsText(typeWord);
    const bool isArray = mayBeArray && element.mRecord && element.mRecord->mIsArray;
    return values.size() > 1 || isArray ? ArrayText(values) : values.front().mText;
}

}   // namespace

CTomlWriter::CTomlWriter(const std::string & path)
    : mPath(path)
{}

// Whatever goes wrong in a call, the file must not take its place.
template <typename ActionT>
void CTomlWriter::Run(ActionT action)
{
    kit::reporting::Guarded(mPath, action, [this] { mHasFailed = true; });
}

void CTomlWriter::Fail(const std::string & code, const std::string & text)
{
    mHasFailed = true;
    kit::reporting::ReportError(code, mPath, text);
}

void CTomlWriter::FailToWrite(const std::string & reason)
{
    Fail("unwritable-file", std::string(keywords::ERROR_UNABLE_TO_WRITE_FILE) + " (" + reason + ')');
}

// After a failure there is nothing more to say; before StartWrite a call is a fault of the caller.
bool CTomlWriter::CanWrite()
{
    if (!mFile.IsOpen() && !mHasFailed)
        Fail("invalid-operation",
            std::string(keywords::ERROR_INVALID_OPERATION) + " (no write has been started)");
    return !mHasFailed;
}

void CTomlWriter::PrepareWriter(IConfigContext &) {}

void CTomlWriter::StartWrite(IConfigContext & context)
{
    Run([&] {
        mHead.clear();
        mBlocks.clear();
        mHasFailed = false;
        mIsInSubsystem = false;
        mElement.reset();
        mLayerFilter = context.GetTag(keywords::TAG_LAYER_FILTER);
        mChip = context.GetTag(keywords::TAG_CHIP);
        std::string reason;
        if (!mFile.Open(mPath, reason))
            FailToWrite(reason);
    });
}

void CTomlWriter::EndWrite(IConfigContext &)
{
    Run([this] { Finish(); });
    mFile.Discard();   // nothing is left of it if it took its place
    mBlocks.clear();
    mHasFailed = false;
}

void CTomlWriter::Finish()
{
    if (!mFile.IsOpen() || mHasFailed || kit::reporting::IsErrorSet())
        return;
    if (mBlocks.empty())
        MakeHead(mChip);
    std::string reason;
    if (!mFile.Commit(WholeText(), reason))
        FailToWrite(reason);
}

std::string CTomlWriter::WholeText()
{
    if (mLayerFilter.empty())
        std::stable_sort(mBlocks.begin(), mBlocks.end(),
            [](const Block & left, const Block & right) { return left.mLayer < right.mLayer; });
    std::string text = std::move(mHead);
    for (const Block & block : mBlocks)
        text += block.mText;
    return text;
}

void CTomlWriter::MakeHead(const std::string & chip)
{
    mChip = chip;
    const bool isFiltered = !mLayerFilter.empty();
    if (isFiltered)
        mHead += FILTERED_NOTE;
    if (!isFiltered || !chip.empty())
        mHead += Line(field::CHIP, TextValue(chip));
    if (isFiltered) {
        const bool isNumber = kit::text::ParseWhole<std::int16_t>(mLayerFilter).has_value();
        mHead += Line(field::LAYER_FILTER, isNumber ? mLayerFilter : TextValue(mLayerFilter));
    }
}

void CTomlWriter::StartSubsystem(IConfigContext & context)
{
    Run([&] {
        if (CanWrite())
            AddSubsystem(context);
    });
}

void CTomlWriter::AddSubsystem(IConfigContext & context)
{
    const std::string chip = context.GetTag(keywords::TAG_CHIP);
    if (mBlocks.empty())
        MakeHead(chip);
    if (chip != mChip)
        return Fail("two-chips", "subsystems of two chips, " + TextValue(mChip) + " and " + TextValue(chip) +
                                     "; a file holds those of one");
    mIsInSubsystem = true;
    mIsInBt = context.TagMatches(keywords::TAG_SUBSYSTEM_TYPE, SUBSYSTEM_BT);
    const auto layer = ParseWholeIn(context.GetTag(keywords::TAG_LAYER_NUMBER), 0, NO_LAYER);
    mBlocks.push_back({ layer.value_or(NO_LAYER), "\n[[subsystem]]\n" });
    AddTag(context, keywords::TAG_SUBSYSTEM_TYPE, field::TYPE, kit::reading::SubsystemWords());
    if (!mLayerFilter.empty())
        return AddTag(context, keywords::TAG_LAYER_NUMBER, field::LAYER, {});
    AddTag(context, keywords::TAG_DEVICE, field::DEVICE, kit::reading::DeviceWords());
    AddTag(context, keywords::TAG_STORE, field::STORE, {});
}

void CTomlWriter::AddTag(
    IConfigContext & context, const char * tag, const char * name, const std::vector<TagWord> & words)
{
    const std::string text = context.GetTag(tag);
    const auto number = ParseWholeIn(text, words.empty() ? 0 : -1, kit::reading::MAX_TAG_NUMBER);
    if (!number && !text.empty())
        return Fail("bad-context-tag", "a subsystem whose context tag \"" + std::string(tag) + "\" reads " +
                                           TextValue(text) + "; expected a number up to " +
                                           std::to_string(kit::reading::MAX_TAG_NUMBER));
    mBlocks.back().mText += Line(name, number ? WordOrNumber(*number, words) : Quotes(""));
}

void CTomlWriter::EndSubsystem(IConfigContext &)
{
    mIsInSubsystem = false;   // also without a start: an empty filtered write ends so
}

void CTomlWriter::StartElement(IConfigContext & context)
{
    Run([&] {
        if (!CanWrite())
            return;
        if (!mIsInSubsystem)
            return Fail("invalid-operation",
                std::string(keywords::ERROR_INVALID_OPERATION) + " (a key outside of a subsystem)");
        mElement.emplace();
        mElement->mIsRaw = context.TagMatches(keywords::TAG_RAW_MODE, keywords::VALUE_TRUE);
    });
}

void CTomlWriter::EndElement(IConfigContext &)
{
    Run([this] {
        if (mElement && !mHasFailed)
            AddElement(*mElement);
        mElement.reset();
    });
}

void CTomlWriter::WriteKeyId(std::uint32_t psId, IConfigContext &)
{
    if (mElement)
        mElement->mId = psId;
}

void CTomlWriter::WriteNamedData(
    const std::string & name, const void * data, std::uint32_t size, IConfigContext &)
{
    Run([&] {
        if (mElement)
            AddNamedData(name, data, size);
    });
}

void CTomlWriter::AddNamedData(const std::string & name, const void * data, std::uint32_t size)
{
    mElement->mIsRow = true;
    if (name == keywords::TAG_NUM_INDICES)
        return;   // the indices that follow are counted
    std::uint32_t index = 0;
    if (name != keywords::TAG_INDEX || data == nullptr || size != sizeof index)
        return Fail(
            "unsupported-data", "key " + std::to_string(mElement->mId) + ": named data that a file can't hold");
    std::memcpy(&index, data, sizeof index);
    mElement->mIndices.push_back(index);
}

void CTomlWriter::WritePayload(IPayload & payload, IConfigContext &)
{
    Run([&] {
        if (mElement)
            AddPayload(payload);
    });
}

void CTomlWriter::AddPayload(IPayload & payload)
{
    const IMetadata * const metadata = MetadataOf(payload, mElement->mId);
    if (mElement->mValues.empty() && metadata != nullptr)
        NoteRecord(*mElement, *metadata);
    auto value = PayloadValue(payload, 1);
    if (!value)
        return Fail("unsupported-payload",
            "key " + std::to_string(mElement->mId) + ": a payload that a file can't hold");
    mElement->mValues.push_back(std::move(*value));
    if (!mElement->mIsDescribed)
        return;
    auto described = ToDescribedValue(payload, *mElement->mMetadata);
    mElement->mIsDescribed = described.has_value();
    if (described)
        mElement->mDescribedValues.push_back(std::move(*described));
}

// In the words of a provider's record if there is one and the key fits it, otherwise by types.
void CTomlWriter::AddElement(const Element & element)
{
    if (element.mIsDescribed) {
        const auto lines = DescribedLines(
            { element.mIsRow, element.mIndices, mIsInBt, element.mDescribedValues }, *element.mMetadata);
        if (lines) {
            mBlocks.back().mText += "\n[[subsystem.key]]\n" + *lines;
            return;
        }
    }
    AddTypedElement(element);
}

void CTomlWriter::AddTypedElement(const Element & element)
{
    const std::string typeWord = TypeWord(element);
    std::string & text = mBlocks.back().mText;
    text += "\n[[subsystem.key]]\n" + Line(field::ID, std::to_string(element.mId));
    if (element.mRecord && !element.mRecord->mName.empty())
        text += Line(field::NAME, TextValue(element.mRecord->mName));
    text += Line(field::TYPE, Quotes(typeWord));
    if (element.mIsRow)
        text += Line(field::INDEX, IndicesText(element.mIndices));
    text += Line(field::VALUE, ValueOf(element, typeWord));
}

}   // namespace tomlconfig
