/// What the tests of the plug-in "sqlitemetadata" share: the real module, and a folder of their own.

#ifndef TESTS_SQLITEMETADATA_SQLITEMETADATA_SUPPORT_H
#define TESTS_SQLITEMETADATA_SQLITEMETADATA_SUPPORT_H

#include "repository_builder.h"

#include <support/framework_errors.h>

#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>
#include <configtools/metadataproviderfactory.h>
#include <configtools/zyncontext.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

namespace VrexZynConfigTools::support {

/// A new folder, removed with all that is in it at the end.
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        std::string pattern = (std::filesystem::temp_directory_path() / "sqlitemetadata.XXXXXX").string();
        mPath = mkdtemp(pattern.data()) != nullptr ? pattern : "";
    }
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(mPath, ignored);
    }
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder & operator=(const TemporaryFolder &) = delete;

    std::string operator/(const std::string & name) const { return mPath + '/' + name; }

    std::size_t Count() const
    {
        std::size_t count = 0;
        for ([[maybe_unused]] const auto & entry : std::filesystem::directory_iterator(mPath))
            ++count;
        return count;
    }

private:
    std::string mPath;
};

inline std::string ContentOf(const std::string & path)
{
    std::ifstream file(path, std::ios::binary);
    return { std::istreambuf_iterator<char>(file), {} };
}

inline void PutContent(const std::string & path, const std::string & content)
{
    std::ofstream(path, std::ios::binary) << content;
}

inline std::unique_ptr<IMetadataProvider> MakeProvider(const std::string & path)
{
    CMetadataProviderFactory::Ref().Load(SQLITEMETADATA_PLUGIN_DIR);
    return std::unique_ptr<IMetadataProvider>(CMetadataProviderFactory::Ref().Create("sqlitemetadata", path));
}

inline CZynContext ContextOf(const std::string & chip, int type = -1)
{
    CZynContext context;
    context.SetChip(chip);
    if (type >= 0)
        context.SetSubsystemType(type);
    return context;
}

/// A test with a repository to fill, and the errors that the provider leaves.
class RepositoryTest : public ::testing::Test
{
protected:
    std::string Path() const { return mFolder / "system.zmd"; }

    /// Closes the repository; it is not written to any more.
    std::unique_ptr<IMetadataProvider> Provider()
    {
        mRepository.Close();
        return MakeProvider(Path());
    }

    /// The error's text without the path that it begins with; the whole text if it doesn't.
    std::string Fault() const
    {
        const std::string text = mErrors.Text();
        return text.rfind(Path() + ": ", 0) == 0 ? text.substr(Path().size() + 2) : text;
    }

    TemporaryFolder mFolder;
    FrameworkErrors mErrors;
    RepositoryBuilder mRepository{ Path() };
};

}   // namespace VrexZynConfigTools::support

#endif
