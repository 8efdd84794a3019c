/// Which plug-in reads and writes a file.
///
///     FindFormat("product.TOML")->mPlugIn;   // tomlconfig
///     FindFormat("product.txt", "toml");     // the same format
///     FindFormat("product.txt");             // null

#ifndef WORKBENCH_FORMATS_H
#define WORKBENCH_FORMATS_H

#include <string>

namespace workbench {

/// A file format with its plug-in. Both reader and writer of the plug-in take the path of the file as their argument.
struct Format
{
    /// As callers name it.
    const char * mName;

    /// In lower case, with its dot.
    const char * mExtension;

    /// As the plug-in calls itself.
    const char * mPlugIn;
};

/// The format of a file: the one called `name`; without a name by the extension of `path` without regard to case. Null
/// if none is known.
const Format * FindFormat(const std::string & path, const std::string & name = {});

/// The extensions of all formats, for messages: ".toml, .zimg".
std::string KnownExtensions();

/// The names of all formats, for messages: "toml, image".
std::string KnownFormats();

}   // namespace workbench

#endif
