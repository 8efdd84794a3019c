#include "catalog.h"
#include "chipwalk.h"
#include "commands.h"
#include "errors.h"
#include "json.h"
#include "losses.h"
#include "session.h"
#include "showmodel.h"
#include "text.h"

#include <charconv>
#include <set>

namespace zynconfig {

using namespace VrexZynConfigTools;

namespace {

// Keys that tell themselves what they are, or come raw, are read without the metadata.
std::vector<std::string> UnknownKeys(const CSession & session, const CCatalog & catalog)
{
    std::set<Key> told;
    std::vector<std::string> lines;
    ForEachElement(session.Chip(), [&](const ChipEntry & entry) {
        const Key plain = { entry.mKey.mSubsystem, entry.mKey.mId, false, {} };
        if (catalog.Find(plain.mSubsystem, plain.mId) == nullptr && told.insert(plain).second)
            lines.push_back(Describe(plain, entry.mElement->Name()) + " is not in the metadata, in " +
                            NameOf(entry.mStore));
    });
    return lines;
}

void CheckContent(CSession & session)
{
    const CChipConfig & chip = session.Chip();
    ReportErrors(LossesOfRead(chip, session.Watch()));
    ReportErrors(MakeShownChip(chip, session.Watch().Chip()).mHidden);
    CCatalog catalog(*session.Metadata(), session.ReadContext());
    if (catalog.SelectChipOfFiles(session.Watch().Chip()))
        ReportErrors(UnknownKeys(session, catalog));
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
