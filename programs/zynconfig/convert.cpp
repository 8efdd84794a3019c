#include "commands.h"
#include "session.h"

#include <configtools/keywords.h>
#include <configtools/stores.h>
#include <workbench/errors.h>
#include <workbench/losses.h>
#include <workbench/writewatch.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace zynconfig {

using namespace VrexZynConfigTools;
using namespace workbench;

namespace {

// A tag between this tool and reader plug-ins: "DEVICE.STORE:LAYER,...", all in decimal. A filtered read needs the
// layer of each store, which is known only after a read without the filter.
constexpr char TAG_STORE_LAYERS[] = "storelayers";

std::string StoreLayers(const CChipConfig & chip)
{
    std::string text;
    int layer = 0;
    for (const CStoreInfo * const store : chip.Stores()) {
        text += text.empty() ? "" : ",";
        text += std::to_string(store->DeviceId()).append(".").append(std::to_string(store->StoreId()));
        text += ':' + std::to_string(++layer);
    }
    return text;
}

// A tag between this tool and writer plug-ins: "DEVICE.STORE:SIZE,...", all in decimal. A store keeps the size that a file
// told of it.
constexpr char TAG_STORE_SIZES[] = "storesizes";

std::string StoreSizes(const CChipConfig & chip)
{
    std::string text;
    for (const CStoreInfo * const store : chip.Stores()) {
        if (store->StoreSize() == UNKNOWN_SIZE)
            continue;
        text += text.empty() ? "" : ",";
        text += std::to_string(store->DeviceId()).append(".").append(std::to_string(store->StoreId()));
        text += ':' + std::to_string(store->StoreSize());
    }
    return text;
}

// A pipe gives its content once, and asking again may wait for ever.
bool CanBeReadTwice(const std::string & file)
{
    std::error_code error;
    const auto status = std::filesystem::status(file, error);
    return !std::filesystem::is_fifo(status) && !std::filesystem::is_character_file(status) &&
           !std::filesystem::is_socket(status);
}

bool ReadFiltered(CSession & session)
{
    for (const std::string & file : session.Asked().mFiles) {
        if (!CanBeReadTwice(file)) {
            ReportError(file + ": --layer-filter reads a file twice, which needs an ordinary one");
            return false;
        }
    }
    CZynContext context = session.ReadContext();
    context.SetTag(keywords::TAG_LAYER_FILTER, *session.Asked().mLayerFilter);
    context.SetTag(TAG_STORE_LAYERS, StoreLayers(session.Chip()));

    const auto deliveries = session.Watch().Deliveries();
    if (!session.ReadAll(context))
        return false;
    if (session.Watch().Deliveries() == deliveries)
        return true;
    ReportError("the files changed while they were read");
    return false;
}

CZynContext WriteContext(const CSession & session)
{
    CZynContext context;
    context.SetTag(TAG_STORE_SIZES, StoreSizes(session.Chip()));
    context.Parse(session.Asked().mContext);
    context.SetChip(session.Watch().Chip());
    if (session.Asked().mLayerFilter)
        context.SetTag(keywords::TAG_LAYER_FILTER, *session.Asked().mLayerFilter);
    return context;
}

bool Write(CSession & session)
{
    const bool isAnyOldError = ReportChannel();
    const std::unique_ptr<IConfigWriter> writer = session.CreateWriter();
    if (writer == nullptr)
        return false;
    CZynContext context = WriteContext(session);
    writer->PrepareWriter(context);
    const auto & filter = session.Asked().mLayerFilter;
    CWriteWatch watch(*writer,
        CountToWrite(session.Chip(), filter ? std::optional(std::abs(*filter)) : std::nullopt),
        session.Asked().mOutput);
    const bool ok = session.Chip().Write(watch, context);
    const bool isAnyError = ReportChannel();
    if (!ok && !isAnyError)
        ReportError(session.Asked().mOutput + ": " + keywords::ERROR_UNABLE_TO_WRITE_FILE);
    return ok && !isAnyError && !isAnyOldError;
}

}   // namespace

bool Convert(CSession & session)
{
    if (!session.ReadAll())
        return false;

    const auto & filter = session.Asked().mLayerFilter;
    bool isLost = ReportErrors(LossesOfRead(session.Chip(), session.Watch()));
    isLost = ReportErrors(filter ? LossesOfFilteredWrite(session.Chip(), std::abs(*filter))
                                 : LossesOfWrite(session.Chip())) ||
             isLost;
    if (isLost || (filter && !ReadFiltered(session)))
        return false;
    return Write(session);
}

}   // namespace zynconfig
