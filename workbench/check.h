/// Compares what a session has read with its metadata.
///
///     session.Read(files);
///     const bool isSound = workbench::Check(session);   // the sink has what is wrong

#ifndef WORKBENCH_CHECK_H
#define WORKBENCH_CHECK_H

#include "session.h"

namespace workbench {

/// Reports what a read itself doesn't: values that have no layer, are lost or never win; with metadata also keys that
/// it doesn't know, keys whose own type isn't that of the metadata, values out of range that were read without their
/// record, and a chip that the metadata doesn't know. True if nothing is wrong.
bool Check(CSession & session);

}   // namespace workbench

#endif
