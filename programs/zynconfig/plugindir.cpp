#include "plugindir.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace zynconfig {

namespace fs = std::filesystem;

namespace {

bool HoldsPlugIn(const fs::path & folder)
{
    std::error_code error;
    const fs::directory_iterator entries(folder, error);
    return std::any_of(begin(entries), end(entries),
        [](const fs::directory_entry & entry) { return entry.path().extension() == ".zpm"; });
}

}   // namespace

std::string FindPlugInFolder()
{
    std::error_code error;
    const fs::path own = fs::read_symlink("/proc/self/exe", error).parent_path();
    if (error)
        return {};
    return HoldsPlugIn(own) ? own.string() : (own / ZYNCONFIG_PLUGIN_DIR).lexically_normal().string();
}

}   // namespace zynconfig
