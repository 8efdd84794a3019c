/// What the library is measured against: two standard hash maps that hold the same pointers.

#ifndef BENCH_YARDSTICK_H
#define BENCH_YARDSTICK_H

#include <configtools/elements.h>

#include <cstdint>
#include <string>
#include <unordered_map>

namespace bench {

struct Maps
{
    std::unordered_map<std::uint32_t, VrexZynConfigTools::CElement *> mById;
    std::unordered_map<std::string, VrexZynConfigTools::CElement *> mByName;

    const VrexZynConfigTools::CElement * Find(std::uint32_t id) const { return Find(mById, id); }
    const VrexZynConfigTools::CElement * Find(const std::string & name) const { return Find(mByName, name); }

private:
    template <typename MapT>
    static const VrexZynConfigTools::CElement * Find(const MapT & map, const typename MapT::key_type & key)
    {
        const auto found = map.find(key);
        return found != map.end() ? found->second : nullptr;
    }
};

}   // namespace bench

#endif
