#include "reader.h"

#include <configtools/context.h>
#include <kit/reading/devices.h>
#include <kit/reporting/channel.h>
#include <kit/tomlsyntax/tomlsyntax.h>

#include <iterator>
#include <memory>
#include <set>
#include <utility>

namespace tomlconfig {

using namespace kit::reading;

namespace {

// A key may be in a store more than once. With an insert mode one of them is lost.
void AddDuplicates(const FileContent & content, CFindings & findings)
{
    for (const RepeatedKey & repeated : RepeatedKeys(content.mSubsystems)) {
        const Key & key = *repeated.mKey;
        const std::string name = std::to_string(key.mElement->PsId()) + IndicesText(key.mIndices);
        Finding finding = FindingAt({ key.mLine, key.mColumn }, "repeated-key",
            "the key " + name + " stands in line " + std::to_string(repeated.mFirst->mLine) +
                " already; only one of the two counts");
        finding.mSeverity = SEVERITY_WARNING;
        finding.mStore = StoreName(repeated.mSubsystem->mPlace);
        finding.mSubsystem = SubsystemName(repeated.mSubsystem->mPlace.mType);
        finding.mKey = name;
        findings.Add(std::move(finding));
    }
}

// The library's checks clear the groups of errors for each key, and leave errors of their own there: those that are set
// before the read are set again after it.
Document ReadQuietly(
    const std::string & text, CFindings & findings, IMetadataProvider * provider, IConfigContext & context)
{
    const kit::reporting::CErrorsSetAside errors;
    return ReadDocument(text, findings, provider, context);
}

}   // namespace

CTomlReader::~CTomlReader()
{
    ClearStoreList(mRomStores);
}

std::optional<FileContent> CTomlReader::ReadContent(IConfigContext & context)
{
    std::string error;
    const auto text = kit::tomlsyntax::ReadFile(Path(), error);
    if (!text) {
        kit::reporting::ReportError("unreadable-file", Path(), error);
        return std::nullopt;
    }
    CFindings findings(Path());
    Document document = ReadQuietly(*text, findings, Provider(), context);
    const std::string objection = WhyNotForChip("file", document.mContent.mChip, context);
    if (!objection.empty())
        findings.Add(FindingAt(document.mChipPlace, "wrong-chip", objection));
    if (findings.IsEmpty() && OnlyOneOfTwoCounts(context))
        AddDuplicates(document.mContent, findings);
    kit::reporting::ReportErrors(findings);
    if (!findings.IsEmpty())
        return std::nullopt;
    kit::reporting::ReportWarnings(findings);
    mRecords.insert(mRecords.end(), std::make_move_iterator(document.mRecords.begin()),
        std::make_move_iterator(document.mRecords.end()));
    NoteRomStores(document.mContent);
    return std::move(document.mContent);
}

void CTomlReader::NoteRomStores(const FileContent & content)
{
    ClearStoreList(mRomStores);
    std::set<std::uint16_t> known;
    for (const Subsystem & subsystem : content.mSubsystems) {
        const auto store = static_cast<std::uint16_t>(subsystem.mPlace.mStore.value_or(0));
        if (subsystem.mPlace.mDevice != DEVICE_ROM || store == 0 || !known.insert(store).second)
            continue;
        const auto order = static_cast<std::uint16_t>(mRomStores.size() + 1);
        auto info = std::make_unique<CStoreInfo>(
            DEVICE_ROM, store, 0xFFFFFFFFu, CStoreInfo::INVALID_STORE_SIZE, std::uint16_t{ 0 }, order, false);
        mRomStores.push_back(info.get());
        info.release();   // the list owns it now
    }
}

bool CTomlReader::Open(IConfigContext &)
{
    return true;   // nothing to prepare: the file is opened by Read
}

IChunkInOut * CTomlReader::ChunkAccess(DEVICE, std::uint16_t, IConfigContext &)
{
    return nullptr;   // a file of keys holds no binary blocks
}

const std::list<CStoreInfo *> & CTomlReader::Stores(IConfigContext &)
{
    return mRomStores;
}

}   // namespace tomlconfig
