/// A tool on one page: reads two stores through a plug-in, asks which layer's value holds, and prints all layers.
/// usage: showwinner PLUGIN_DIR

#include <configtools/chipconfig.h>
#include <configtools/keywords.h>
#include <configtools/readerwriter.h>
#include <configtools/readerwriterfactory.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <messages/messages.h>

#include <iostream>
#include <memory>
#include <string>

namespace {

using namespace VrexZynConfigTools;

// Subsystem "bt" (1): two keys in "otp" (1), one of which "eeprom" (15) overrides.
constexpr char CONFIGURATION[] = "1 15 1 100 7\n"
                                 "1 1 1 100 5\n"
                                 "1 1 1 101 6\n";

int Fail(const std::string & what)
{
    std::string reason;
    short code = 0;
    CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "showwinner", true)
        .GetErrorMsg(GROUP_FRAMEWORK, code, reason);
    std::cerr << "showwinner: " << what << ' ' << reason << '\n';
    return 1;
}

bool NoErrorStands()
{
    return !CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "showwinner", true)
                .IsErrorSet(GROUP_FRAMEWORK, true);
}

}   // namespace

int main(int argumentCount, char ** arguments)
{
    if (argumentCount != 2)
        return Fail("usage: showwinner PLUGIN_DIR");

    auto & factory = CReaderWriterFactory::Ref();
    factory.Load(arguments[1]);
    const std::unique_ptr<IConfigReader> reader(factory.CreateReader("lineconfig", CONFIGURATION, nullptr));
    const std::unique_ptr<IConfigWriter> writer(factory.CreateWriter("lineconfig", "", &std::cout));
    if (!reader || !writer)
        return Fail("no plug-in lineconfig");

    CChipConfig chip;
    CZynContext context;
    context.SetTag(keywords::TAG_INSERT_MODE, keywords::INSERT_OVERWRITE);
    reader->SetObserver(chip);
    reader->Read(context);
    if (!NoErrorStands())
        return Fail("reading:");

    CZynContext query;
    query.SetSubsystemType(SUBSYSTEM_BT);
    query.SetTag(keywords::TAG_LAYER_FILTER, 15);   // from the topmost layer down
    for (const std::uint32_t key : { 100U, 101U })
        std::cout << "key " << key << " is " << chip.Element(key, query).ToString() << '\n';

    return chip.Write(*writer, context) ? 0 : Fail("writing:");
}
