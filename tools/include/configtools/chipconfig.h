/// @file
/// The whole configuration of one chip in memory: subsystems in stores, the stores stacked into layers.
///
/// @code
/// #include <configtools/zyncontext.h>
///
/// std::string WinnerOf(VrexZynConfigTools::IConfigReader & reader, const std::string & key)
/// {
///     using namespace VrexZynConfigTools;
///     CChipConfig chip;
///     CZynContext context;
///     reader.SetObserver(chip);
///     reader.Read(context);   // fills the chip and numbers the layers
///     context.SetSubsystemType(SUBSYSTEM_BT);
///     context.SetTag("layerfilter", 15);   // from the top layer down
///     return chip.Element(key, context).ToString();   // "invalid" if no layer has the key
/// }
/// @endcode
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

/// Looks up elements by a context that names subsystem and layer. `CChipConfig` is one; a tool may implement another
/// for `CHelper`. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IElementProvider
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IElementProvider() = default;
    IElementProvider(const IElementProvider &) = default;
    IElementProvider & operator=(const IElementProvider &) { return *this; }
    ///@}

    /// The element with this key text, which stays the provider's, or the null element.
    virtual const CElement & Element(const std::string & name, IConfigContext & context) const = 0;

    /// The element with this number, which stays the provider's, or the null element.
    virtual const CElement & Element(std::uint32_t id, IConfigContext & context) const = 0;
    virtual ~IElementProvider() = default;
};

/// The layered store. Register it as observer of a reader (`SetObserver`) and read: at the end of the read the stores
/// are sorted by device ("rom", "otp", "mtp", "smem", "fw_cfg", "eeprom", from bottom to top), numbered as layers from
/// 1, and every subsystem gets the tag "layernumber". Several reads into one object add up.
///
/// Owns subsystems, stores and elements; what lookups return stays the chip's, and is valid until it is cleared or the
/// element is replaced. A lookup that finds nothing returns the null element.
///
/// The layering reports no errors. It has effects instead, intended, because tools read whatever a device has and check
/// afterwards:
///  - a store of any other device is dropped, and its subsystems have no layer;
///  - more than 15 stores leave no subsystem at all;
///  - of subsystems with the same chip, type and layer, such as two without a layer, the last one remains.
class CONFIGTOOLS_EXPORT CChipConfig : public IConfigReaderObserver,
                                       public IConfigReaderElementObserver,
                                       public IWritable,
                                       public IElementProvider
{
public:
    /// A chip without subsystems and stores.
    CChipConfig();
    CChipConfig(const CChipConfig &) = delete;
    CChipConfig & operator=(const CChipConfig &) = delete;

    /// Deletes subsystems, stores and elements. Readers must not use the chip as observer any more.
    ~CChipConfig() override;

    /// The subsystem that the context's tags "store", "subsystemtype" and "device" name, made if there is none; it
    /// stays the chip's. The tag "chip" is not compared, intended: the files of one product may name it or not. A
    /// context that is no `CBaseContext` leaves the error "the passed context is invalid" in `GROUP_CORE_CLASSES`,
    /// and the result is a subsystem that discards what it gets and belongs to no chip.
    CSubsystemConfig & CreateAndAddSubsystem(IConfigContext & context);

    /// The element in the subsystem and layer that the context names with "chip", "subsystemtype" and "layernumber",
    /// or the null element. With the tag "layerfilter" the layers from that number down to 1 are searched (to 0 if
    /// "layernumber" is 0), and the element is that of the topmost layer that has one.
    ///
    /// A filter above 15 counts as 15. One that is no number, 0 or negative counts as 1, intended: negative filters
    /// are for reads, where they select the lowest layer. An empty name searches for the number 0. The context is not
    /// changed.
    ///@{
    const CElement & Element(const std::string & name, IConfigContext & context) const override;
    const CElement & Element(std::uint32_t id, IConfigContext & context) const override;
    ///@}

    /// The subsystems, which stay the chip's, by subsystem key (see `CZynContext`): the by-store form until a read has
    /// ended, then the by-layer form.
    const std::map<std::string, CSubsystemConfig *> & Subsystems() const;

    /// The stores, which stay the chip's: in layer order after a read, so that the first one is layer 1.
    const std::list<CStoreInfo *> & Stores() const;

    /// Calls `CSubsystemConfig::MergeContext` on every subsystem, in the order of their keys.
    void MergeSubsystemsContext(CBaseContext & source, bool overwrite);

    /// Deletes all subsystems and stores. The winners of a filtered read go on competing with later filtered reads,
    /// intended, since a tool may clear between the files of one product; but they are not written any more.
    void Clear();

    /// Does the same as `Clear`, and makes the store list of a chip, whose number is given: 15 stores of the device
    /// "eeprom", or none if the low byte is 0x36.
    void PrepareForChip(unsigned short chip);

    /// Whether any subsystem at all has elements; or one of a type; or a non-empty element with a number (see
    /// `CSubsystemConfig::ElementsIsEmpty`); or that in one layer. With a type and no layer, subsystems without a layer
    /// number count and those of layer 0 don't, intended: layer 0 is where default values are, and they are not set.
    ///@{
    bool HasElements();
    bool HasElements(SubSystemTypeEnum type);
    bool HasElements(std::uint32_t id, SubSystemTypeEnum type);
    bool HasElements(std::uint32_t id, SubSystemTypeEnum type, unsigned short layer);
    ///@}

    /// Whether there are subsystems of different types.
    bool IsHeterogeneous();

    /// Writes every subsystem, by type and then layer; or, with the tag "layerfilter", only the elements that won a
    /// filtered read, by type, layer and key text. `IConfigWriter` says which calls the writer gets. True if
    /// everything was written and `GROUP_FRAMEWORK` has no error; false, without a call on the writer and with the
    /// error "the passed context is invalid" in `GROUP_CORE_CLASSES`, if the context is no `CBaseContext`.
    ///
    /// The winners are those of reads whose context had a "layerfilter" too; after other reads nothing is written. A
    /// full write leaves in each subsystem's context the tags of `context` that it didn't have, intended: writers
    /// find the options of the write there.
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
    friend class CHelper;
    bool FindTopmostValue(const std::string & name, IConfigContext & context, int & layer,
        std::vector<IPayload *> & payloads) const;
    struct KeySearch;
    template <typename VisitT>
    void VisitSelected(IConfigContext & context, VisitT isAnswer) const;
    void SyncStoresFromCaller(IConfigReader & reader, IConfigContext & context);
    CStoreInfo & MergeStoreInfo(const CStoreInfo & store, CStoreInfo * known);
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
