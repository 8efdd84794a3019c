#include <misc/pluginmanager.h>

#include <support/debug_capture.h>
#include <support/module_folder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <list>
#include <string>
#include <vector>

using namespace VrexZynConfigTools;
using plugin::CPluginManager;
using support::ContentOf;
using support::DebugCapture;
using support::ModuleFolder;
using support::TestModule;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using Names = std::list<std::string>;

namespace {

std::vector<std::string> events;   // the modules that came and went

}   // namespace

extern "C" __attribute__((visibility("default"))) void OnModuleEvent(const char * event)
{
    events.emplace_back(event);
}

namespace {

class AManager : public CPluginManager
{
public:
    AManager()
        : CPluginManager("GetPlugInName", "GetPlugInSignature", "ZynConfigTool")
    {}
};

Names NamesOf(CPluginManager & manager)
{
    Names names;
    const std::uint64_t count = manager.ModulesName(names);
    EXPECT_EQ(count, names.size());
    EXPECT_EQ(manager.Count(), count);
    return names;
}

bool IsLoaded(const std::string & path)
{
    void * const module = dlopen(path.c_str(), RTLD_NOLOAD | RTLD_LAZY);
    if (module != nullptr)
        dlclose(module);
    return module != nullptr;
}

/// What a manager makes of a folder with one module: the plug-in names, and whether the module stays in memory.
struct Fate
{
    Names mNames;
    bool mIsLoaded;

    bool operator==(const Fate & other) const { return mNames == other.mNames && mIsLoaded == other.mIsLoaded; }
};

void PrintTo(const Fate & fate, std::ostream * out)
{
    *out << testing::PrintToString(fate.mNames) << (fate.mIsLoaded ? ", loaded" : ", not loaded");
}

Fate FateOf(const std::string & module)
{
    ModuleFolder folder;
    folder.With(module);
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    return { NamesOf(manager), IsLoaded(folder.PathOf(module + ".zpm")) };
}

const Fate UNLOADED = { {}, false };
const Fate REFUSED_BUT_LOADED = { {}, true };

}   // namespace

TEST(CPluginManager, is_empty_at_first)
{
    AManager manager;
    EXPECT_EQ(manager.Count(), 0U);
    EXPECT_THAT(NamesOf(manager), IsEmpty());
    EXPECT_EQ(manager.GetModule("alpha"), nullptr);
    EXPECT_FALSE(manager.ModuleExists("alpha"));
}

TEST(CPluginManager, accepts_a_module_with_name_and_signature)
{
    ModuleFolder folder;
    folder.With("alpha");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_TRUE(manager.ModuleExists("alpha"));
    const plugin::Module * const module = manager.GetModule("alpha");
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(module->mName, "alpha");
    EXPECT_EQ(module->mPath, folder.PathOf("alpha.zpm"));
    EXPECT_NE(module->mHandle, nullptr);
}

TEST(CPluginManager, accepts_a_module_without_a_signature)
{
    EXPECT_EQ(FateOf("no_signature"), (Fate{ { "no signature" }, true }));
}

TEST(CPluginManager, refuses_a_wrong_signature_and_leaves_the_module_loaded)
{
    EXPECT_EQ(FateOf("wrong_signature"), REFUSED_BUT_LOADED);
    EXPECT_EQ(FateOf("signature_in_lower_case"), REFUSED_BUT_LOADED);
    EXPECT_EQ(FateOf("longer_signature"), REFUSED_BUT_LOADED);
    EXPECT_EQ(FateOf("empty_signature"), REFUSED_BUT_LOADED);
}

TEST(CPluginManager, takes_no_signature_text_for_a_wrong_one)
{
    EXPECT_EQ(FateOf("null_signature"), REFUSED_BUT_LOADED);
    EXPECT_EQ(FateOf("throwing_signature"), REFUSED_BUT_LOADED);
}

TEST(CPluginManager, unloads_a_module_without_the_name_entry_point_whatever_its_signature)
{
    EXPECT_EQ(FateOf("no_name"), UNLOADED);
    EXPECT_EQ(FateOf("no_name_wrong_signature"), UNLOADED);
}

TEST(CPluginManager, unloads_a_module_that_gives_no_name)
{
    EXPECT_EQ(FateOf("null_name"), UNLOADED);
    EXPECT_EQ(FateOf("throwing_name"), UNLOADED);
}

TEST(CPluginManager, unloads_a_module_whose_entry_point_is_no_function)
{
    EXPECT_EQ(FateOf("text_for_a_name"), UNLOADED);
}

TEST(CPluginManager, does_not_take_the_entry_points_of_a_library_for_the_module_s)
{
    EXPECT_EQ(FateOf("borrower"), UNLOADED);
}

TEST(CPluginManager, leaves_out_what_the_loader_refuses)
{
    EXPECT_EQ(FateOf("unresolved"), UNLOADED);
}

TEST(CPluginManager, accepts_an_empty_name)
{
    EXPECT_EQ(FateOf("empty_name"), (Fate{ { "" }, true }));
}

TEST(CPluginManager, without_a_signature_function_accepts_every_module_with_a_name)
{
    ModuleFolder folder;
    folder.With("wrong_signature").With("throwing_signature").With("no_signature").With("no_name");
    CPluginManager manager("GetPlugInName", "", "ZynConfigTool");
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("no signature", "throwing signature", "wrong signature"));
}

TEST(CPluginManager, compares_with_the_signature_it_was_given)
{
    ModuleFolder folder;
    folder.With("wrong_signature").With("alpha");
    CPluginManager manager("GetPlugInName", "GetPlugInSignature", "OtherTool");
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("wrong signature"));
}

TEST(CPluginManager, asks_the_entry_points_it_was_given)
{
    ModuleFolder folder;
    folder.With("alpha");
    CPluginManager manager("GetPlugInSignature", "NoSuchEntryPoint", "anything");
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("ZynConfigTool"));
}

TEST(CPluginManager, keeps_of_two_modules_with_one_name_the_one_listed_last)
{
    ModuleFolder folder;
    folder.With("twin", "a.zpm").With("other_twin", "b.zpm");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_EQ(manager.Count(), 1U);
    ASSERT_NE(manager.GetModule("twin"), nullptr);
    EXPECT_EQ(manager.GetModule("twin")->mPath, folder.PathOf("b.zpm"));
}

TEST(CPluginManager, lists_last_by_the_bytes_of_the_file_names)
{
    ModuleFolder folder;
    folder.With("other_twin", "b.zpm").With("twin", "c.zpm").With("twin", "B.zpm");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_EQ(manager.GetModule("twin")->mPath, folder.PathOf("c.zpm"));
}

TEST(CPluginManager, never_unloads_the_module_that_another_replaced)
{
    ModuleFolder folder;
    folder.With("twin", "a.zpm").With("other_twin", "b.zpm");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    manager.UnloadAll();
    EXPECT_TRUE(IsLoaded(folder.PathOf("a.zpm")));
    EXPECT_FALSE(IsLoaded(folder.PathOf("b.zpm")));
}

TEST(CPluginManager, gives_the_names_in_byte_order_whatever_the_files_are_called)
{
    ModuleFolder folder;
    folder.With("beta", "1.zpm").With("alpha", "2.zpm").With("beta_in_capitals", "3.zpm");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    Names names = { "before" };
    EXPECT_EQ(manager.ModulesName(names), 3U);
    EXPECT_THAT(names, ElementsAre("before", "BETA", "alpha", "beta"));
}

TEST(CPluginManager, regards_case_in_names_and_adds_none_by_asking)
{
    ModuleFolder folder;
    folder.With("alpha");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_EQ(manager.GetModule("Alpha"), nullptr);
    EXPECT_FALSE(manager.ModuleExists("Alpha"));
    EXPECT_EQ(manager.GetModule("alpha.zpm"), nullptr);
    EXPECT_EQ(manager.Count(), 1U);
}

TEST(CPluginManager, loads_only_what_matches_the_pattern)
{
    ModuleFolder folder;
    folder.With("alpha", "alpha.so").With("beta");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("beta"));
    manager.Load(folder.Path(), "*.so");
    EXPECT_THAT(NamesOf(manager), ElementsAre("alpha"));
}

TEST(CPluginManager, replaces_what_was_loaded_on_each_load)
{
    ModuleFolder first;
    ModuleFolder second;
    first.With("alpha");
    second.With("beta");
    AManager manager;
    manager.Load(first.Path(), "*.zpm");
    manager.Load(second.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("beta"));
    EXPECT_FALSE(IsLoaded(first.PathOf("alpha.zpm")));
}

TEST(CPluginManager, is_empty_after_a_load_from_a_folder_that_does_not_exist)
{
    ModuleFolder folder;
    folder.With("alpha");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    manager.Load(folder.PathOf("missing"), "*.zpm");
    EXPECT_EQ(manager.Count(), 0U);
}

TEST(CPluginManager, unloads_all_it_has_accepted)
{
    ModuleFolder folder;
    folder.With("alpha").With("beta");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_TRUE(IsLoaded(folder.PathOf("alpha.zpm")));
    manager.UnloadAll();
    EXPECT_THAT(NamesOf(manager), IsEmpty());
    EXPECT_FALSE(manager.ModuleExists("alpha"));
    EXPECT_FALSE(IsLoaded(folder.PathOf("alpha.zpm")));
    EXPECT_FALSE(IsLoaded(folder.PathOf("beta.zpm")));
}

TEST(CPluginManager, loads_in_the_order_of_the_files_and_unloads_in_that_of_the_names)
{
    ModuleFolder folder;
    folder.With("beta", "1.zpm").With("alpha", "2.zpm");
    events.clear();
    {
        AManager manager;
        manager.Load(folder.Path(), "*.zpm");
        EXPECT_THAT(events, ElementsAre("+beta", "+alpha"));
        events.clear();
    }
    EXPECT_THAT(events, ElementsAre("-alpha", "-beta"));
}

TEST(CPluginManager, shares_a_module_with_another_manager)
{
    ModuleFolder folder;
    folder.With("alpha");
    AManager first;
    AManager second;
    first.Load(folder.Path(), "*.zpm");
    second.Load(folder.Path(), "*.zpm");
    first.UnloadAll();
    EXPECT_TRUE(IsLoaded(folder.PathOf("alpha.zpm")));
    EXPECT_EQ(second.Count(), 1U);
}

TEST(CPluginManager, loads_from_the_current_folder_and_keeps_the_plain_path)
{
    ModuleFolder folder;
    folder.With("alpha");
    const auto former = std::filesystem::current_path();
    std::filesystem::current_path(folder.Path());
    AManager manager;
    manager.Load("", "*.zpm");
    std::filesystem::current_path(former);
    ASSERT_NE(manager.GetModule("alpha"), nullptr);
    EXPECT_EQ(manager.GetModule("alpha")->mPath, "alpha.zpm");
}

TEST(CPluginManager, keeps_the_path_as_it_stands)
{
    ModuleFolder folder;
    folder.WithFolder("Sub").With("alpha", "Sub/Alpha.zpm");
    AManager manager;
    manager.Load(folder.PathOf("Sub/../Sub/"), "*.zpm");
    ASSERT_NE(manager.GetModule("alpha"), nullptr);
    EXPECT_EQ(manager.GetModule("alpha")->mPath, folder.PathOf("Sub/../Sub/Alpha.zpm"));
}

TEST(CPluginManager, leaves_out_a_path_for_which_the_loader_would_take_another)
{
    // The loader would put the program's own folder in place of "$ORIGIN", and find alpha there.
    const auto origin = std::filesystem::canonical("/proc/self/exe").parent_path();
    ModuleFolder folder;
    std::filesystem::create_directories(folder.Path() + origin.string());
    folder.With("alpha", origin.string().substr(1) + "/file.zpm");
    folder.WithFolder("$ORIGIN").With("beta", "$ORIGIN/file.zpm");
    AManager manager;
    manager.Load(folder.PathOf("$ORIGIN"), "*.zpm");
    EXPECT_EQ(manager.Count(), 0U);
}

TEST(CPluginManager, bears_any_other_dollar_in_a_path)
{
    ModuleFolder folder;
    folder.WithFolder("$HOME").With("beta", "$HOME/beta$.zpm");
    AManager manager;
    manager.Load(folder.PathOf("$HOME"), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("beta"));
}

TEST(CPluginManager, leaves_out_what_is_no_module)
{
    ModuleFolder folder;
    folder.WithFile("empty.zpm", "").WithFile("text.zpm", "this is no module\n");
    folder.WithFile("program.zpm", ContentOf("/proc/self/exe")).WithFolder("folder.zpm");
    folder.WithLink("dangling.zpm", "missing").With("alpha");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    EXPECT_THAT(NamesOf(manager), ElementsAre("alpha"));
}

TEST(CPluginManager, follows_a_link_to_a_module)
{
    ModuleFolder folder;
    folder.With("alpha", "elsewhere").WithLink("link.zpm", "elsewhere");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    ASSERT_NE(manager.GetModule("alpha"), nullptr);
    EXPECT_EQ(manager.GetModule("alpha")->mPath, folder.PathOf("link.zpm"));
}

TEST(CPluginManager, waits_for_no_pipe_and_no_socket)
{
    ModuleFolder folder;
    ASSERT_EQ(mkfifo(folder.PathOf("pipe.zpm").c_str(), 0600), 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    folder.PathOf("socket.zpm").copy(address.sun_path, sizeof address.sun_path - 1);
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    folder.With("alpha");
    alarm(20);   // a pipe that is waited for ends the test
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    alarm(0);
    close(server);
    EXPECT_THAT(NamesOf(manager), ElementsAre("alpha"));
}

TEST(CPluginManager, does_not_so_much_as_open_a_pipe)
{
    ModuleFolder folder;   // whoever waits at the other end would take it for a partner
    ASSERT_EQ(mkfifo(folder.PathOf("pipe.zpm").c_str(), 0600), 0);
    const int watch = inotify_init1(IN_NONBLOCK);
    ASSERT_GE(inotify_add_watch(watch, folder.PathOf("pipe.zpm").c_str(), IN_OPEN), 0);
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    inotify_event event = {};
    EXPECT_EQ(read(watch, &event, sizeof event), -1);
    close(watch);
}

TEST(CPluginManager, leaves_out_a_file_that_it_may_not_read)
{
    ModuleFolder folder;
    folder.With("alpha").With("beta");
    std::filesystem::permissions(folder.Path(), std::filesystem::perms(0755));
    std::filesystem::permissions(folder.PathOf("alpha.zpm"), std::filesystem::perms::none);
    std::filesystem::permissions(folder.PathOf("beta.zpm"), std::filesystem::perms(0644));
    const uid_t user = geteuid();
    constexpr uid_t NOBODY = 65534;
    if (user == 0) {
        ASSERT_EQ(seteuid(NOBODY), 0);   // the superuser may read everything
    }
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    if (user == 0) {
        ASSERT_EQ(seteuid(user), 0);
    }
    EXPECT_THAT(NamesOf(manager), ElementsAre("beta"));
}

TEST(CPluginManager, leaves_out_a_module_for_another_machine)
{
    const std::string content = ContentOf(TestModule("alpha"));
    constexpr std::size_t CLASS = 4, BYTE_ORDER_MARK = 5, TYPE = 16, MACHINE = 18;
    for (const std::size_t place : { CLASS, BYTE_ORDER_MARK, TYPE, MACHINE }) {
        ModuleFolder folder;
        std::string changed = content;
        changed[place] = static_cast<char>(changed[place] ^ 3);
        folder.WithFile("changed.zpm", changed);
        AManager manager;
        manager.Load(folder.Path(), "*.zpm");
        EXPECT_EQ(manager.Count(), 0U) << "byte " << place;
    }
}

TEST(CPluginManager, traces_what_it_tries_and_why_something_is_not_loaded)
{
    ModuleFolder folder;
    folder.With("alpha").WithFile("text.zpm", std::string(100, ' ')).With("unresolved");
    const DebugCapture capture;
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    const std::string alpha = folder.PathOf("alpha.zpm");
    const std::string text = folder.PathOf("text.zpm");
    const std::string unresolved = folder.PathOf("unresolved.zpm");
    EXPECT_THAT(capture.TextsOf("plugin::CPluginManager::LoadModule"),
        ElementsAre("Try loading " + alpha, "Try loading " + text, "Error loading module " + text,
            "The reason: the file is not in ELF format", "Try loading " + unresolved,
            "Error loading module " + unresolved,
            AllOf(StartsWith("The reason: "), HasSubstr("undefined symbol"))));
    for (const auto & line : capture.Lines()) {
        const bool isOwn = line.mFunction.rfind("plugin::", 0) == 0;
        EXPECT_EQ(line.mGroup, isOwn ? GROUP_FRAMEWORK : GROUP_UTILITIES);
    }
}

TEST(CPluginManager, sets_no_error)
{
    ModuleFolder folder;
    folder.WithFile("text.zpm", "no module").With("no_name");
    AManager manager;
    manager.Load(folder.Path(), "*.zpm");
    manager.Load(folder.PathOf("missing"), "*.zpm");
    manager.GetModule("missing");
    EXPECT_FALSE(
        CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "", false).IsErrorSet(GROUP_FRAMEWORK, true));
}
