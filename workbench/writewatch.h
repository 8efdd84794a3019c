/// Between a chip configuration and a writer: counts what goes out, and prevents an incomplete output from taking
/// effect.
///
///     workbench::CWriteWatch watch(*writer, workbench::CountToWrite(chip, std::nullopt), "product.zimg");
///     const bool isWritten = chip.Write(watch, context);

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

    /// The operations that a chip configuration calls; see `IConfigWriter`. `EndWrite` is where the count is compared.
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
