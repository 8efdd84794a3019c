#include "conversion.h"

#include "losses.h"
#include "writewatch.h"

#include <configtools/keywords.h>
#include <configtools/stores.h>
#include <kit/reading/storetags.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace workbench {

using namespace VrexZynConfigTools;

namespace {

// A filtered read needs the layer of each store, which is known only after a read without the filter.
kit::reading::StoreLayers LayersOf(const CChipConfig & chip)
{
    kit::reading::StoreLayers layers;
    int layer = 0;
    for (const CStoreInfo * const store : chip.Stores())
        layers[{ store->DeviceId(), store->StoreId() }] = ++layer;
    return layers;
}

// A store retains the size that a file has for it.
kit::reading::StoreSizes SizesOf(const CChipConfig & chip)
{
    kit::reading::StoreSizes sizes;
    for (const CStoreInfo * const store : chip.Stores())
        if (store->StoreSize() != UNKNOWN_SIZE)
            sizes[{ store->DeviceId(), store->StoreId() }] = store->StoreSize();
    return sizes;
}

// A pipe gives its content once, and asking again may wait for ever.
bool CanBeReadTwice(const std::string & file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return !std::filesystem::is_fifo(status) && !std::filesystem::is_character_file(status) &&
           !std::filesystem::is_socket(status);
}

bool ReadFiltered(CSession & session, int filter)
{
    for (const ConfigFile & file : session.Files()) {
        if (!CanBeReadTwice(file.mPath)) {
            session.Sink().OnFinding(FindingIn(file.mPath, "not-read-twice",
                "a layer filter reads a file twice, which needs an ordinary one"));
            return false;
        }
    }
    CZynContext context = session.ReadContext();
    context.SetTag(keywords::TAG_LAYER_FILTER, filter);
    context.SetTag(kit::reading::TAG_STORE_LAYERS, kit::reading::ComposeStoreLayers(LayersOf(session.Chip())));

    const auto deliveries = session.Watch().Deliveries();
    if (!session.ReadAgain(context))
        return false;
    if (session.Watch().Deliveries() == deliveries)
        return true;
    session.Sink().OnFinding(
        kit::reporting::MakeFinding("files-changed", "the files changed while they were read"));
    return false;
}

CZynContext WriteContext(const CSession & session, std::optional<int> filter)
{
    CZynContext context;
    context.SetTag(kit::reading::TAG_STORE_SIZES, kit::reading::ComposeStoreSizes(SizesOf(session.Chip())));
    context.Parse(session.Tags());
    context.SetChip(session.Watch().Chip());
    if (filter)
        context.SetTag(keywords::TAG_LAYER_FILTER, *filter);
    return context;
}

bool Write(CSession & session, const ConfigFile & output, std::optional<int> filter)
{
    const bool isAnyOldError = PassOnChannel(session.Sink());
    const std::unique_ptr<IConfigWriter> writer = session.CreateWriter(output);
    if (writer == nullptr)
        return false;
    CZynContext context = WriteContext(session, filter);
    writer->PrepareWriter(context);
    CWriteWatch watch(*writer,
        CountToWrite(session.Chip(), filter ? std::optional(std::abs(*filter)) : std::nullopt), output.mPath);
    const bool ok = session.Chip().Write(watch, context);
    const bool isAnyError = PassOnChannel(session.Sink());
    if (!ok && !isAnyError)
        session.Sink().OnFinding(FindingIn(output.mPath, "not-written", keywords::ERROR_UNABLE_TO_WRITE_FILE));
    return ok && !isAnyError && !isAnyOldError;
}

}   // namespace

bool Convert(CSession & session, const ConfigFile & output, std::optional<int> layerFilter)
{
    const CChipConfig & chip = session.Chip();
    const bool isLostAtRead = PassOn(LossesOfRead(chip, session.Watch()), session.Sink());
    const bool isLostAtWrite =
        PassOn(layerFilter ? LossesOfFilteredWrite(chip, std::abs(*layerFilter)) : LossesOfWrite(chip),
            session.Sink());
    if (isLostAtRead || isLostAtWrite || (layerFilter && !ReadFiltered(session, *layerFilter)))
        return false;
    return Write(session, output, layerFilter);
}

}   // namespace workbench
