/// Names and numbers that have to be there, of the right form, and each once.

#ifndef WORKBENCH_COMPILER_NAMES_H
#define WORKBENCH_COMPILER_NAMES_H

#include "source.h"

#include <map>
#include <string>

namespace workbench::compiler {

/// Tells of what stands a second time, with the place of the first.
class CTaken
{
public:
    explicit CTaken(CSourceFindings & findings)
        : mFindings(findings)
    {}

    /// `subject`: what is told, such as `the name "Volume"`. Compared without regard to case.
    void Add(const std::string & word, const std::string & subject, const Place & place);

private:
    std::map<std::string, Place> mPlaces;
    CSourceFindings & mFindings;
};

/// A finding if the text isn't there; `reason` says why it has to be.
bool RequireText(
    const Placed<std::string> & text, const char * name, const char * reason, CSourceFindings & findings);

/// As above, and the text has to be a name.
bool RequireName(const Placed<std::string> & text, const char * reason, CSourceFindings & findings);

/// One of the words, if it is given.
bool CheckWord(const Placed<std::string> & word, const char * name, const std::vector<std::string> & known,
    CSourceFindings & findings);

/// Names and numbers of enumerators.
void CheckEnumerators(const Enumerators & enumerators, CSourceFindings & findings);

/// The system, its chips and subsystems, the numbers and names of keys, shared enumerations and structs.
void CheckNames(const Source & source, CSourceFindings & findings);

}   // namespace workbench::compiler

#endif
