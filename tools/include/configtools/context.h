/// Contexts: small bags of text tags that travel with every operation. A context says which chip, subsystem, device,
/// store and layer an operation concerns, and carries the options of a read or a write.
///
/// Tag keys are lower case (any case is lowered on the way in) and an empty value means no tag: an absent and an
/// empty tag can't be told apart. Numbers travel as decimal text and are read back as `atoi` reads them, so junk
/// reads as 0. No operation here fails or sets an error. A context is used by one thread at a time.

#ifndef CONFIGTOOLS_CONTEXT_H
#define CONFIGTOOLS_CONTEXT_H

#include <configtools/export.h>

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <string>

namespace VrexZynConfigTools {

class IContextFollower;

/// What every operation gets. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IConfigContext
{
public:
    IConfigContext() = default;
    IConfigContext(const IConfigContext &) = default;

    /// Does nothing: there is nothing to copy.
    IConfigContext & operator=(const IConfigContext &) { return *this; }

    virtual const std::string Name() = 0;

    /// False for the null context only.
    virtual bool IsValid() = 0;

    /// Deletes the tag.
    virtual void SetTag(const std::string & key) = 0;

    /// Stores the number in decimal.
    virtual void SetTag(const std::string & key, int value) = 0;

    /// Stores `value` with its case kept; an empty value deletes the tag.
    virtual void SetTag(const std::string & key, const std::string & value) = 0;

    /// Sets the value of every tag whose key contains `keyPart` anywhere; an empty value deletes them. An empty
    /// `keyPart` is contained in every key. Makes no new tag.
    virtual void SetTags(const std::string & keyPart, const std::string & value) = 0;

    /// The value, or an empty text.
    virtual std::string GetTag(const std::string & key) = 0;

    /// The values of all tags whose key contains `keyPart`, in the byte order of the keys ("index10" before "index2").
    virtual std::list<std::string> GetTags(const std::string & keyPart) = 0;

    /// Whether the value, read as a number, is `value`. An absent tag does not pass for 0, junk such as "abc" does.
    virtual bool TagMatches(const std::string & key, int value) = 0;

    /// Whether the value is `value`, without regard to case. An empty `value` asks for absence.
    virtual bool TagMatches(const std::string & key, const std::string & value) = 0;

    /// A copy that belongs to the caller, who deletes it.
    virtual IConfigContext * Clone() = 0;

    /// Sets tags from "key=value;key=value". Nothing is trimmed and nothing escapes a ";"; a piece without "=" is
    /// skipped, an empty value deletes, the value may hold further "=". Tags that the text doesn't name stay.
    virtual void Parse(const std::string & text) = 0;

    virtual ~IConfigContext() = default;
};

/// The working context, with a tag store.
class CONFIGTOOLS_EXPORT CBaseContext : public IConfigContext
{
public:
    explicit CBaseContext(const std::string & name);

    /// Sets the tag "subsystemtype" too.
    CBaseContext(const std::string & name, int subsystemType);

    /// Copies and moves take the name, the tags and the change count; moving leaves the source without name and tags.
    CBaseContext(const CBaseContext & other);
    CBaseContext(CBaseContext && other) noexcept;
    CBaseContext & operator=(const CBaseContext & other);
    CBaseContext & operator=(CBaseContext && other) noexcept;

    const std::string Name() override;
    bool IsValid() override;
    void SetTag(const std::string & key) override;
    void SetTag(const std::string & key, int value) override;
    void SetTag(const std::string & key, const std::string & value) override;
    void SetTags(const std::string & keyPart, const std::string & value) override;
    std::string GetTag(const std::string & key) override;
    std::list<std::string> GetTags(const std::string & keyPart) override;

    /// Both forms look at the stored tags only: what a derived class computes in its `GetTag` can't be matched,
    /// intended.
    bool TagMatches(const std::string & key, int value) override;
    bool TagMatches(const std::string & key, const std::string & value) override;

    /// The clone has the name, the tags and the change count.
    IConfigContext * Clone() override;
    void Parse(const std::string & text) override;
    ~CBaseContext() override;

    /// The tag "subsystemtype"; 0 also when it is absent.
    void SetSubsystemType(int type);
    int SubsystemType();

    /// A copy of all stored tags.
    std::map<std::string, std::string> Tags() const;

protected:
    std::string mName;
    std::map<std::string, std::string> mTags;   // keys in lower case, no empty value
    std::uint32_t mChangeCount = 0;             // counts the writes to the tags, and wraps

private:
    friend class CContextFacts;

    void OnTagsChanged(const std::string * key) noexcept;

    std::unique_ptr<IContextFollower>
        mFollower;   // what the layered store has worked out of the tags; null at first
};

/// The context that holds nothing, for where a context is required and none applies. It ignores every write;
/// `TagMatches` is false also for an empty value.
class CONFIGTOOLS_EXPORT CNullContext : public IConfigContext
{
public:
    /// The one object; it must not be destroyed. Copies may be made.
    static CNullContext & Ref() { return mInstance; }

    // Moving copies: it must not empty the one object.
    CNullContext(const CNullContext & other) = default;
    CNullContext & operator=(const CNullContext & other) = default;

    const std::string Name() override;
    bool IsValid() override;
    void SetTag(const std::string & key) override;
    void SetTag(const std::string & key, int value) override;
    void SetTag(const std::string & key, const std::string & value) override;
    void SetTags(const std::string & keyPart, const std::string & value) override;
    std::string GetTag(const std::string & key) override;
    std::list<std::string> GetTags(const std::string & keyPart) override;
    bool TagMatches(const std::string & key, int value) override;
    bool TagMatches(const std::string & key, const std::string & value) override;
    IConfigContext * Clone() override;
    void Parse(const std::string & text) override;

private:
    CNullContext();

    std::string mName;
    static CNullContext mInstance;
};

}   // namespace VrexZynConfigTools

#endif
