/// The error of the framework's message group, for the life of a scope: cleared at its beginning and at its end.

#ifndef TESTS_SUPPORT_FRAMEWORK_ERRORS_H
#define TESTS_SUPPORT_FRAMEWORK_ERRORS_H

#include <messages/messages.h>

#include <string>

namespace VrexZynConfigTools::support {

class FrameworkErrors
{
public:
    FrameworkErrors() { Clear(); }
    ~FrameworkErrors() { Clear(); }
    FrameworkErrors(const FrameworkErrors &) = delete;
    FrameworkErrors & operator=(const FrameworkErrors &) = delete;

    void Set(const std::string & text) { Handler().SetErrorMsg(0, text); }
    void Clear() { Handler().ClearError(GROUP_FRAMEWORK); }
    bool IsSet() const { return Handler().IsErrorSet(GROUP_FRAMEWORK, true); }

    /// Empty if no error stands.
    std::string Text() const
    {
        short code = 0;
        std::string text;
        Handler().GetErrorMsg(GROUP_FRAMEWORK, code, text);
        return text;
    }

private:
    static CMessageHandler & Handler()
    {
        return CTheMsgHnd::GetAppropriateHandler(
            GROUP_FRAMEWORK, "VrexZynConfigTools::support::FrameworkErrors", false);
    }
};

}   // namespace VrexZynConfigTools::support

#endif
