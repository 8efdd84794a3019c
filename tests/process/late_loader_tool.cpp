// A program that knows nothing of the library when it starts, and opens it by its path.
// usage: late_loader_tool LIBRARY HOLDER PLUGIN_DIR keep|close

#include <dlfcn.h>

#include <cstdio>
#include <string>

int main(int argumentCount, char ** arguments)
{
    if (argumentCount != 5)
        return 2;
    void * const library = dlopen(arguments[1], RTLD_NOW | RTLD_LOCAL);
    void * const holder = dlopen(arguments[2], RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr || holder == nullptr) {
        std::puts(dlerror());
        return 3;
    }
    const auto holdReader = reinterpret_cast<unsigned (*)(const char *)>(dlsym(holder, "HoldReader"));
    std::printf("%u modules\n", holdReader(arguments[3]));
    if (std::string(arguments[4]) == "close") {
        dlclose(holder);
        dlclose(library);
        std::puts("closed");
    }
    return 0;
}
