/// Stands between a reader and a chip configuration: sees all that goes by, and lets nothing of another chip through.

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

/// A place where a reader has put a key.
struct Delivery
{
    std::string mName;    // the key's
    std::string mFile;    // the one that was read last of those that have it
    int mFileNumber;      // which one that was, from 1
    std::size_t mCount;   // how often that file has it
    bool operator==(const Delivery &) const = default;
};

/// Register it as observer of a reader in place of the chip, which gets everything through it. The library tells
/// nobody what it drops, and takes keys of different chips for keys of one; what was seen here shows both.
class CReadWatch : public VrexZynConfigTools::IConfigReaderObserver,
                   public VrexZynConfigTools::IConfigReaderElementObserver
{
public:
    /// The chip stays the caller's.
    explicit CReadWatch(VrexZynConfigTools::CChipConfig & chip);
    CReadWatch(const CReadWatch &) = delete;
    CReadWatch & operator=(const CReadWatch &) = delete;

    /// Says which file the next read is about.
    void StartFile(const std::string & file);

    /// The chip's label as the first file told it.
    std::string Chip() const;

    const std::set<Store> & Stores() const;

    const std::map<StoredKey, Delivery> & Deliveries() const;

    /// What was refused: files of another chip.
    const std::vector<Finding> & Refused() const;

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
