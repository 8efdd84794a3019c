/// A folder of a test's own, into which it puts the modules and files it wants; gone at the end of the scope.

#ifndef TESTS_SUPPORT_MODULE_FOLDER_H
#define TESTS_SUPPORT_MODULE_FOLDER_H

#include <stdlib.h>

#include <cstddef>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

namespace VrexZynConfigTools::support {

/// The file of a module that was built for the tests.
inline std::filesystem::path TestModule(const std::string & module)
{
    return std::filesystem::path(CONFIGTOOLS_TEST_MODULES) / (module + ".zpm");
}

inline std::string ContentOf(const std::filesystem::path & path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>() };
}

class ModuleFolder
{
public:
    ModuleFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "modules_XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr)
            throw std::filesystem::filesystem_error("mkdtemp", std::error_code());
        mPath = name;
    }
    ModuleFolder(const ModuleFolder &) = delete;
    ModuleFolder & operator=(const ModuleFolder &) = delete;
    ~ModuleFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }

    std::string Path() const { return mPath.string(); }
    std::string PathOf(const std::string & file) const { return (mPath / file).string(); }

    /// Copies a test module, under its own name or another.
    ModuleFolder & With(const std::string & module, const std::string & file = "")
    {
        std::filesystem::copy_file(TestModule(module), mPath / (file.empty() ? module + ".zpm" : file));
        return *this;
    }

    ModuleFolder & WithFile(const std::string & file, const std::string & content)
    {
        std::ofstream(mPath / file, std::ios::binary) << content;
        return *this;
    }

    ModuleFolder & WithFolder(const std::string & folder)
    {
        std::filesystem::create_directory(mPath / folder);
        return *this;
    }

    /// A link with this very text, whether or not anything stands there.
    ModuleFolder & WithLink(const std::string & file, const std::string & target)
    {
        std::filesystem::create_symlink(target, mPath / file);
        return *this;
    }

private:
    std::filesystem::path mPath;
};

}   // namespace VrexZynConfigTools::support

#endif
