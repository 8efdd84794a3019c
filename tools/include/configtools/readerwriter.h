/// @file
/// The plug-in boundary: what reader and writer plug-ins implement, and the callbacks that a reader drives.
///
/// The order of the virtual operations is a binary contract; the destructor is always last. Nothing here throws by
/// design: a plug-in reports a failure by an error in the message group `GROUP_FRAMEWORK`. Results of `Read` and of the
/// calls on a writer are never looked at. All calls are made on the caller's thread, and none is concurrent.
///
/// A reader of one subsystem, without error handling:
///
/// @code
/// #include <configtools/elements.h>
/// #include <configtools/zyncontext.h>
///
/// class CExampleReader : public VrexZynConfigTools::IConfigReader
/// {
/// public:
///     void SetObserver(VrexZynConfigTools::IConfigReaderObserver & observer) override { mObserver = &observer; }
///     void SetElementObserver(VrexZynConfigTools::IConfigReaderElementObserver & observer) override
///     {
///         mElementObserver = &observer;
///     }
///     void SetMetadataProvider(VrexZynConfigTools::IMetadataProvider &) override {}
///
///     void Read(VrexZynConfigTools::IConfigContext & context) override
///     {
///         VrexZynConfigTools::CZynContext bt;
///         bt.SetSubsystemType(1);
///         bt.SetDevice(15);
///         bt.SetStore(1);
///         mObserver->OnReadStarted(*this, context);
///         mObserver->OnSubsystemFound(*this, bt);   // the observer calls SetElementObserver
///         mElementObserver->OnElementFound(   // which takes the element over
///             new VrexZynConfigTools::CElementString(258, "DeviceName", "box", false, true), bt);
///         mObserver->OnSubsystemCompleted(*this, bt);
///         mObserver->OnReadEnded(*this, context);
///     }
///
/// private:
///     VrexZynConfigTools::IConfigReaderObserver * mObserver = nullptr;
///     VrexZynConfigTools::IConfigReaderElementObserver * mElementObserver = nullptr;
/// };
/// @endcode

#ifndef CONFIGTOOLS_READERWRITER_H
#define CONFIGTOOLS_READERWRITER_H

#include <configtools/export.h>

#include <cstdint>
#include <string>

namespace VrexZynConfigTools {

class CElement;
class IConfigContext;
class IConfigReader;
class IMetadataProvider;
class IPayload;

/// Receives the structure of a read. `CChipConfig` is the library's own observer; a tool may put one in front of it
/// that passes all calls on. The reader and the context are valid during a call only.
class CONFIGTOOLS_EXPORT IConfigReaderObserver
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IConfigReaderObserver() = default;
    IConfigReaderObserver(const IConfigReaderObserver &) = default;
    IConfigReaderObserver & operator=(const IConfigReaderObserver &) { return *this; }
    ///@}

    /// Called once, before anything else, with the context that was given to `Read`.
    virtual void OnReadStarted(IConfigReader & reader, IConfigContext & context) = 0;

    /// Called at the start of each subsystem. The context describes the subsystem: the tags "subsystemtype", "device"
    /// and "store" name it, and its other tags become the subsystem's own. The observer may call
    /// `reader.SetElementObserver` here; `CChipConfig` does so for each subsystem.
    virtual void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) = 0;

    /// Called at the end of each subsystem, after its last element, with the same context.
    virtual void OnSubsystemCompleted(IConfigReader & reader, IConfigContext & context) = 0;

    /// Called once, after the last subsystem, with the context that was given to `Read`. A reader that fails on the way
    /// still calls it, so that what was delivered is layered.
    virtual void OnReadEnded(IConfigReader & reader, IConfigContext & context) = 0;

    virtual ~IConfigReaderObserver() = default;
};

/// Receives the elements of a read: a `CSubsystemConfig`, set on the reader for each subsystem.
class CONFIGTOOLS_EXPORT IConfigReaderElementObserver
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IConfigReaderElementObserver() = default;
    IConfigReaderElementObserver(const IConfigReaderElementObserver &) = default;
    IConfigReaderElementObserver & operator=(const IConfigReaderElementObserver &) { return *this; }
    ///@}

    /// Hands over one element. A `CSubsystemConfig`, which is what a reader is given, takes ownership in every case,
    /// also if it deletes the element at once because of the tag "insertmode", and returns true: the reader doesn't
    /// touch the element again. For a table row the context has the tags "num_indices", "index1" and so on; the
    /// reader removes them before the next element.
    virtual bool OnElementFound(CElement * element, IConfigContext & context) = 0;

    virtual ~IConfigReaderElementObserver() = default;
};

/// A source of configuration: a file, a device. A tool gets one from `CReaderWriterFactory::CreateReader`, sets its
/// observer and, where the source needs it, its metadata provider, and calls `Read`. A reader may be an `IStoreManager`
/// too; then `CChipConfig` asks it for the sizes of its stores at the end of the read.
class CONFIGTOOLS_EXPORT IConfigReader
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IConfigReader() = default;
    IConfigReader(const IConfigReader &) = default;
    IConfigReader & operator=(const IConfigReader &) { return *this; }
    ///@}

    /// Sets the receiver of the structure, in place of an earlier one. It stays the caller's and must outlive the read.
    virtual void SetObserver(IConfigReaderObserver & observer) = 0;

    /// Sets the receiver of the elements, which stays the caller's and must outlive the read. It is replaced while a
    /// read runs: a reader uses the one that was set last, and looks it up anew after each `OnSubsystemFound`;
    /// otherwise the elements of one subsystem arrive in another.
    virtual void SetElementObserver(IConfigReaderElementObserver & observer) = 0;

    /// Sets the metadata by which raw values are interpreted. The provider stays the caller's and must outlive the
    /// reader and every element that it delivered, since these point at its records. A reader whose source describes
    /// itself may ignore it.
    virtual void SetMetadataProvider(IMetadataProvider & provider) = 0;

    /// Performs the whole read and drives the observers before it returns: `OnReadStarted`; for each subsystem
    /// `OnSubsystemFound`, `OnElementFound` for each element, `OnSubsystemCompleted`; at the end `OnReadEnded`. A
    /// failure leaves an error in `GROUP_FRAMEWORK`; clear that group before the call to recognise it afterwards.
    /// Without an observer it reads nothing.
    virtual void Read(IConfigContext & context) = 0;

    virtual ~IConfigReader() = default;
};

/// A sink of configuration. A tool gets one from `CReaderWriterFactory::CreateWriter` and gives it to
/// `CChipConfig::Write`, or to the `Write` of a subsystem, an element or a payload.
///
/// The calls nest:
///  - `StartWrite`;
///  - for each subsystem `StartSubsystem`, its elements, and `EndSubsystem`;
///  - for each element `StartElement`, `WriteKeyId`, for a table row `WriteNamedData` several times, `WritePayload` for
///    each payload, and `EndElement`;
///  - at the end `EndWrite`.
///
/// A filtered write of nothing calls `EndSubsystem` once without a start, intended: a writer of that call has to accept
/// it, as tools have always done.
///
/// Contexts, payloads and data are valid during a call only.
class CONFIGTOOLS_EXPORT IConfigWriter
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IConfigWriter() = default;
    IConfigWriter(const IConfigWriter &) = default;
    IConfigWriter & operator=(const IConfigWriter &) { return *this; }
    ///@}

    /// Never called by the library. A tool may call it before the write, with the options of the write in the context.
    virtual void PrepareWriter(IConfigContext & context) = 0;

    /// Called before anything else, with the context of the caller of `Write`. After an error in `GROUP_FRAMEWORK` left
    /// here, `EndWrite` follows at once.
    virtual void StartWrite(IConfigContext & context) = 0;

    /// Called last, with the same context, also after a failed write: the place to close a file. An error left here
    /// makes `Write` fail too.
    virtual void EndWrite(IConfigContext & context) = 0;

    /// Begins a subsystem. In a full write the context is the subsystem's own, with its chip, type, device, store and
    /// layer. In a filtered one it is a copy of the caller's with "subsystemtype" and "layernumber" set; device, store
    /// and chip are the caller's.
    virtual void StartSubsystem(IConfigContext & context) = 0;

    /// Ends a subsystem, with the context of its start.
    virtual void EndSubsystem(IConfigContext & context) = 0;

    /// Begins an element. While a raw element, or a row that doesn't fit its metadata, is written, the context's tag
    /// "rawmode" is "true".
    virtual void StartElement(IConfigContext & context) = 0;

    /// Ends an element, also one whose payloads failed.
    virtual void EndElement(IConfigContext & context) = 0;

    /// Called right after `StartElement`, with the number of the element's key.
    virtual void WriteKeyId(std::uint32_t psId, IConfigContext & context) = 0;

    /// Called for a table row: once with the name "num_indices" and an 8-byte count, then for each index, in order,
    /// with the name "index" and its 4-byte value. Both are unsigned and in the machine's byte order; `size` is in
    /// bytes.
    virtual void WriteNamedData(
        const std::string & name, const void * data, std::uint32_t size, IConfigContext & context) = 0;

    /// Writes one payload, which stays its element's. A complex payload arrives whole: a writer that needs its parts
    /// calls `CComplexPayload::WriteFields` or walks `GetFields`. An element without payloads causes no call, and a
    /// `CElementString` passes its first payload only.
    virtual void WritePayload(IPayload & payload, IConfigContext & context) = 0;

    virtual ~IConfigWriter() = default;
};

/// The pull side of value construction: `CElementFactory` walks the metadata of a key and asks this object for the next
/// raw value, in stream order. A reader plug-in implements it. An implementation that is an
/// `IMetadataLayoutInspectorObserver` too is informed of the structure of each key as the walk goes on.
///
/// Each operation sets `value`, which is 0 or empty at the first call for a key, and returns whether the source goes
/// on. The factory uses the value in either case: a source that knows its end returns false with its last value, so
/// that an array ends there. A failure leaves an error in `GROUP_FRAMEWORK`; then no element is built from the
/// number.
class CONFIGTOOLS_EXPORT IElementFactorySource
{
public:
    /// Copies nothing: an interface has no state.
    ///@{
    IElementFactorySource() = default;
    IElementFactorySource(const IElementFactorySource &) = default;
    IElementFactorySource & operator=(const IElementFactorySource &) { return *this; }
    ///@}

    /// Delivers the next integer, in the low bytes of `value`. `typeName` is the internal type of the key's record;
    /// "uint32" for a table index and "uint16" for each word of a packed struct. For a table index `indexNumber`
    /// points at the number of indices read so far, 0 at the first; for all other values it is null.
    virtual bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) = 0;

    /// Delivers the next text or octet string. `indexNumber` is always null.
    virtual bool NextString(std::string & value, std::uint16_t * indexNumber) = 0;

    /// Delivers the number of the next enumerator. `indexNumber` is always null.
    virtual bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) = 0;

    virtual ~IElementFactorySource() = default;
};

}   // namespace VrexZynConfigTools

#endif
