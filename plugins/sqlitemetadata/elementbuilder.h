/// Makes elements of default values by the library's element factory.

#ifndef SQLITEMETADATA_ELEMENTBUILDER_H
#define SQLITEMETADATA_ELEMENTBUILDER_H

#include <configtools/context.h>
#include <configtools/elements.h>
#include <kit/reporting/channel.h>

#include <memory>
#include <string>

namespace VrexZynConfigTools {
class IMetadata;
}

namespace sqlitemetadata {

struct DefaultRow;

/// Sets the errors that stand in the message channel aside for as long as it lives: the factory clears them.
class CElementBuilder
{
public:
    /// `readContext` says whether values are checked ("nodatacheck").
    explicit CElementBuilder(VrexZynConfigTools::IConfigContext & readContext);

    /// The element of a row, which points at the record. Null with a reason; without one where the checks are off and
    /// the row holds an enumerator that the key doesn't have.
    std::unique_ptr<VrexZynConfigTools::CElement> Build(
        const VrexZynConfigTools::IMetadata & record, const DefaultRow & row, std::string & reason);

private:
    kit::reporting::CErrorsSetAside mErrors;
    VrexZynConfigTools::CBaseContext mContext;
};

}   // namespace sqlitemetadata

#endif
