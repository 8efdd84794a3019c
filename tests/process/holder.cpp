#include "holder.h"

#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>

#include <cstdio>
#include <memory>

using namespace VrexZynConfigTools;

namespace {

class CHolder
{
public:
    CHolder() = default;
    CHolder(const CHolder &) = delete;
    CHolder & operator=(const CHolder &) = delete;
    ~CHolder()
    {
        const bool held = mReader != nullptr;
        mReader.reset();
        std::puts(held ? "reader let go" : "nothing held");
    }

    std::unique_ptr<IConfigReader> mReader;
};

CHolder holder;

}   // namespace

unsigned HoldReader(const char * directory)
{
    auto & factory = CReaderWriterFactory::Ref();
    factory.Load(directory);
    holder.mReader.reset(factory.CreateReader("store reader", "", nullptr));
    return static_cast<unsigned>(factory.Count());
}
