/// @file
/// The configuration of one subsystem in one device store: one layer of a chip's configuration.
///
/// @code
/// std::string RowOf(VrexZynConfigTools::CSubsystemConfig & subsystem)
/// {
///     VrexZynConfigTools::CElement & row = subsystem.Element("GainTable.3.7");
///     return row.IsValid() ? row.ToString() : "no such row";   // a miss is the null element
/// }
/// @endcode

#ifndef CONFIGTOOLS_SUBSYSTEMCONFIG_H
#define CONFIGTOOLS_SUBSYSTEMCONFIG_H

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class CChipConfig;
class CElementIndex;
class CWinnerLedger;

/// Holds elements in order of arrival, answers lookups by key number or key text, and takes elements straight from a
/// reader. It owns the elements and a private copy of the context that describes it. What a lookup returns stays the
/// subsystem's; a miss is the null element, whose `IsValid` is false. No operation sets an error.
///
/// A key text is a name (compared without case) or a number with base detection ("0x10", "16", "020"), and for a table
/// row ".index" pieces behind it: "NAME.3.7". A piece that is no number counts as 0.
class CONFIGTOOLS_EXPORT CSubsystemConfig : public IConfigReaderElementObserver, public IWritable
{
public:
    /// An empty subsystem with a clone of `context`, and with its type. `OnElementFound` of `observer`, which stays the
    /// caller's and may be null, is called for each element newly added; it must outlive the subsystem.
    CSubsystemConfig(CBaseContext & context, IConfigReaderElementObserver * observer);
    CSubsystemConfig(const CSubsystemConfig &) = delete;
    CSubsystemConfig & operator=(const CSubsystemConfig &) = delete;

    /// Deletes the elements and the context.
    ~CSubsystemConfig() override;

    /// Writes the elements in order until one fails. Elements with the number 0 are passed over, intended: they
    /// carry no key that a writer could use.
    bool Write(IConfigWriter & writer, IConfigContext & context) override;

    /// The sum of the sizes of all elements, in bytes.
    std::uint64_t Size();

    /// The subsystem type, from the tag "subsystemtype" of the context given at construction; a later change of the tag
    /// has no effect here.
    unsigned short Type();

    /// The element with this number, table rows included; of several the one added last. The null element if there is
    /// none.
    CElement & Element(std::uint32_t id);

    /// The element with this key text. Of several it is the first, where the form above returns the last, intended:
    /// tools that work by number read a key again and expect the newest, tools that work by text show the first. A
    /// text without indices finds no table rows. The null element if there is none.
    CElement & Element(const std::string & key);

    /// All elements in order of arrival; list and elements stay the subsystem's.
    const std::list<CElement *> & Elements();

    /// The elements with this number, table rows included, in order of arrival; they stay the subsystem's.
    const std::list<CElement *> Elements(std::uint32_t id);

    /// Whether the first element with this number has no payload bytes; true also if there is no such element. Further
    /// elements with the number play no part.
    bool ElementsIsEmpty(std::uint32_t id);

    /// Removes and deletes every element that key and indices select. With null, plain elements and what the text's
    /// own indices name; else the rows with these indices (and plain elements, whatever the indices, intended: a plain
    /// element is the same as any row of its number). The number is looked up by its decimal text, intended: above
    /// 2147483647 that is no number but a name, and what is removed are the elements of that name.
    ///@{
    void RemoveElement(std::uint32_t id, const std::vector<std::uint32_t> * indices);
    void RemoveElement(const std::string & key, const std::vector<std::uint32_t> * indices);
    ///@}

    /// The subsystem's own context, which stays the subsystem's. Changes are allowed: a chip configuration finds the
    /// subsystem by its tags.
    CBaseContext & Context();

    /// Copies the tags of `source` into the subsystem's context; without `overwrite` only those that it doesn't have.
    void MergeContext(CBaseContext & source, bool overwrite);

private:
    friend class CChipConfig;
    using ElementList = std::list<CElement *>;

    /// As a chip makes its subsystems: `winners`, which stays the chip's and may be null, is notified of elements
    /// that go.
    CSubsystemConfig(CBaseContext & context, IConfigReaderElementObserver * observer, CWinnerLedger * winners);

    /// Takes ownership of `element` and is always true. With indices in the context ("num_indices" present, and the
    /// values of all tags whose key contains "index") the element becomes a table row. The tag "insertmode" decides
    /// about one that is there already: "overwrite" replaces it, "new" keeps it and deletes the newcomer, anything
    /// else adds a further one.
    bool OnElementFound(CElement * element, IConfigContext & context) override;

    std::vector<std::uint32_t> CollectIndices(IConfigContext & context);

    /// True if the element was stored; `element` is empty then.
    bool InsertOrReplaceElement(std::unique_ptr<CElement> & element, IConfigContext & context);
    bool GetNameAndIndices(const std::string & key, std::string & name, std::vector<std::uint32_t> & indices);
    ElementList::iterator ElementIterator(std::uint32_t id, const std::vector<std::uint32_t> * indices);
    ElementList::iterator ElementIterator(const std::string & key, const std::vector<std::uint32_t> * indices);
    bool RemoveElement(ElementList::iterator position);

    struct Query;
    Query ParseKey(const std::string & key, const std::vector<std::uint32_t> * indices);
    CElement * WalkToLast(std::uint32_t id) const;
    CElement * FirstSelected(const std::string & key);
    const CElement * FirstWithId(std::uint32_t id) const;
    ElementList::iterator FindSame(CElement & element);
    void Append(std::unique_ptr<CElement> & element);
    void ReplaceElement(ElementList::iterator position, std::unique_ptr<CElement> & successor);
    void OnElementGone(const CElement * element, CElement * successor);

    unsigned short mType;
    ElementList mElements;                      // owned
    CBaseContext * mContext;                    // owned
    IConfigReaderElementObserver * mObserver;   // not owned, may be null
    std::unique_ptr<CElementIndex> mIndex;      // finds in mElements what a walk would find
    CWinnerLedger * mWinners;                   // not owned, notified of elements that go; null outside a chip
    bool mDiscards = false;                     // keeps nothing of what it is given
};

}   // namespace VrexZynConfigTools

#endif
