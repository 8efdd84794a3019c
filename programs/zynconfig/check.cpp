#include "commands.h"
#include "json.h"
#include "session.h"

#include <configtools/keywords.h>
#include <kit/text/utf8.h>
#include <workbench/catalog.h>
#include <workbench/chipwalk.h>
#include <workbench/errors.h>
#include <workbench/layeredchip.h>
#include <workbench/losses.h>
#include <workbench/shape.h>
#include <workbench/value.h>

#include <algorithm>
#include <charconv>
#include <set>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;
using kit::text::Printable;

namespace {

constexpr char TYPE_RAW[] = "raw";

bool IsWithin(std::int64_t number, const IMetadata & metadata)
{
    return number >= metadata.Min() && number <= metadata.Max();
}

bool IsWithin(std::uint64_t number, const IMetadata & metadata)
{
    if (HasUnsignedRange(metadata))
        return number >= static_cast<std::uint64_t>(metadata.Min()) &&
               number <= static_cast<std::uint64_t>(metadata.Max());
    return number <= static_cast<std::uint64_t>(std::max<std::int64_t>(metadata.Max(), 0)) &&
           (metadata.Min() <= 0 || number >= static_cast<std::uint64_t>(metadata.Min()));
}

/// Whether all numbers of a value are within the range, and all texts of an allowed length.
struct RangeCheck
{
    const IMetadata & mMetadata;

    bool operator()(std::int64_t number) const { return IsWithin(number, mMetadata); }
    bool operator()(std::uint64_t number) const { return IsWithin(number, mMetadata); }
    bool operator()(const Value::Text & text) const
    {
        return IsWithin(std::uint64_t{ text.mBytes.size() }, mMetadata);
    }
    bool operator()(const Value::Octets & octets) const
    {
        return IsWithin(std::uint64_t{ octets.mBytes.size() }, mMetadata);
    }
    bool operator()(const Value::Enumerator &) const { return true; }
    bool operator()(const Value::Struct &) const { return true; }
    bool operator()(const Value::List & list) const
    {
        return std::all_of(list.mItems.begin(), list.mItems.end(),
            [this](const Value & item) { return std::visit(*this, item.mContent); });
    }
};

// What is wrong with a key that tells itself what it is, or comes raw: it was read without its record. Empty if nothing.
std::string Mismatch(const ChipEntry & entry, const IMetadata & record)
{
    const IMetadata * const told = entry.mElement->Metadata();
    const std::string name = TitleOf(entry.mKey, entry.mElement->Name()) + " in " + NameOf(entry.mStore);
    const Value value = ValueOf(*entry.mElement);
    if (value.mType == TYPE_RAW)
        return name + " is raw: it doesn't fit its metadata";
    // A table row has lost its record by now, by the library's contract.
    if (told != nullptr && TypeText(*told) != TypeText(record))
        return name + " calls its type " + TypeText(*told) + ", and the metadata " + TypeText(record);
    if (HasRange(record) && !std::visit(RangeCheck{ record }, value.mContent))
        return name + " is " + workbench::ToText(value) + ", and the metadata allows " + RangeText(record);
    return {};
}

// Keys that are read by their record have been checked by then, but for the type whose range no reader looks at.
bool IsUnchecked(const ChipEntry & entry, const IMetadata & record)
{
    return entry.mElement->Metadata() != &record || record.InternalType() == keywords::TYPE_INTEGER;
}

std::vector<std::string> UncheckedKeys(const CSession & session, const CCatalog & catalog)
{
    std::set<Key> unknown;
    std::vector<std::string> lines;
    ForEachElement(session.Chip(), [&](const ChipEntry & entry) {
        const Key plain = { entry.mKey.mSubsystem, entry.mKey.mId, false, {} };
        const IMetadata * const record = catalog.Find(plain.mSubsystem, plain.mId);
        if (record != nullptr && IsUnchecked(entry, *record)) {
            std::string mismatch = Mismatch(entry, *record);
            if (!mismatch.empty())
                lines.push_back(std::move(mismatch));
        } else if (record == nullptr && unknown.insert(plain).second) {
            lines.push_back(
                TitleOf(plain, entry.mElement->Name()) + " is not in the metadata, in " + NameOf(entry.mStore));
        }
    });
    return lines;
}

void CheckContent(CSession & session)
{
    const CChipConfig & chip = session.Chip();
    ReportErrors(LossesOfRead(chip, session.Watch()));
    ReportErrors(LayersAndWinners(chip, session.Watch().Chip()).mHidden);
    CCatalog catalog(*session.Metadata(), session.ReadContext());
    if (catalog.SelectChipOfFiles(session.Watch().Chip()))
        ReportErrors(UncheckedKeys(session, catalog));
    ReportChannel();
}

/// What a line such as "FILE:3:8: TEXT" tells.
struct Finding
{
    Json mFile;     // null if it names none of the files
    Json mLine;     // null if it tells none
    Json mColumn;   // null if it tells none
    std::string mText;
};

// Takes a number and a colon from the front of `text`.
Json TakeNumber(std::string & text)
{
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end == text.data() + text.size() || *end != ':')
        return {};
    text.erase(0, static_cast<std::size_t>(end - text.data()) + 1);
    return number;
}

Finding FindingOf(const std::string & line, const std::vector<std::string> & files)
{
    for (const std::string & file : files) {
        if (line.rfind(file + ':', 0) != 0)
            continue;
        Finding finding = { JsonText(file), {}, {}, line.substr(file.size() + 1) };
        finding.mLine = TakeNumber(finding.mText);
        finding.mColumn = finding.mLine.is_null() ? Json() : TakeNumber(finding.mText);
        finding.mText.erase(0, finding.mText.find_first_not_of(' '));
        return finding;
    }
    return { {}, {}, {}, line };
}

std::string RenderJson(const CSession & session, const std::vector<std::string> & lines, std::size_t keys)
{
    Json findings = Json::array();
    for (const std::string & line : lines) {
        const Finding finding = FindingOf(line, session.Asked().mFiles);
        findings.push_back({ { "file", finding.mFile }, { "line", finding.mLine },
            { "column", finding.mColumn }, { "text", JsonText(finding.mText) } });
    }
    return TextOf(Json{ { "format", JSON_FORMAT }, { "chip", JsonText(session.Watch().Chip()) },
        { "keys", keys }, { "findings", std::move(findings) } });
}

}   // namespace

bool Check(CSession & session)
{
    const CErrorKeeper keeper;
    // What was read is looked at also where a read has failed, so that one run tells all.
    session.ReadAll();
    CheckContent(session);

    std::size_t keys = 0;
    ForEachElement(session.Chip(), [&](const ChipEntry &) { ++keys; });
    const bool isSound = keeper.Lines().empty();
    if (session.Asked().mIsJson)
        return WriteOutput(RenderJson(session, keeper.Lines(), keys)) && isSound;
    if (!isSound)
        return false;
    return WriteOutput("Nothing is wrong: " + std::to_string(keys) + " values of the chip " +
                       Printable(session.Watch().Chip()) + ".\n");
}

}   // namespace zynconfig
