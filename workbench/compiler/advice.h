/// What was probably meant by a word that isn't known.

#ifndef WORKBENCH_COMPILER_ADVICE_H
#define WORKBENCH_COMPILER_ADVICE_H

#include <string>
#include <vector>

namespace workbench::compiler {

/// `; did you mean "uint8"?` where one of the words is near; otherwise `; expected "a", "b" or "c"`.
std::string Advice(const std::string & word, const std::vector<std::string> & known);

}   // namespace workbench::compiler

#endif
