/// @file
/// Contexts: small sets of text tags that accompany every operation. A context says which chip, subsystem, device,
/// store and layer an operation concerns, and contains the options of a read or a write.
///
/// Tag keys are lower case: any case is lowered on the way in. An empty value means no tag, so that an absent and an
/// empty tag are the same. Numbers are decimal text and are read back as `atoi` reads them: what is no number reads as
/// 0. No operation here fails or sets an error. A context is used by one thread at a time.
///
/// @code
/// bool IsOneOfBt(const std::string & text)   // "subsystemtype=1;layernumber=4"
/// {
///     VrexZynConfigTools::CBaseContext context("options");
///     context.Parse(text);
///     return context.TagMatches("SubsystemType", 1);
/// }
/// @endcode

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

/// The context that every operation gets. The order of the virtual operations is a binary contract.
class CONFIGTOOLS_EXPORT IConfigContext
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IConfigContext() = default;
    IConfigContext(const IConfigContext &) = default;
    IConfigContext & operator=(const IConfigContext &) { return *this; }
    ///@}

    /// The name that the context was made with; for people, no operation depends on it.
    virtual const std::string Name() = 0;

    /// Whether this is a context that stores tags: false for the null context only.
    virtual bool IsValid() = 0;

    /// Deletes the tag, if there is one.
    virtual void SetTag(const std::string & key) = 0;

    /// Stores the number as decimal text, in place of an earlier value.
    virtual void SetTag(const std::string & key, int value) = 0;

    /// Stores `value` as it is, in place of an earlier value; an empty `value` deletes the tag.
    virtual void SetTag(const std::string & key, const std::string & value) = 0;

    /// Sets the value of every tag whose key contains `keyPart` anywhere, without regard to case; an empty `value`
    /// deletes these tags. An empty `keyPart` is contained in every key. Makes no new tag.
    virtual void SetTags(const std::string & keyPart, const std::string & value) = 0;

    /// The value of the tag; an empty text if there is none. Reading makes no tag.
    virtual std::string GetTag(const std::string & key) = 0;

    /// The values, not the keys, of all tags whose key contains `keyPart`, in the byte order of the keys: that of
    /// "index10" comes before that of "index2". An empty `keyPart` is contained in every key.
    virtual std::list<std::string> GetTags(const std::string & keyPart) = 0;

    /// Whether the value of the tag, read as a number, is `value`. An absent tag doesn't match 0; a text that is no
    /// number, such as "abc", does, intended as numbers are read so everywhere.
    virtual bool TagMatches(const std::string & key, int value) = 0;

    /// Whether the value of the tag is `value`, without regard to case. With an empty `value` it is the test for the
    /// absence of the tag.
    virtual bool TagMatches(const std::string & key, const std::string & value) = 0;

    /// A copy with the tags of this context. It belongs to the caller, who deletes it.
    virtual IConfigContext * Clone() = 0;

    /// Sets tags from a text such as "key=value;key=value". Nothing is trimmed, and no character escapes a ";". A
    /// piece without "=" is skipped; everything behind the first "=" is the value, which may contain further ones; an
    /// empty value deletes the tag, an empty key is a key. Tags that the text doesn't name stay.
    virtual void Parse(const std::string & text) = 0;

    virtual ~IConfigContext() = default;
};

/// The context that stores tags. `CZynContext` adds typed accessors; plug-ins may derive their own.
class CONFIGTOOLS_EXPORT CBaseContext : public IConfigContext
{
public:
    /// A context without tags.
    explicit CBaseContext(const std::string & name);

    /// A context with the tag "subsystemtype".
    CBaseContext(const std::string & name, int subsystemType);

    /// Copies and moves take the name, the tags and the change count; a move leaves the source without name and tags.
    ///@{
    CBaseContext(const CBaseContext & other);
    CBaseContext(CBaseContext && other) noexcept;
    CBaseContext & operator=(const CBaseContext & other);
    CBaseContext & operator=(CBaseContext && other) noexcept;
    ///@}

    const std::string Name() override;
    bool IsValid() override;
    void SetTag(const std::string & key) override;
    void SetTag(const std::string & key, int value) override;
    void SetTag(const std::string & key, const std::string & value) override;
    void SetTags(const std::string & keyPart, const std::string & value) override;
    std::string GetTag(const std::string & key) override;
    std::list<std::string> GetTags(const std::string & keyPart) override;

    /// As in the interface. Both forms look at the stored tags only: a tag that a derived class computes in its
    /// `GetTag` doesn't match, intended: computing it for each comparison would cost more than the comparison.
    ///@{
    bool TagMatches(const std::string & key, int value) override;
    bool TagMatches(const std::string & key, const std::string & value) override;
    ///@}

    /// A copy that belongs to the caller, with the name, the tags and the change count.
    IConfigContext * Clone() override;
    void Parse(const std::string & text) override;
    ~CBaseContext() override;

    /// The tag "subsystemtype", a `SubSystemTypeEnum` value; 0 also if it is absent.
    ///@{
    void SetSubsystemType(int type);
    int SubsystemType();
    ///@}

    /// A copy of all stored tags, by key in lower case.
    std::map<std::string, std::string> Tags() const;

protected:
    /// What `Name` returns.
    std::string mName;
    /// The tags: keys in lower case, and no empty value.
    std::map<std::string, std::string> mTags;
    /// The number of writes to the tags, modulo 2 to the power of 32. `CZynContext` looks at it before it returns the
    /// key that it has computed last, so a derived class that changes the tags itself counts here.
    std::uint32_t mChangeCount = 0;

private:
    friend class CContextFacts;

    void OnTagsChanged(const std::string * key) noexcept;

    std::unique_ptr<IContextFollower>
        mFollower;   // what the layered store has worked out of the tags; null at first
};

/// The context without tags, for where a context is required and none applies. It ignores every write. `TagMatches` is
/// false also for an empty value, intended: it has no tags to be absent.
class CONFIGTOOLS_EXPORT CNullContext : public IConfigContext
{
public:
    /// The one object, which must not be deleted. It exists before any other static object of a tool.
    static CNullContext & Ref() { return mInstance; }

    /// Copies may be made. A move copies too, so that it can't empty the one object.
    ///@{
    CNullContext(const CNullContext & other) = default;
    CNullContext & operator=(const CNullContext & other) = default;
    ///@}

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
