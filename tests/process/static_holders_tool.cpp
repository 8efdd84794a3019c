// A tool that keeps everything in static objects, also what plug-ins made, and reports errors before and after main.
// usage: static_holders_tool PLUGIN_DIR return|exit|traced

#include <configtools/chipconfig.h>
#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/metadata.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <messages/messages.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

using namespace VrexZynConfigTools;

extern "C" __attribute__((visibility("default"))) void OnModuleEvent(const char * event)
{
    std::puts(event);
}

namespace {

/// Sets an error and prints what then stands in the group.
void ReportError(const std::string & text)
{
    auto & handler = CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "static_holders_tool", true);
    handler.SetErrorMsg(0, text);
    short code = 0;
    std::string standing;
    handler.GetErrorMsg(GROUP_FRAMEWORK, code, standing);
    std::puts(standing.c_str());
}

/// The first object of the tool to come and the last to go.
struct CEarlyBird
{
    CEarlyBird()
    {
        ReportError("error before main");
        std::puts(CNullContext::Ref().Name().c_str());
        std::puts(CNullElement::Ref().ToString().c_str());
        std::puts(CNullMetadata::Ref().IsValid() ? "valid" : "not valid");
    }
    CEarlyBird(const CEarlyBird &) = delete;
    CEarlyBird & operator=(const CEarlyBird &) = delete;
    ~CEarlyBird() { ReportError("error after main"); }
};

const CEarlyBird earlyBird;
std::unique_ptr<IConfigReader> reader;
std::unique_ptr<IStoreManager> storeManager;
CChipConfig chip;   // its elements hold code of the reader's module
CZynContext context;

/// Prints the ends of destructors until the very end of the process.
class CEndPrinter : public IMessageSink
{
public:
    void OnDebugLine(const DebugLine & line) override
    {
        if (line.mIsExit && std::strchr(line.mFunction, '~') != nullptr)
            std::puts(line.mFunction);
    }
    void OnStatus(GroupEnum, StatusLevels, const std::string &) override {}
};

void TraceToTheEnd()
{
    static CEndPrinter * const printer = new CEndPrinter;   // outlives every static object
    CTheMsgHnd::SetSink(printer);
    CTheMsgHnd::SetDebugLevel(0);
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    if (argumentCount != 3)
        return 2;
    const std::string way = arguments[2];
    auto & factory = CReaderWriterFactory::Ref();
    factory.Load(arguments[1]);
    reader.reset(factory.CreateReader("store reader", "", nullptr));
    storeManager.reset(factory.CreateStoreManager("store manager", "", nullptr));
    if (!reader || !storeManager)
        return 3;
    reader->SetObserver(chip);
    reader->Read(context);
    std::printf("%u stores\n", static_cast<unsigned>(chip.Stores().size()));
    if (way == "traced")
        TraceToTheEnd();
    if (way == "exit")
        std::exit(0);
    return 0;
}
