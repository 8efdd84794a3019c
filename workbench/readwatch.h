/// Between a reader and a chip configuration: notes all that goes by, and passes nothing of another chip on.
///
///     VrexZynConfigTools::CChipConfig chip;
///     workbench::CReadWatch watch(chip);
///     watch.StartFile("product.toml");
///     reader.SetObserver(watch);
///     reader.Read(context);
///     Report(workbench::LossesOfRead(chip, watch));

#ifndef WORKBENCH_READWATCH_H
#define WORKBENCH_READWATCH_H

#include "key.h"

#include <configtools/chipconfig.h>
#include <configtools/readerwriter.h>

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace workbench {

/// What readers have delivered for a key in a store.
struct Delivery
{
    /// The name of the key.
    std::string mName;

    /// Of the files that have it the one that was read last, and which one of all files that was, from 1.
    std::string mFile;
    int mFileNumber;

    /// How often that file has it.
    std::size_t mCount;

    bool operator==(const Delivery &) const = default;
};

/// Register it as observer of a reader in place of the chip, which gets everything through it. The library drops some
/// keys without a word, and takes keys of different chips for keys of one; what was noted here shows both.
class CReadWatch : public VrexZynConfigTools::IConfigReaderObserver,
                   public VrexZynConfigTools::IConfigReaderElementObserver
{
public:
    /// The chip remains the caller's.
    explicit CReadWatch(VrexZynConfigTools::CChipConfig & chip);
    CReadWatch(const CReadWatch &) = delete;
    CReadWatch & operator=(const CReadWatch &) = delete;

    /// Says which file the next read is about.
    void StartFile(const std::string & file);

    /// The chip's label as the first file has it; empty before that.
    std::string Chip() const;

    /// The stores that were found, also those that got no layer.
    const std::set<Store> & Stores() const;

    /// Every key that was passed on, also those that the chip has lost since.
    const std::map<StoredKey, Delivery> & Deliveries() const;

    /// What was refused: files of another chip ("other-chip"), once each.
    const std::vector<Finding> & Refused() const;

    /// The operations that readers call; see `IConfigReaderObserver`.
    void OnReadStarted(
        VrexZynConfigTools::IConfigReader & reader, VrexZynConfigTools::IConfigContext & context) override;
    void OnSubsystemFound(
        VrexZynConfigTools::IConfigReader & reader, VrexZynConfigTools::IConfigContext & context) override;
    void OnSubsystemCompleted(
        VrexZynConfigTools::IConfigReader & reader, VrexZynConfigTools::IConfigContext & context) override;
    void OnReadEnded(
        VrexZynConfigTools::IConfigReader & reader, VrexZynConfigTools::IConfigContext & context) override;

    /// Takes ownership and is always true, as a subsystem.
    bool OnElementFound(
        VrexZynConfigTools::CElement * element, VrexZynConfigTools::IConfigContext & context) override;

private:
    bool IsOfThisChip(const std::string & chip);

    VrexZynConfigTools::IConfigReaderObserver & mObserver;   // the chip, by the operations that readers call
    VrexZynConfigTools::CChipConfig & mChip;
    VrexZynConfigTools::IConfigReaderElementObserver * mTarget =
        nullptr;   // the subsystem being read; null: refused
    std::string mFile;
    int mFileNumber = 0;
    std::string mFirstFile;              // the one that told the label
    std::optional<std::string> mLabel;   // none before the first subsystem
    Store mStore = {};
    std::set<Store> mStores;
    std::map<StoredKey, Delivery> mDeliveries;
    std::vector<Finding> mRefused;
};

}   // namespace workbench

#endif
