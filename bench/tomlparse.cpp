// The least that a program in C++ does to read configuration files: toml++ parses each, and nothing looks at the result.

#include <toml++/toml.h>

#include <exception>
#include <iostream>

int main(int argc, char ** argv)
{
    try {
        std::size_t keys = 0;
        for (int index = 1; index < argc; ++index)
            keys += toml::parse_file(argv[index]).size();
        return keys == 0 ? 1 : 0;
    } catch (const std::exception & error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
}
