/// The plug-in boundary: what reader and writer plug-ins implement and the callbacks that a reader drives.
///
/// The order of the virtual operations is a binary contract; the destructor is always last. Nothing throws: a plug-in
/// reports a failure by an error in the message group `GROUP_FRAMEWORK`, and results of `Read` and of writer calls
/// are never looked at.

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

/// Receives the structure of a read.
class CONFIGTOOLS_EXPORT IConfigReaderObserver
{
public:
    IConfigReaderObserver() = default;
    IConfigReaderObserver(const IConfigReaderObserver &) = default;
    IConfigReaderObserver & operator=(const IConfigReaderObserver &) { return *this; }

    /// Once, before anything else.
    virtual void OnReadStarted(IConfigReader & reader, IConfigContext & context) = 0;

    /// At the start of each subsystem; the context names its type, device and store. The observer may call
    /// `reader.SetElementObserver` here.
    virtual void OnSubsystemFound(IConfigReader & reader, IConfigContext & context) = 0;

    /// At the end of each subsystem.
    virtual void OnSubsystemCompleted(IConfigReader & reader, IConfigContext & context) = 0;

    /// Once, after the last subsystem.
    virtual void OnReadEnded(IConfigReader & reader, IConfigContext & context) = 0;

    virtual ~IConfigReaderObserver() = default;
};

/// Receives the elements of a read.
class CONFIGTOOLS_EXPORT IConfigReaderElementObserver
{
public:
    IConfigReaderElementObserver() = default;
    IConfigReaderElementObserver(const IConfigReaderElementObserver &) = default;
    IConfigReaderElementObserver & operator=(const IConfigReaderElementObserver &) { return *this; }

    /// Hands over one element. A `CSubsystemConfig`, which is what a reader is given, takes ownership in every case
    /// (so the reader doesn't touch the element again) and returns true.
    virtual bool OnElementFound(CElement * element, IConfigContext & context) = 0;

    virtual ~IConfigReaderElementObserver() = default;
};

/// A source of configuration: a file, a device.
class CONFIGTOOLS_EXPORT IConfigReader
{
public:
    IConfigReader() = default;
    IConfigReader(const IConfigReader &) = default;
    IConfigReader & operator=(const IConfigReader &) { return *this; }

    /// The receivers stay the caller's and must outlive the read.
    virtual void SetObserver(IConfigReaderObserver & observer) = 0;

    /// Replaced while a read runs: fetch the element observer anew after each `OnSubsystemFound`, or the elements
    /// of one subsystem land in another.
    virtual void SetElementObserver(IConfigReaderElementObserver & observer) = 0;

    /// The metadata by which raw values are interpreted; the provider stays the caller's.
    virtual void SetMetadataProvider(IMetadataProvider & provider) = 0;

    /// Performs the whole read and drives the observers before it returns: `OnReadStarted`; for each subsystem
    /// `OnSubsystemFound`, `OnElementFound` for each element, `OnSubsystemCompleted`; at the end `OnReadEnded`.
    virtual void Read(IConfigContext & context) = 0;

    virtual ~IConfigReader() = default;
};

/// A sink of configuration. The calls nest: `StartWrite`; per subsystem `StartSubsystem` ... `EndSubsystem`; inside
/// it per element `StartElement`, `WriteKeyId`, for a table row `WriteNamedData`, the payloads, `EndElement`; at last
/// `EndWrite`. A filtered write of nothing brings one `EndSubsystem` without a start; bear it.
class CONFIGTOOLS_EXPORT IConfigWriter
{
public:
    IConfigWriter() = default;
    IConfigWriter(const IConfigWriter &) = default;
    IConfigWriter & operator=(const IConfigWriter &) { return *this; }

    /// Never called by the framework; a tool may call it before `StartWrite`, with the options of the write.
    virtual void PrepareWriter(IConfigContext & context) = 0;

    /// Before anything else, with the caller's context. An error left here makes the write end with `EndWrite`.
    virtual void StartWrite(IConfigContext & context) = 0;

    /// Last, with the same context, also after a failed write.
    virtual void EndWrite(IConfigContext & context) = 0;

    /// With the subsystem's own context in a full write. In a filtered one the context is a copy of the caller's
    /// with "subsystemtype" and "layernumber" set, and device, store and chip are the caller's.
    virtual void StartSubsystem(IConfigContext & context) = 0;
    virtual void EndSubsystem(IConfigContext & context) = 0;

    virtual void StartElement(IConfigContext & context) = 0;
    virtual void EndElement(IConfigContext & context) = 0;

    /// Right after `StartElement`, with the element's key number.
    virtual void WriteKeyId(std::uint32_t psId, IConfigContext & context) = 0;

    /// For a table row: once "num_indices" with an 8-byte count, then per index "index" with its 4-byte value, in
    /// index order, in the machine's byte order. `size` is in bytes; the data is valid during the call.
    virtual void WriteNamedData(
        const std::string & name, const void * data, std::uint32_t size, IConfigContext & context) = 0;

    /// One payload; it stays its element's. A complex payload arrives whole: a writer that wants its parts calls
    /// `CComplexPayload::WriteFields` or walks `GetFields`.
    virtual void WritePayload(IPayload & payload, IConfigContext & context) = 0;

    virtual ~IConfigWriter() = default;
};

/// The pull side of value construction: the element factory walks a key's metadata and asks for the next raw value,
/// in stream order. A reader plug-in implements it. Each operation is true when a value was delivered.
class CONFIGTOOLS_EXPORT IElementFactorySource
{
public:
    IElementFactorySource() = default;
    IElementFactorySource(const IElementFactorySource &) = default;
    IElementFactorySource & operator=(const IElementFactorySource &) { return *this; }

    /// `typeName` is the metadata's internal type ("uint32" for a table index, "uint16" for the words of a packed
    /// struct). `indexNumber` points at the running number of a table index, else it is null.
    virtual bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) = 0;

    /// `indexNumber` is null.
    virtual bool NextString(std::string & value, std::uint16_t * indexNumber) = 0;

    /// `indexNumber` is null.
    virtual bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) = 0;

    virtual ~IElementFactorySource() = default;
};

}   // namespace VrexZynConfigTools

#endif
