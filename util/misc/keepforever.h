/// For what is forgotten without being freed: a leak checker finds it here, and needs no suppression.

#ifndef MISC_KEEPFOREVER_H
#define MISC_KEEPFOREVER_H

namespace VrexZynConfigTools {

/// Keeps `pointer` in a list that is made on first use and never destroyed. Null is kept too, to no effect. Without
/// memory some spare places serve; when those are used up the pointer is lost, as if this had not been called.
void KeepForEver(const void * pointer) noexcept;

}   // namespace VrexZynConfigTools

#endif
