// A module that has every table that the loader walks: texts, symbols, versions, arrays of functions, data of each
// thread. How it is linked brings the rest.

#include <configtools/plugin.h>

#include <map>
#include <stdexcept>
#include <string>

namespace {

thread_local std::string ofThisThread = "many";
thread_local int count = 5;
std::map<std::string, int> table = { { "tables", 1 } };

}   // namespace

const char * GetPlugInName()
{
    try {
        return table.at(ofThisThread + std::to_string(count)) != 0 ? "some" : "none";
    } catch (const std::out_of_range &) {
        return "many tables";
    }
}

const char * GetPlugInSignature()
{
    return VrexZynConfigTools::PLUGIN_SIGNATURE;
}
