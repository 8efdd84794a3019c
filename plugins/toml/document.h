/// A whole file, understood: subsystems in order with their elements, built but not yet handed to anybody.

#ifndef TOMLCONFIG_DOCUMENT_H
#define TOMLCONFIG_DOCUMENT_H

#include <toml++/toml.h>

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/metadata.h>
#include <configtools/metadataprovider.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tomlconfig {

using namespace VrexZynConfigTools;

class CFindings;

/// Elements point at their records, so these must outlive them.
using RecordList = std::vector<std::unique_ptr<CMetadata>>;

struct Key
{
    std::unique_ptr<CElement> mElement;
    std::vector<std::uint32_t> mIndices;   // of a table row; empty for a plain key
    toml::source_position mPlace;
};

struct Subsystem
{
    std::optional<int> mType;   // empty where the file says "", for a tag that isn't set
    std::optional<int> mDevice;
    std::optional<int> mStore;
    std::vector<Key> mKeys;
};

struct Document
{
    RecordList mRecords;   // destroyed after the elements
    std::string mChip;
    toml::source_position mChipPlace;
    std::vector<Subsystem> mSubsystems;
};

/// The content of a file's text, read for this context. Findings, if any, mean that the result isn't to be used. Without
/// a provider, each key has to say its type; with one, the elements of others have its records.
Document ReadDocument(
    const std::string & text, CFindings & findings, IMetadataProvider * provider, IConfigContext & context);

/// One message for each key that stands twice in one subsystem of one store.
std::vector<std::string> FindDuplicates(const Document & document, const std::string & path);

}   // namespace tomlconfig

#endif
