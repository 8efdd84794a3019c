/// The whole configuration of one chip in memory: subsystems in stores, the stores stacked into layers.
///
/// One thread at a time: the library takes no lock and has no thread-local state. An object isn't shared between
/// threads, and even a lookup uses its context. Separate chips may be used on separate threads, one after the other.

#ifndef CONFIGTOOLS_CHIPCONFIG_H
#define CONFIGTOOLS_CHIPCONFIG_H

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>
#include <configtools/types.h>

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CStoreIndex;
class CSubsystemConfig;
class CWinnerLedger;

/// Looks up elements by a context that says subsystem and layer.
class CONFIGTOOLS_EXPORT IElementProvider
{
public:
    IElementProvider() = default;
    IElementProvider(const IElementProvider &) = default;
    IElementProvider & operator=(const IElementProvider &) { return *this; }

    virtual const CElement & Element(const std::string & name, IConfigContext & context) const = 0;
    virtual const CElement & Element(std::uint32_t id, IConfigContext & context) const = 0;
    virtual ~IElementProvider() = default;
};

/// The layered store. Register it as observer of a reader (`SetObserver`) and read: at the end of the read the stores
/// are sorted by device ("rom", "otp", "mtp", "smem", "fw_cfg", "eeprom", from bottom to top), numbered as layers from
/// 1, and every subsystem gets the tag "layernumber". Several reads into one object add up.
///
/// Owns subsystems, stores and elements; what lookups return stays the chip's. The layering reports no errors, only
/// effects: a store of any other device has no layer; more than 15 stores leave no subsystem at all; subsystems that
/// come to the same chip, type and layer collapse into the last. All intended.
class CONFIGTOOLS_EXPORT CChipConfig : public IConfigReaderObserver,
                                       public IConfigReaderElementObserver,
                                       public IWritable,
                                       public IElementProvider
{
public:
    CChipConfig();
    CChipConfig(const CChipConfig &) = delete;
    CChipConfig & operator=(const CChipConfig &) = delete;
    ~CChipConfig() override;

    /// The subsystem that the context's tags "store", "subsystemtype" and "device" name, made if there is none; the
    /// chip is not compared, intended. A context that is no `CBaseContext` leaves the error "the passed context is
    /// invalid" and gives a subsystem that discards what it gets and belongs to no chip.
    CSubsystemConfig & CreateAndAddSubsystem(IConfigContext & context);

    /// The element in the subsystem and layer that the context names ("chip", "subsystemtype", "layernumber"), or the
    /// null element. With the tag "layerfilter" the layers from there down to 1 are searched (to 0 if "layernumber" is
    /// 0) and the topmost that holds the element answers. The filter is clamped to 1 to 15, and its sign doesn't
    /// count: junk, 0 and negative ones are 1, intended. An empty name looks for number 0.
    const CElement & Element(const std::string & name, IConfigContext & context) const override;
    const CElement & Element(std::uint32_t id, IConfigContext & context) const override;

    /// By subsystem key: the by-store form until a read has ended, then the by-layer form.
    const std::map<std::string, CSubsystemConfig *> & Subsystems() const;

    /// In layer order after a read.
    const std::list<CStoreInfo *> & Stores() const;

    /// `CSubsystemConfig::MergeContext` on every subsystem, in the order of their keys.
    void MergeSubsystemsContext(CBaseContext & source, bool overwrite);

    /// Deletes all subsystems and stores. What a filtered read has won goes on competing with later filtered reads,
    /// intended, but isn't written any more.
    void Clear();

    /// `Clear`, then the store list of a chip: 15 stores of the device "eeprom", or none if the low byte is 0x36.
    void PrepareForChip(unsigned short chip);

    /// Whether any subsystem at all has elements; or one of a type; or a non-empty element with a number (see
    /// `CSubsystemConfig::ElementsIsEmpty`); or that in one layer. With a type and no layer, subsystems without a layer
    /// number count and those of layer 0 don't, intended: layer 0 is where default values are, and they are not set.
    bool HasElements();
    bool HasElements(SubSystemTypeEnum type);
    bool HasElements(std::uint32_t id, SubSystemTypeEnum type);
    bool HasElements(std::uint32_t id, SubSystemTypeEnum type, unsigned short layer);

    /// Whether subsystems of different types are there.
    bool IsHeterogeneous();

    /// Writes every subsystem, by type and then layer; or, with the tag "layerfilter", only the elements that won a
    /// filtered read, by type, layer and key text. True when all went out and no error stands in `GROUP_FRAMEWORK`.
    /// A full write leaves in each subsystem's context the tags of `context` that it didn't have, intended.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

private:
    struct FilteredEntry
    {
        std::int8_t layer;
        CElement * element;   // not owned; null once the subsystem has lost it
    };

    void OnReadStarted(IConfigReader & reader, IConfigContext & context) override;
    void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) override;
    void OnSubsystemCompleted(IConfigReader & reader, IConfigContext & context) override;
    void OnReadEnded(IConfigReader & reader, IConfigContext & context) override;
    bool OnElementFound(CElement * element, IConfigContext & context) override;

    const CElement & GetElement(const std::string * name, std::uint32_t id, IConfigContext & context) const;
    bool WriteAllLayers(IConfigWriter & writer, IConfigContext & context);
    bool WriteFilteredLayers(IConfigWriter & writer, IConfigContext & context);

    friend class CWinnerLedger;
    static CSubsystemConfig & DiscardingSubsystem();
    CSubsystemConfig * FindSubsystem(IConfigContext & context);
    struct KeySearch;
    template <typename VisitT>
    void VisitSelected(IConfigContext & context, VisitT isAnswer) const;
    void SyncStoresFromCaller(IConfigReader & reader, IConfigContext & context);
    static void MergeStoreInfo(std::list<CStoreInfo *> & stores, const CStoreInfo & store);
    void OrderStoresByDevice();
    bool AssignLayers();
    void AdoptLayerKeys(bool isLayered);
    void StoreWinner(const std::string & key, std::int8_t layer, CElement * element);

    std::map<std::string, CSubsystemConfig *> mSubsystems;   // owned
    std::map<std::string, FilteredEntry>
        mFilteredDictionary;                      // subsystem type "|" key text to the winner so far
    std::list<CStoreInfo *> mStores;              // owned
    std::unique_ptr<CWinnerLedger> mWinners;      // which entries hold which element
    std::vector<CSubsystemConfig *> mForgotten;   // dropped by a read and kept for ever
    std::unique_ptr<CStoreIndex> mStoreIndex;     // finds in mSubsystems what a walk would find
    std::uint64_t mStamp;                         // identifies this chip's present set of subsystems
};

}   // namespace VrexZynConfigTools

#endif
