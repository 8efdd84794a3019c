/// A chip with three layers of one subsystem and one of another.

#ifndef TESTS_CHIPCONFIG_LAYERED_CHIP_FIXTURE_H
#define TESTS_CHIPCONFIG_LAYERED_CHIP_FIXTURE_H

#include "chip_fixture.h"

#include <string>

namespace VrexZynConfigTools::support {

/// Type 1 in layers 1 to 3 ("otp", "smem", "eeprom") and type 2 in layer 2. The number of an element is its layer,
/// 20 more for type 2. Key 100 is in layers 1 and 3, key 101 in layer 2 only, key 102 in layer 1 only.
class LayeredChipTest : public ChipTest
{
protected:
    LayeredChipTest()
    {
        Read("chip=c", ASubsystem(1).In(OTP, 1).Holding(Traced(1, 100, "both")).Holding(Traced(11, 102, "low")),
            ASubsystem(1).In(SMEM, 1).Holding(Traced(2, 101, "Mid")),
            ASubsystem(1).In(EEPROM, 1).Holding(Traced(3, 100, "both")),
            ASubsystem(2).In(SMEM, 1).Holding(Traced(22, 100, "both")));
    }

    int FindFiltered(std::uint32_t id, const std::string & filter, const std::string & tags = "")
    {
        return Find(id, "chip=c;subsystemtype=1;layerfilter=" + filter + ";" + tags);
    }
};

}   // namespace VrexZynConfigTools::support

#endif
