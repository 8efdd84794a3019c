/// Finds the shared modules of a directory, decides which of them are plug-ins and owns those. What a plug-in is
/// for is its user's business. Nothing here sets an error: a module that fails is left out.

#ifndef MISC_PLUGINMANAGER_H
#define MISC_PLUGINMANAGER_H

#include <misc/platform.h>

#include <cstdint>
#include <list>
#include <map>
#include <string>

namespace plugin {

/// One loaded plug-in.
struct Module
{
    platform::ModuleHandle mHandle;
    std::string mName;   // the plug-in's name, not the file's
    std::string mPath;   // as it was loaded
};

class CPluginManager
{
public:
    /// The entry points that return a module's name and its signature, both `const char * ()`, and the signature
    /// it must present. Without a signature function every module with a name is accepted.
    CPluginManager(
        const std::string & nameFunction, const std::string & signatureFunction, const std::string & signature);
    CPluginManager(const CPluginManager &) = delete;
    CPluginManager & operator=(const CPluginManager &) = delete;
    ~CPluginManager();

    /// Replaces all that was loaded by the plug-ins among the files of `directory` that match `filePattern`. Of
    /// several with one name the file listed last, in byte order, wins.
    void Load(const std::string & directory, const std::string & filePattern);

    /// Unloads and forgets everything. What plug-in code made must be gone before.
    void UnloadAll();

    /// Number of plug-ins.
    std::uint64_t Count();

    /// Appends the plug-in names in ascending byte order; returns `Count()`.
    std::uint64_t ModulesName(std::list<std::string> & names);

    /// The record of the plug-in; stays the manager's. Null if there is none of this name, case included.
    Module * GetModule(const std::string & name);
    bool ModuleExists(const std::string & name);

private:
    void LoadModule(const std::string & path);
    void GetModules(const std::string & directory, const std::string & filePattern);
    bool HasWrongSignature(platform::ModuleHandle handle) const;

    std::string mNameFunction;
    std::string mSignatureFunction;
    std::string mSignature;
    std::map<std::string, Module *> mModules;   // owned, by plug-in name
    std::list<std::string> mFiles;              // candidates of the latest Load
};

}   // namespace plugin

#endif
