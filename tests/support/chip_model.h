/// A chip's configuration as plain data, with the rules of its reads, lookups and writes word for word.

#ifndef TESTS_SUPPORT_CHIP_MODEL_H
#define TESTS_SUPPORT_CHIP_MODEL_H

#include <support/model_context.h>
#include <support/walk_model.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <list>
#include <locale>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

struct ModelStore
{
    int mDevice;
    std::uint16_t mId;
    std::uint32_t mSize = 0xFFFFFFFF;
    std::int32_t mFree = -1;
    std::uint16_t mLinked = 0;
    std::uint16_t mOrder = 0;
    bool mPaired = false;

    auto Fields() const { return std::tie(mDevice, mId, mSize, mFree, mLinked, mOrder, mPaired); }
    bool operator==(const ModelStore & other) const { return Fields() == other.Fields(); }
};

struct ModelSubsystem
{
    const void * mTwin = nullptr;   // the library's
    ModelContext mContext;
    WalkModel mElements;
};

/// The order of a full write: by type, then by layer.
inline std::uint32_t ModelSubsysToInt(const std::string & key)
{
    std::vector<std::string> fields;
    std::istringstream stream(key);
    for (std::string field; std::getline(stream, field, '|');) {
        if (!field.empty())
            fields.push_back(field);
    }
    std::int32_t type = 0;
    std::int32_t layer = 0;
    ModelStringToInteger(fields.at(2), type);
    ModelStringToInteger(fields.at(3), layer);
    return (static_cast<std::uint32_t>(type) << 24) + static_cast<std::uint32_t>(layer);
}

class ChipModel
{
public:
    using SubsystemPointer = std::shared_ptr<ModelSubsystem>;
    struct Entry
    {
        std::int8_t mLayer;
        int mUid;   // NULL_ELEMENT once the element has gone
    };
    struct Winner
    {
        int mType;
        int mLayer;
        std::string mName;
        int mUid;
        bool operator<(const Winner & other) const
        {
            return std::tie(mType, mLayer, mName) < std::tie(other.mType, other.mLayer, other.mName);
        }
    };

    std::map<std::string, SubsystemPointer> mSubsystems;
    std::map<std::string, Entry> mFiltered;
    std::list<ModelStore> mStores;
    std::vector<SubsystemPointer> mDropped;   // can't be reached any more, and are never freed

    SubsystemPointer CreateAndAdd(const ModelContext & context)
    {
        for (const auto & [key, subsystem] : mSubsystems) {
            const ModelContext & own = subsystem->mContext;
            if (own.TagMatches("store", context.GetTag("store")) &&
                own.TagMatches("subsystemtype", context.GetTag("subsystemtype")) &&
                own.TagMatches("device", context.GetTag("device")))
                return subsystem;
        }
        SubsystemPointer & subsystem = mSubsystems[context.GetTag("subsystemkeybystore")];
        if (subsystem == nullptr) {
            subsystem = std::make_shared<ModelSubsystem>();
            subsystem->mContext = context.Clone();
            WalkModel & elements = subsystem->mElements;
            elements.mOnAdded = [this](
                                    const ModelElement & e, const ModelContext & c) { OnElementFound(e, c); };
            elements.mOnReplaced = [this](int from, int to) { Repoint(from, to); };
            elements.mOnRemoved = [this](int uid) { Repoint(uid, NULL_ELEMENT); };
        }
        return subsystem;
    }

    SubsystemPointer OnSubsystemFound(const ModelContext & context)
    {
        SubsystemPointer subsystem = CreateAndAdd(context);
        const auto store = static_cast<std::uint16_t>(ModelAtoi(context.GetTag("store")));
        const int device = ModelAtoi(context.GetTag("device"));
        if (device >= 1 && store != 0 && mStores.size() < 15) {
            ModelStore found{ device, store };
            found.mOrder = static_cast<std::uint16_t>(mStores.size() + 1);
            MergeStore(found);
        }
        return subsystem;
    }

    void OnReadEnded(const std::vector<ModelStore> & reported)
    {
        for (const ModelStore & store : reported)
            MergeStore(store);
        OrderStores();
        const bool fits = mStores.size() <= 15;
        int layer = 1;
        for (const ModelStore & store : mStores) {
            if (!fits)
                break;
            for (const auto & [key, subsystem] : mSubsystems) {
                ModelContext & own = subsystem->mContext;
                if (own.TagMatches("device", store.mDevice) && own.TagMatches("store", int{ store.mId }))
                    own.SetTag("layernumber", std::to_string(layer));
            }
            ++layer;
        }
        std::map<std::string, SubsystemPointer> rekeyed;
        for (const auto & [key, subsystem] : mSubsystems) {
            SubsystemPointer noPlace = subsystem;
            SubsystemPointer & place =
                fits ? rekeyed[subsystem->mContext.GetTag("subsystemkeybylayer")] : noPlace;
            if (place != nullptr)
                mDropped.push_back(place);
            place = subsystem;
        }
        mSubsystems = rekeyed;
    }

    int Element(const std::string * name, std::uint32_t id, const ModelContext & context) const
    {
        const std::string filter = context.GetTag("layerfilter");
        int result = NULL_ELEMENT;
        const auto lookIn = [&](const std::string & key) {
            const auto found = mSubsystems.find(key);
            if (found == mSubsystems.end())
                return;
            const WalkModel & elements = found->second->mElements;
            result = name != nullptr && !name->empty() ? elements.Element(*name) : elements.Element(id);
        };
        if (filter.empty()) {
            lookIn(context.GetTag("subsystemkeybylayer"));
            return result;
        }
        std::istringstream stream(filter);
        stream.imbue(std::locale::classic());
        std::int16_t layer = 0;
        stream >> layer;
        if (!stream || layer < 1 || layer > 15)
            layer = layer > 15 ? 15 : 1;
        const int lowest = context.TagMatches("layernumber", 0) ? 0 : 1;
        ModelContext copy = context.Clone();
        for (; layer >= lowest && result == NULL_ELEMENT; --layer) {
            copy.SetTag("layernumber", std::to_string(layer));
            lookIn(copy.GetTag("subsystemkeybylayer"));
        }
        return result;
    }

    void Clear()
    {
        for (const auto & [key, subsystem] : mSubsystems) {
            for (const ModelElement & element : subsystem->mElements.All())
                Repoint(element.mUid, NULL_ELEMENT);
        }
        mSubsystems.clear();
        mStores.clear();
    }

    void PrepareForChip(std::uint16_t chip)
    {
        Clear();
        for (std::uint16_t i = 1; i <= 15 && (chip & 0xFF) != 0x36; ++i) {
            ModelStore store{ 15, i };
            store.mOrder = i;
            mStores.push_back(store);
        }
    }

    template <typename TestT>
    bool AnySubsystem(TestT test) const
    {
        return std::any_of(mSubsystems.begin(), mSubsystems.end(),
            [&test](const auto & entry) { return test(entry.second->mContext, entry.second->mElements); });
    }

    void Merge(const ModelContext & source, bool overwrite)
    {
        for (const auto & [key, subsystem] : mSubsystems)
            MergeInto(*subsystem, source, overwrite);
    }
    static void MergeInto(ModelSubsystem & subsystem, const ModelContext & source, bool overwrite)
    {
        for (const auto & [key, value] : source.mTags) {
            if (overwrite || subsystem.mContext.TagMatches(key, ""))
                subsystem.mContext.SetTag(key, value);
        }
    }

    /// The subsystems in the order of a full write.
    std::vector<SubsystemPointer> InWriteOrder() const
    {
        std::vector<std::pair<std::string, SubsystemPointer>> entries(mSubsystems.begin(), mSubsystems.end());
        if (entries.size() > 1)
            std::stable_sort(entries.begin(), entries.end(), [](const auto & a, const auto & b) {
                return ModelSubsysToInt(a.first) < ModelSubsysToInt(b.first);
            });
        std::vector<SubsystemPointer> subsystems;
        for (const auto & [key, subsystem] : entries)
            subsystems.push_back(subsystem);
        return subsystems;
    }

    /// Whether the type of each winner is a plain number, so that it is told what a filtered write does.
    bool WinnersAreClear() const
    {
        return std::all_of(mFiltered.begin(), mFiltered.end(), [](const auto & entry) {
            const std::string type = entry.first.substr(0, entry.first.find('|'));
            return !type.empty() && type.find_first_not_of("0123456789") == std::string::npos;
        });
    }

    /// The winners that live, in the order of a filtered write.
    std::set<Winner> Winners() const
    {
        std::set<Winner> winners;
        for (const auto & [key, entry] : mFiltered) {
            const auto bar = key.find('|');
            if (entry.mUid == NULL_ELEMENT)
                continue;
            const Winner winner{ std::atoi(key.substr(0, bar).c_str()), entry.mLayer, key.substr(bar + 1),
                entry.mUid };
            winners.erase(winner);   // of "02|key" and "2|key" the later one remains
            winners.insert(winner);
        }
        return winners;
    }

private:
    void MergeStore(const ModelStore & store)
    {
        for (ModelStore & known : mStores) {
            if (known.mDevice != store.mDevice || known.mId != store.mId)
                continue;
            if (known.mSize == 0xFFFFFFFF)
                known.mSize = store.mSize;
            if (known.mFree == -1)
                known.mFree = store.mFree;
            if (!known.mPaired)
                known.mPaired = store.mPaired;
            return;
        }
        mStores.push_back(store);
    }

    void OrderStores()
    {
        std::list<ModelStore> ordered;
        for (const int device : { 0, 1, 4, 2, 14, 15 })
            std::copy_if(mStores.begin(), mStores.end(), std::back_inserter(ordered),
                [device](const ModelStore & store) { return store.mDevice == device; });
        mStores = ordered;
    }

    void OnElementFound(const ModelElement & element, const ModelContext & context)
    {
        const std::string filter = context.GetTag("layerfilter");
        if (filter.empty())
            return;
        const int lfv = static_cast<std::int8_t>(ModelAtoi(filter));
        const auto elv = static_cast<std::int8_t>(ModelAtoi(context.GetTag("layernumber")));
        const std::string key = context.GetTag("subsystemtype") + "|" + KeyString(element);
        if (std::abs(lfv) < elv)
            return;
        const auto found = mFiltered.find(key);
        if (found == mFiltered.end())
            mFiltered[key] = { elv, element.mUid };
        else if (std::abs(lfv) >= found->second.mLayer &&
                 (lfv >= 0 ? elv >= found->second.mLayer : elv < found->second.mLayer))
            found->second = { elv, element.mUid };
    }

    static std::string KeyString(const ModelElement & element)
    {
        std::string text = element.mView.mName;
        if (element.mView.mIsRow && element.mView.mIndices.empty())
            text += ".";
        for (const std::uint32_t index : element.mView.mIndices)
            text += "." + std::to_string(index);
        return text;
    }

    void Repoint(int from, int to)
    {
        for (auto & [key, entry] : mFiltered) {
            if (entry.mUid == from)
                entry.mUid = to;
        }
    }
};

}   // namespace VrexZynConfigTools::support

#endif
