#include "payloadlist.h"

namespace VrexZynConfigTools::payloadlist {

namespace {

bool SamePair(const IPayload * left, const IPayload * right)
{
    if (left == nullptr || right == nullptr)
        return left == right;
    return left->operator==(*right);
}

}   // namespace

ZYN_BINDS_NULL_REFERENCE
void HandOn(IMetadataUser & user, const IMetadata * metadata)
{
    user.Use(*metadata);
}

void HandOn(IPayload * payload, const IMetadata * metadata)
{
    if (auto * user = dynamic_cast<IMetadataUser *>(payload))
        HandOn(*user, metadata);
}

void HandOn(const std::vector<IPayload *> & payloads, const IMetadata * metadata)
{
    for (IPayload * payload : payloads)
        HandOn(payload, metadata);
}

void Append(std::vector<IPayload *> & payloads, std::unique_ptr<IPayload> payload)
{
    payloads.push_back(payload.get());
    payload.release();   // the list's owner has it now
}

void WriteEach(const std::vector<IPayload *> & payloads, IConfigWriter & writer, IConfigContext & context)
{
    for (IPayload * payload : payloads)
        if (payload != nullptr)
            payload->Write(writer, context);   // a failure stands in the error channel and doesn't end the loop
}

bool Equal(const std::vector<IPayload *> & left, const std::vector<IPayload *> & right)
{
    if (left.size() != right.size())
        return false;
    for (std::size_t position = 0; position < left.size(); ++position)
        if (!SamePair(left[position], right[position]))
            return false;
    return true;
}

std::uint64_t Length(const std::vector<IPayload *> & payloads)
{
    std::uint64_t length = 0;
    for (IPayload * payload : payloads)
        if (payload != nullptr)
            length += payload->Length();
    return length;
}

IPayload * First(const std::vector<IPayload *> & payloads)
{
    return payloads.empty() ? nullptr : payloads.front();
}

std::string TextOfFirst(const std::vector<IPayload *> & payloads)
{
    IPayload * first = First(payloads);
    return first != nullptr ? first->ToString() : std::string();
}

void DeleteAll(std::vector<IPayload *> & payloads)
{
    for (IPayload * payload : payloads)
        delete payload;
    payloads.clear();
}

}   // namespace VrexZynConfigTools::payloadlist
