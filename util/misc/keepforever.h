/// For what is forgotten without being freed, as the contract of a class asks: a leak checker is not to report it.

#ifndef MISC_KEEPFOREVER_H
#define MISC_KEEPFOREVER_H

#if defined(__SANITIZE_ADDRESS__)
#define ZYN_CHECKS_LEAKS
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZYN_CHECKS_LEAKS
#endif
#endif

#ifdef ZYN_CHECKS_LEAKS
#include <sanitizer/lsan_interface.h>
#endif

namespace VrexZynConfigTools {

/// Marks what `pointer` leads to as no leak; without a leak checker it does nothing. Null is allowed.
inline void KeepForEver([[maybe_unused]] const void * pointer) noexcept
{
#ifdef ZYN_CHECKS_LEAKS
    __lsan_ignore_object(pointer);
#endif
}

}   // namespace VrexZynConfigTools

#endif
