// usage: module_ways_tool <folder>
// Prints for each module of the folder, by file name, whether the system's loader and the plug-in manager accept it.
// Each answer comes from a child process, since a module may end the process that loads it.

#include <misc/pluginmanager.h>

#include <dlfcn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <set>
#include <string>

namespace {

bool IsTrueInChild(const std::function<bool()> & question)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(question() ? 0 : 1);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

bool LoaderAccepts(const std::filesystem::path & path)
{
    void * const module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr)
        std::fprintf(stderr, "%s\n", dlerror());
    return module != nullptr && dlsym(module, "GetPlugInName") != nullptr;
}

bool ManagerAccepts(const std::filesystem::path & path)
{
    plugin::CPluginManager manager("GetPlugInName", "GetPlugInSignature", "ZynConfigTool");
    manager.Load(path.parent_path().string(), path.filename().string());
    return manager.Count() == 1;
}

}   // namespace

int main(int argc, char ** argv)
{
    if (argc != 2)
        return 2;
    std::set<std::filesystem::path> modules;
    for (const auto & entry : std::filesystem::directory_iterator(argv[1]))
        modules.insert(entry.path());
    for (const auto & module : modules) {
        const bool isLoaded = IsTrueInChild([&] { return LoaderAccepts(module); });
        const bool isAccepted = IsTrueInChild([&] { return ManagerAccepts(module); });
        std::printf("%s %s %s\n", isLoaded ? "loads" : "fails", isAccepted ? "accepted" : "rejected",
            module.stem().c_str());
    }
    return 0;
}
