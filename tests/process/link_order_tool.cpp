// A tool that links two libraries, one of which uses the other; it is built with both orders on the linker's line.
// usage: link_order_tool PLUGIN_DIR

#include "holder.h"

#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>

#include <cstdio>
#include <memory>

using namespace VrexZynConfigTools;

namespace {

std::unique_ptr<IConfigReader> reader;

}   // namespace

int main(int argumentCount, char ** arguments)
{
    if (argumentCount != 2)
        return 2;
    std::printf("%u modules\n", HoldReader(arguments[1]));
    reader.reset(CReaderWriterFactory::Ref().CreateReader("store reader", "", nullptr));
    return reader ? 0 : 3;
}
