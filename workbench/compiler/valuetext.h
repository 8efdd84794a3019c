/// A value as people write it.

#ifndef WORKBENCH_COMPILER_VALUETEXT_H
#define WORKBENCH_COMPILER_VALUETEXT_H

#include "source.h"

#include <string>

namespace workbench::compiler {

std::string TextOf(const Value & value);

}   // namespace workbench::compiler

#endif
