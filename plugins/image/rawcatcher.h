/// Takes from the codec what it packed.

#ifndef IMAGECONFIG_RAWCATCHER_H
#define IMAGECONFIG_RAWCATCHER_H

#include "words.h"

#include <configtools/readerwriter.h>

#include <string>

namespace imageconfig {

/// A writer that gathers the words or octets written to it.
class CRawCatcher : public VrexZynConfigTools::IConfigWriter
{
public:
    using IConfigContext = VrexZynConfigTools::IConfigContext;

    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override {}
    void StartSubsystem(IConfigContext &) override {}
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override {}
    void WriteKeyId(std::uint32_t, IConfigContext &) override {}
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(VrexZynConfigTools::IPayload & payload, IConfigContext &) override
    {
        if (auto * const octets = dynamic_cast<VrexZynConfigTools::CStringPayload *>(&payload))
            mData += octets->GetValue();
        else if (const auto word = ValueOf(payload))
            AppendWords(mData, *word, 1);
    }

    const std::string & Data() const { return mData; }

private:
    std::string mData;
};

}   // namespace imageconfig

#endif
