#include "reader.h"

#include "chunk.h"
#include "imagefile.h"

#include <configtools/context.h>
#include <kit/reading/devices.h>
#include <kit/reporting/channel.h>
#include <kit/text/words.h>

#include <algorithm>
#include <cstddef>

namespace imageconfig {

using namespace kit::reading;
using namespace kit::reporting;
using kit::text::Counted;

namespace {

constexpr std::size_t MAX_LAYERS = 15;
constexpr std::size_t MAX_FINDINGS = 100;
constexpr std::size_t MAX_LISTED = 10;   // keys in a warning

// A chip configuration that is given more stores than it has layers is empty afterwards, without an error.
void CheckStores(const Image & image, CFindings & findings)
{
    const auto count = static_cast<std::size_t>(
        std::count_if(image.mStores.begin(), image.mStores.end(), [](const Store & store) {
            return MakesLayer({ std::nullopt, store.mDevice, store.mNumber });
        }));
    if (count > MAX_LAYERS)
        findings.Add(MakeFinding("too-many-stores", "the image has " + std::to_string(count) +
                                                        " stores that make layers; a chip has " +
                                                        std::to_string(MAX_LAYERS)));
}

std::vector<std::string> NamesOfRepeatedKeys(const Content & content)
{
    std::vector<std::string> names;
    for (const RepeatedKey & repeated : RepeatedKeys(content.mSubsystems)) {
        const CElement & element = *repeated.mKey->mElement;
        const SubsystemPlace & place = repeated.mSubsystem->mPlace;
        names.push_back(imageconfig::StoreName(place.mDevice, place.mStore) + ", " +
                        KeyName(element.PsId(), repeated.mKey->mIndices, element.Name()));
    }
    return names;
}

}   // namespace

CImageReader::CImageReader(const std::string & path)
    : CFileReader(path)
    , mShelf(path)
{}

std::optional<FileContent> CImageReader::ReadContent(IConfigContext & context)
{
    std::string error;
    const auto image = LoadImage(Path(), error);
    if (!image) {
        ReportError("unreadable-image", Path(), error);
        return std::nullopt;
    }
    CFindings findings(Path(), MAX_FINDINGS);
    const std::string objection = WhyNotForChip("image", image->mChip, context);
    if (!objection.empty())
        findings.Add(MakeFinding("wrong-chip", objection));
    CheckStores(*image, findings);
    const ContextOwner base = FileContext(context, image->mChip);
    Content content = BuildContent(*image, *base, Provider(), findings);
    ReportErrors(findings);
    if (!findings.IsEmpty())
        return std::nullopt;

    WarnOf(content, context);
    mShelf.Keep(*image);
    return FileContent{ image->mChip, std::move(content.mSubsystems) };
}

void CImageReader::Warn(const std::string & code, const std::string & text) const
{
    ReportWarning(WithPlace(MakeFinding(code, text), Path()));
}

void CImageReader::WarnOf(const Content & content, IConfigContext & context) const
{
    const auto list = [](const std::vector<std::string> & keys) {
        return kit::text::Joined(keys, "; ", MAX_LISTED);
    };
    const std::vector<std::string> & unknown = content.mUnknownKeys;
    if (!unknown.empty())
        Warn("unknown-keys", "the metadata don't know " + Counted(unknown.size(), "key") +
                                 (unknown.size() == 1 ? ", which comes raw: " : ", which come raw: ") +
                                 list(unknown));
    const std::vector<std::string> & changed = content.mChangedKeys;
    if (!changed.empty())
        Warn("lost-bits", "bits of " + Counted(changed.size(), "key") +
                              " are lost, as no field holds them or can give them back: " + list(changed));
    // Without an insert mode all of them are kept; otherwise one is lost.
    const auto repeated =
        OnlyOneOfTwoCounts(context) ? NamesOfRepeatedKeys(content) : std::vector<std::string>();
    if (!repeated.empty())
        Warn("repeated-keys", "of keys that are there more than once only one counts: " + list(repeated));
}

bool CImageReader::Open(IConfigContext &)
{
    return true;   // nothing to prepare: the file is opened by Read
}

IChunkInOut * CImageReader::ChunkAccess(DEVICE device, std::uint16_t storeId, IConfigContext &)
{
    return mShelf.Access(device, storeId);
}

const std::list<CStoreInfo *> & CImageReader::Stores(IConfigContext &)
{
    return mShelf.Stores();
}

}   // namespace imageconfig
