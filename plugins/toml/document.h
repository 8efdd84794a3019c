/// A whole file, understood: subsystems in order with their elements, built but not yet handed to anybody.

#ifndef TOMLCONFIG_DOCUMENT_H
#define TOMLCONFIG_DOCUMENT_H

#include "findings.h"
#include "typedkey.h"

#include <configtools/context.h>
#include <configtools/metadataprovider.h>
#include <kit/reading/filereader.h>

#include <toml++/toml.h>

#include <string>

namespace tomlconfig {

using namespace VrexZynConfigTools;

struct Document
{
    RecordList mRecords;   // destroyed after the elements
    kit::reading::FileContent mContent;
    toml::source_position mChipPlace;
};

/// The content of a file's text, read for this context. Findings, if any, mean that the result isn't to be used. Without
/// a provider, each key has to say its type; with one, the elements of others have its records.
Document ReadDocument(
    const std::string & text, CFindings & findings, IMetadataProvider * provider, IConfigContext & context);

}   // namespace tomlconfig

#endif
