// The states of the factory before and around its one load. Each test runs in a process of its own, since nothing
// brings the factory back.

#include <configtools/readerwriterfactory.h>

#include <support/framework_errors.h>
#include <support/module_folder.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

using namespace VrexZynConfigTools;
using support::FrameworkErrors;
using support::ModuleFolder;

namespace {

/// Whether `claim` holds in a child process, which then ends as a program does.
void ExpectInChild(const std::function<bool()> & claim)
{
    EXPECT_EXIT(std::exit(claim() ? 0 : 1), testing::ExitedWithCode(0), "");
}

bool GivesNothing()
{
    auto & factory = CReaderWriterFactory::Ref();
    return factory.Count() == 0 && !factory.Exists("alpha") && !factory.Exists("") &&
           factory.CreateReader("store reader", "", nullptr) == nullptr &&
           factory.CreateWriter("store reader", "", nullptr) == nullptr &&
           factory.CreateStoreManager("store reader", "", nullptr) == nullptr && !FrameworkErrors().IsSet();
}

}   // namespace

TEST(CReaderWriterFactory, gives_nothing_before_a_load)
{
    ExpectInChild(GivesNothing);
}

TEST(CReaderWriterFactory, gives_nothing_and_sets_no_error_after_a_load_that_found_nothing)
{
    const ModuleFolder empty;
    ExpectInChild([&empty] {
        CReaderWriterFactory::Ref().Load(empty.Path());
        return GivesNothing();
    });
    ExpectInChild([&empty] {
        CReaderWriterFactory::Ref().Load(empty.PathOf("missing"));
        return GivesNothing();
    });
}

TEST(CReaderWriterFactory, ignores_a_second_load_even_if_the_first_found_nothing)
{
    const ModuleFolder empty;
    ModuleFolder full;
    full.With("alpha").With("storereader");
    ExpectInChild([&] {
        CReaderWriterFactory::Ref().Load(empty.Path());
        CReaderWriterFactory::Ref().Load(full.Path());
        return GivesNothing();
    });
}

TEST(CReaderWriterFactory, searches_one_folder_only_for_its_own_pattern)
{
    ModuleFolder folder;
    folder.With("alpha").With("beta", "beta.so").WithFolder("sub").With("storereader", "sub/storereader.zpm");
    ExpectInChild([&] {
        auto & factory = CReaderWriterFactory::Ref();
        factory.Load(folder.Path());
        return factory.Count() == 1 && factory.Exists("alpha");
    });
}

TEST(CReaderWriterFactory, can_be_assigned_to_itself)
{
    ModuleFolder folder;
    folder.With("alpha");
    ExpectInChild([&] {
        auto & factory = CReaderWriterFactory::Ref();
        factory.Load(folder.Path());
        CReaderWriterFactory & same = factory;
        factory = same;
        return factory.Exists("alpha");
    });
}
