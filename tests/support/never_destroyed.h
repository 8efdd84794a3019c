/// For objects whose contract forbids destroying them, such as the second owner of shared buffers.

#ifndef TESTS_SUPPORT_NEVER_DESTROYED_H
#define TESTS_SUPPORT_NEVER_DESTROYED_H

#include <vector>

namespace VrexZynConfigTools::support {

/// Keeps an object reachable to the end of the process, so that a leak checker has nothing to report.
template <typename T>
T & NeverDestroyed(T * object)
{
    static auto * const kept = new std::vector<T *>;
    kept->push_back(object);
    return *object;
}

}   // namespace VrexZynConfigTools::support

#endif
