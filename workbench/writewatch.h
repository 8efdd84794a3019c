/// Stands between a chip configuration and a writer: counts what goes out, and lets no incomplete output take effect.

#ifndef WORKBENCH_WRITEWATCH_H
#define WORKBENCH_WRITEWATCH_H

#include <configtools/readerwriter.h>

#include <cstddef>
#include <string>

namespace workbench {

/// Give it to the chip in place of the writer, which gets everything through it.
class CWriteWatch : public VrexZynConfigTools::IConfigWriter
{
public:
    /// The writer remains the caller's; `expected` values have to go out to `output`. If others do, an error is set in
    /// the framework's group before the writer learns of the end, at which it leaves the old output as it is then.
    CWriteWatch(VrexZynConfigTools::IConfigWriter & writer, std::size_t expected, const std::string & output);

    void PrepareWriter(VrexZynConfigTools::IConfigContext & context) override;
    void StartWrite(VrexZynConfigTools::IConfigContext & context) override;
    void EndWrite(VrexZynConfigTools::IConfigContext & context) override;
    void StartSubsystem(VrexZynConfigTools::IConfigContext & context) override;
    void EndSubsystem(VrexZynConfigTools::IConfigContext & context) override;
    void StartElement(VrexZynConfigTools::IConfigContext & context) override;
    void EndElement(VrexZynConfigTools::IConfigContext & context) override;
    void WriteKeyId(std::uint32_t psId, VrexZynConfigTools::IConfigContext & context) override;
    void WriteNamedData(const std::string & name, const void * data, std::uint32_t size,
        VrexZynConfigTools::IConfigContext & context) override;
    void WritePayload(
        VrexZynConfigTools::IPayload & payload, VrexZynConfigTools::IConfigContext & context) override;

private:
    VrexZynConfigTools::IConfigWriter & mWriter;
    std::size_t mExpected;
    std::string mOutput;
    std::size_t mCount = 0;
};

}   // namespace workbench

#endif
