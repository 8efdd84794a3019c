/// The error of the framework's message group, for the life of a scope: cleared at its beginning and at its end.

#ifndef TESTS_SUPPORT_FRAMEWORK_ERRORS_H
#define TESTS_SUPPORT_FRAMEWORK_ERRORS_H

#include <support/group_errors.h>

namespace VrexZynConfigTools::support {

class FrameworkErrors : public GroupErrors
{
public:
    FrameworkErrors()
        : GroupErrors(GROUP_FRAMEWORK)
    {}
};

}   // namespace VrexZynConfigTools::support

#endif
