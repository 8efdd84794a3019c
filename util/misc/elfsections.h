/// The section table tells linkers and debuggers what the segments and the dynamic section tell the loader. Where a
/// module still has one, damage in either shows as a contradiction.

#ifndef MISC_ELFSECTIONS_H
#define MISC_ELFSECTIONS_H

namespace elfcheck {

class CElfFile;

/// Whether nothing contradicts the section table; true for a module without one.
bool FitsSections(const CElfFile & file);

}   // namespace elfcheck

#endif
