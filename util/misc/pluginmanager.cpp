#include <misc/pluginmanager.h>

#include <misc/fileutil.h>
#include <misc/keepforever.h>

#include <messages/trace.h>

#include <algorithm>
#include <memory>
#include <optional>

namespace plugin {

namespace {

using namespace VrexZynConfigTools;

constexpr GroupEnum MESSAGE_GROUP = GROUP_FRAMEWORK;

struct ModuleCloser
{
    void operator()(platform::ModuleHandle handle) const { platform::CloseModule(handle); }
};
using OpenedModule = std::unique_ptr<void, ModuleCloser>;

/// Plug-in code was built by others: what it throws counts as null.
const char * Call(platform::EntryPoint entryPoint)
{
    try {
        return reinterpret_cast<const char * (*)()>(entryPoint)();
    } catch (...) {
        return nullptr;
    }
}

/// What a text entry point answers; null is no answer.
std::optional<std::string> TextOf(platform::EntryPoint entryPoint)
{
    const char * const text = Call(entryPoint);
    return text != nullptr ? std::optional<std::string>(text) : std::nullopt;
}

}   // namespace

CPluginManager::CPluginManager(
    const std::string & nameFunction, const std::string & signatureFunction, const std::string & signature)
    : mNameFunction(nameFunction)
    , mSignatureFunction(signatureFunction)
    , mSignature(signature)
{
    ZYN_SENTRY("plugin::CPluginManager::CPluginManager");
}

CPluginManager::~CPluginManager()
{
    ZYN_SENTRY("plugin::CPluginManager::~CPluginManager");
    UnloadAll();
}

void CPluginManager::Load(const std::string & directory, const std::string & filePattern)
{
    ZYN_SENTRY("plugin::CPluginManager::Load");

    UnloadAll();
    GetModules(directory, filePattern);
    // A copy, since the code of a module may call back here while it is loaded.
    const std::list<std::string> files = mFiles;
    for (const std::string & path : files)
        LoadModule(path);
}

void CPluginManager::UnloadAll()
{
    ZYN_SENTRY("plugin::CPluginManager::UnloadAll");

    // The tables are emptied first, since the code of a module may call back here while it is unloaded.
    std::map<std::string, Module *> modules;
    modules.swap(mModules);
    mFiles.clear();
    for (const auto & entry : modules) {
        platform::CloseModule(entry.second->mHandle);
        delete entry.second;
    }
}

std::uint64_t CPluginManager::Count()
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("plugin::CPluginManager::Count", result);
    return result = mModules.size();
}

std::uint64_t CPluginManager::ModulesName(std::list<std::string> & names)
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("plugin::CPluginManager::ModulesName", result);

    std::list<std::string> found;
    for (const auto & entry : mModules)
        found.push_back(entry.first);
    names.splice(names.end(), found);
    return result = Count();
}

Module * CPluginManager::GetModule(const std::string & name)
{
    ZYN_SENTRY("plugin::CPluginManager::GetModule");
    const auto found = mModules.find(name);
    return found != mModules.end() ? found->second : nullptr;
}

bool CPluginManager::ModuleExists(const std::string & name)
{
    bool result = false;
    ZYN_SENTRY_RESULT("plugin::CPluginManager::ModuleExists", result);
    return result = std::any_of(
               mModules.begin(), mModules.end(), [&name](const auto & entry) { return entry.first == name; });
}

void CPluginManager::LoadModule(const std::string & path)
{
    ZYN_SENTRY("plugin::CPluginManager::LoadModule");
    ZYN_TRACE(3, "Try loading %s", path.c_str());

    platform::LoadFailure failure = {};
    OpenedModule opened(platform::OpenModule(path, failure));
    if (!opened) {
        ZYN_TRACE(3, "Error loading module %s", path.c_str());
        ZYN_TRACE(3, "The reason: %s", platform::TextOf(failure));
        return;
    }
    const auto nameFunction = platform::FindEntryPoint(opened.get(), mNameFunction.c_str());
    if (nameFunction == nullptr)
        return;
    if (HasWrongSignature(opened.get())) {
        // Not unloaded and not recorded, intended: what it started or handed out on loading may still run its code.
        static_cast<void>(opened.release());
        return;
    }
    const auto name = TextOf(nameFunction);
    if (!name)
        return;   // without a name it can't be asked for, as if it lacked the entry point

    auto record = std::make_unique<Module>(Module{ opened.get(), *name, path });
    Module *& place = mModules[*name];
    if (place != nullptr)
        KeepForEver(place);                // forgotten together with its module, which stays loaded, intended
    place = record.release();              // the table owns it now
    static_cast<void>(opened.release());   // the record's now
}

void CPluginManager::GetModules(const std::string & directory, const std::string & filePattern)
{
    ZYN_SENTRY("plugin::CPluginManager::GetModules");

    std::list<std::string> files;
    fileutil::GetFiles(directory, filePattern, files);
    mFiles.splice(mFiles.end(), files);
}

/// Only a module that presents a wrong signature is refused: one without the entry point is welcome, intended.
bool CPluginManager::HasWrongSignature(platform::ModuleHandle handle) const
{
    bool result = false;
    ZYN_SENTRY_RESULT("plugin::CPluginManager::HasWrongSignature", result);

    if (mSignatureFunction.empty())
        return result = false;
    const auto signatureFunction = platform::FindEntryPoint(handle, mSignatureFunction.c_str());
    return result = signatureFunction != nullptr && TextOf(signatureFunction) != mSignature;
}

}   // namespace plugin
