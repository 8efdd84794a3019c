// A module with a writer and nothing else. The writer counts what reaches it, by kind, into the text that its
// creator's pointer points at.

#include <configtools/context.h>
#include <configtools/payloads.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>

namespace {

using namespace VrexZynConfigTools;

/// How the module sees the payloads that another module made.
std::string KindOf(IPayload & payload)
{
    if (dynamic_cast<CComplexPayload *>(&payload) != nullptr)
        return "complex";
    if (dynamic_cast<CUint32Payload *>(&payload) != nullptr)
        return "uint32";
    return "unknown";
}

class CKindWriter : public IConfigWriter
{
public:
    explicit CKindWriter(std::string & kinds)
        : mKinds(kinds)
    {}
    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override {}
    void StartSubsystem(IConfigContext &) override {}
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override {}
    void WriteKeyId(std::uint32_t psId, IConfigContext &) override { mKinds += std::to_string(psId) + ":"; }
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(IPayload & payload, IConfigContext &) override { mKinds += KindOf(payload) + " "; }

private:
    std::string & mKinds;
};

}   // namespace

const char * GetPlugInName()
{
    return "writer only";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IConfigWriter * CreateConfigWriter(const std::string & argument, void * pointer)
{
    auto & kinds = *static_cast<std::string *>(pointer);
    kinds = argument;
    return new CKindWriter(kinds);
}
