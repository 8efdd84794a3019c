/// A value as people write it.

#ifndef ZYNCONFIG_METADATA_VALUETEXT_H
#define ZYNCONFIG_METADATA_VALUETEXT_H

#include "source.h"

#include <string>

namespace zynconfig::metadata {

std::string TextOf(const Value & value);

}   // namespace zynconfig::metadata

#endif
