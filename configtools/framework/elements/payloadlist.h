/// What elements and complex payloads do alike with their lists of payloads. Internal. A null payload in a list is
/// passed over everywhere.

#ifndef CONFIGTOOLS_ELEMENTS_PAYLOADLIST_H
#define CONFIGTOOLS_ELEMENTS_PAYLOADLIST_H

#include <configtools/payloads.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Marks a function that binds a reference to metadata through a pointer that may be null. The contract of
/// `IMetadataUser::Use` lets a null address pass, so the run-time checks for it are off there, and the function isn't
/// inlined into one where they are on.
#if defined(__GNUC__)
#define ZYN_BINDS_NULL_REFERENCE __attribute__((no_sanitize("null", "object-size"), noinline))
#else
#define ZYN_BINDS_NULL_REFERENCE
#endif

namespace VrexZynConfigTools::payloadlist {

/// `user.Use(*metadata)`, also for null. Every `Use` that the library calls goes through here.
void HandOn(IMetadataUser & user, const IMetadata * metadata);

/// Hands `metadata` to `payload`, if that is a metadata user.
void HandOn(IPayload * payload, const IMetadata * metadata);
void HandOn(const std::vector<IPayload *> & payloads, const IMetadata * metadata);

/// Appends `payload`, which belongs to the list's owner then; it is deleted if the list can't grow.
void Append(std::vector<IPayload *> & payloads, std::unique_ptr<IPayload> payload);

void WriteEach(const std::vector<IPayload *> & payloads, IConfigWriter & writer, IConfigContext & context);

/// Pair by pair with the left payload as receiver, up to the first difference. Null equals null only.
bool Equal(const std::vector<IPayload *> & left, const std::vector<IPayload *> & right);

/// The sum of the lengths, in bytes.
std::uint64_t Length(const std::vector<IPayload *> & payloads);

/// The first payload, or null if there is none.
IPayload * First(const std::vector<IPayload *> & payloads);
std::string TextOfFirst(const std::vector<IPayload *> & payloads);

void DeleteAll(std::vector<IPayload *> & payloads);

}   // namespace VrexZynConfigTools::payloadlist

#endif
