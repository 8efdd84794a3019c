#include "names.h"

#include "advice.h"

#include <kit/text/ascii.h>
#include <kit/text/utf8.h>

#include <algorithm>

namespace workbench::compiler {

using kit::text::Quoted;

namespace {

constexpr char NAME_FORM[] =
    R"( is no name; expected a letter and then letters, digits, "_" or "-", as names stand in command lines)";

void CheckSystem(const Source & source, CSourceFindings & findings)
{
    if (source.mSystems.empty() && source.mIsWhole)
        findings.Error({}, "[system] is missing: one of the sources names the system");
    CTaken taken(findings);
    for (const System & system : source.mSystems) {
        taken.Add("", "a system", system.mPlace);
        RequireText(system.mName, "name", "a system has a name", findings);
    }
}

void CheckChips(const Source & source, CSourceFindings & findings)
{
    CTaken labels(findings);
    CTaken chips(findings);
    for (const Chip & chip : source.mChips) {
        RequireText(chip.mName, "name", "a chip has a name", findings);
        if (!chip.mId.mIsGiven)
            findings.Error(chip.mPlace, "\"id\" is missing: a chip has a number");
        if (RequireText(chip.mLabel, "label", "a chip is selected by its label", findings))
            labels.Add(chip.mLabel.mValue, "the label " + Quoted(chip.mLabel.mValue), chip.mLabel.mPlace);
        if (!chip.mName.mValue.empty())
            chips.Add(chip.mName.mValue + '\n' + chip.mRomVersion,
                "a chip " + Quoted(chip.mName.mValue) + " with this version of its ROM", chip.mName.mPlace);
    }
    if (source.mChips.empty() && !source.mSystems.empty() && source.mIsWhole)
        findings.Error(source.mSystems.front().mPlace, "a system has one [[chip]] at least");
}

void CheckKeyNames(const Subsystem & subsystem, CSourceFindings & findings)
{
    CTaken numbers(findings);
    CTaken names(findings);
    for (const Key & key : subsystem.mKeys) {
        if (!key.mId.mIsGiven)
            findings.Error(key.mPlace, "\"id\" is missing: a key has a number");
        else if (key.mId.mIsRead)
            numbers.Add(
                std::to_string(key.mId.mValue), "the number " + std::to_string(key.mId.mValue), key.mId.mPlace);
        if (RequireName(key.mName, "a key has a name", findings))
            names.Add(key.mName.mValue, "the name " + Quoted(key.mName.mValue), key.mName.mPlace);
    }
}

void CheckSubsystems(const Source & source, CSourceFindings & findings)
{
    CTaken names(findings);
    for (const Subsystem & subsystem : source.mSubsystems) {
        const Placed<std::string> & name = subsystem.mName;
        if (RequireText(name, "name", "a subsystem has a name", findings) &&
            CheckWord(name, "subsystem", SubsystemWords(), findings))
            names.Add(name.mValue, "the subsystem " + Quoted(name.mValue), name.mPlace);
        CheckKeyNames(subsystem, findings);
    }
    for (const Subsystem & subsystem : source.mSubsystems) {
        const Placed<std::string> & alias = subsystem.mAlias;
        const auto & words = SubsystemWords();
        if (!alias.mIsGiven)
            continue;
        if (std::find(words.begin(), words.end(), kit::text::Lowered(alias.mValue)) != words.end())
            findings.Error(alias.mPlace,
                "the alias " + Quoted(alias.mValue) + " is the name of a subsystem, and so never looked at");
        else
            names.Add(alias.mValue, "the alias " + Quoted(alias.mValue), alias.mPlace);
    }
}

void CheckShared(const Source & source, CSourceFindings & findings)
{
    CTaken enums(findings);
    for (const SharedEnum & shared : source.mEnums) {
        if (RequireName(shared.mName, "a shared enumeration has a name", findings))
            enums.Add(
                shared.mName.mValue, "the enumeration " + Quoted(shared.mName.mValue), shared.mName.mPlace);
        if (!shared.mValues.mIsGiven)
            findings.Error(shared.mName.mPlace, "\"values\" is missing: an enumeration has enumerators");
        CheckEnumerators(shared.mValues.mValue, findings);
    }
    CTaken structs(findings);
    for (const auto & shared : source.mStructs)
        if (RequireName(shared->mName, "a shared struct has a name", findings))
            structs.Add(
                shared->mName.mValue, "the struct " + Quoted(shared->mName.mValue), shared->mName.mPlace);
}

}   // namespace

void CTaken::Add(const std::string & word, const std::string & subject, const Place & place)
{
    const auto [first, isNew] = mPlaces.emplace(kit::text::Lowered(word), place);
    if (isNew)
        return;
    // Files come in the order of the command line, but the parts of one file not always in that of its lines.
    const Place & later = std::max(first->second, place);
    const Place & earlier = std::min(first->second, place);
    mFindings.Error(later, subject + " stands in " + mFindings.PlaceText(earlier) + " already");
}

bool RequireText(
    const Placed<std::string> & text, const char * name, const char * reason, CSourceFindings & findings)
{
    if (!text.mIsGiven)
        findings.Error(text.mPlace, Quoted(name) + " is missing: " + reason);
    else if (text.mValue.empty() && text.mIsRead)
        findings.Error(text.mPlace, Quoted(name) + " is empty: " + reason);
    return !text.mValue.empty();
}

bool RequireName(const Placed<std::string> & text, const char * reason, CSourceFindings & findings)
{
    if (!RequireText(text, "name", reason, findings))
        return false;
    if (!IsName(text.mValue))
        findings.Error(text.mPlace, Quoted(text.mValue) + NAME_FORM);
    return true;
}

bool CheckWord(const Placed<std::string> & word, const char * name, const std::vector<std::string> & known,
    CSourceFindings & findings)
{
    if (!word.mIsGiven || !word.mIsRead || std::find(known.begin(), known.end(), word.mValue) != known.end())
        return true;
    findings.Error(
        word.mPlace, "unknown " + std::string(name) + ' ' + Quoted(word.mValue) + Advice(word.mValue, known));
    return false;
}

void CheckEnumerators(const Enumerators & enumerators, CSourceFindings & findings)
{
    CTaken names(findings);
    CTaken numbers(findings);
    for (const Enumerator & each : enumerators) {
        if (!IsEnumeratorName(each.mName))
            findings.Error(
                each.mPlace, Quoted(each.mName) +
                                 R"( is no name; expected letters, digits, "_" or "-", and not digits alone)");
        names.Add(each.mName, "the enumerator " + Quoted(each.mName), each.mPlace);
        if (each.mIsNumberRead)
            numbers.Add(
                std::to_string(each.mNumber), "the number " + std::to_string(each.mNumber), each.mNumberPlace);
    }
}

void CheckNames(const Source & source, CSourceFindings & findings)
{
    CheckSystem(source, findings);
    CheckChips(source, findings);
    CheckSubsystems(source, findings);
    CheckShared(source, findings);
}

}   // namespace workbench::compiler
