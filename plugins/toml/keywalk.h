/// Follows the record of a key through the key's value in a file, and hands both to the element factory.

#ifndef TOMLCONFIG_KEYWALK_H
#define TOMLCONFIG_KEYWALK_H

#include "valuesource.h"

#include <configtools/elementfactory.h>
#include <configtools/metadata.h>

#include <cstddef>
#include <deque>
#include <string>
#include <vector>

namespace tomlconfig {

/// Stands between a record and the factory. Where the record comes to a value, this looks it up in the file by the names
/// on the way, lays it ready in the source, and lets the factory fetch it. What the factory complains of becomes a
/// finding at the value's place; the factory then goes on with the next one, so that all mistakes are found.
///
/// How often a struct of an array is walked is known from the file, so this repeats the walk itself. Records would ask
/// the factory, which ends the array with the last item that it read for a field.
class CKeyWalk : public IMetadataInspectorObserver
{
public:
    /// All of them stay the caller's and must outlive the walk.
    CKeyWalk(CElementFactory & factory, CValueSource & source, CFindings & findings, const toml::node & value,
        bool checks);

    void StartElement(const IMetadata & metadata) override;
    void EndElement() override;
    void StartStruct(const IMetadata & metadata) override;
    void EndStruct() override;
    void StartArrayItem() override;
    void EndArrayItem() override;
    void IntIndex(const CTableIndex & index) override;
    void EnumIndex(const CTableIndex & index) override;
    void Int(const IMetadata & metadata) override;
    void String(const IMetadata & metadata) override;
    void Enum(const IMetadata & metadata) override;
    bool InspectDetailAgain() override;
    void SetContextInfo(const std::string & key, int value) override;
    void SetContextInfo(const std::string & key, const std::string & value) override;

private:
    /// A struct on the way.
    struct Level
    {
        const toml::table * mTable;   // null where there is none, which has been told
        std::string mPath;            // the names on the way to it
    };

    /// An array on the way.
    struct Run
    {
        std::size_t mDepth;                    // the structs around it
        const IMetadata * mRecord = nullptr;   // of an array of structs, once it is known for one
        std::vector<const toml::node *> mItems;
        std::size_t mNext = 0;
    };

    using Callback = void (CElementFactory::*)(const IMetadata &);

    void Deliver(const IMetadata & record, Callback callback);
    void Judge(const IMetadata & record);
    void JudgeLength(const IMetadata & record);
    Finding About(const toml::node & node, const IMetadata & record, const std::string & code,
        const std::string & text) const;
    void Add(
        const toml::node & node, const IMetadata & record, const std::string & code, const std::string & text);
    Finding Explained(const std::string & error, const IMetadata & record) const;
    const toml::node * Find(const IMetadata & record);
    std::string Label(const IMetadata & record) const;
    std::vector<const toml::node *> Items(const IMetadata & record);
    std::vector<const toml::node *> StructItems(const IMetadata & record);
    std::vector<const toml::node *> ItemsOf(const toml::node & node);
    bool IsCountGood(const toml::node & node, const IMetadata & record, std::size_t count);
    bool FitsField(const toml::node & node, const IMetadata & record, std::size_t count);
    std::uint64_t HeldByField(const IMetadata & record) const;
    const toml::node * NextStruct(const IMetadata & record);

    CElementFactory & mFactory;
    CValueSource & mSource;
    CFindings & mFindings;
    CValueReader mValues;
    const toml::node & mValue;
    bool mChecks;
    int mWidth = 0;   // of the field that comes next, in bits
    std::vector<Level> mLevels;
    std::deque<Run> mRuns;
};

}   // namespace tomlconfig

#endif
