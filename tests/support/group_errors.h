/// The error of one message group, for the life of a scope: cleared at its beginning and at its end.

#ifndef TESTS_SUPPORT_GROUP_ERRORS_H
#define TESTS_SUPPORT_GROUP_ERRORS_H

#include <messages/messages.h>

#include <string>

namespace VrexZynConfigTools::support {

class GroupErrors
{
public:
    explicit GroupErrors(GroupEnum group)
        : mGroup(group)
    {
        Clear();
    }
    ~GroupErrors() { Clear(); }
    GroupErrors(const GroupErrors &) = delete;
    GroupErrors & operator=(const GroupErrors &) = delete;

    void Set(const std::string & text) { Handler().SetErrorMsg(0, text); }
    void Clear() { Handler().ClearError(mGroup); }
    bool IsSet() const { return Handler().IsErrorSet(mGroup, true); }

    /// Empty if no error stands.
    std::string Text() const
    {
        short code = 0;
        std::string text;
        Handler().GetErrorMsg(mGroup, code, text);
        return text;
    }

    /// -1 if no error stands.
    short Code() const
    {
        short code = -1;
        std::string text;
        Handler().GetErrorMsg(mGroup, code, text);
        return code;
    }

private:
    CMessageHandler & Handler() const
    {
        return CTheMsgHnd::GetAppropriateHandler(mGroup, "VrexZynConfigTools::support::GroupErrors", false);
    }

    const GroupEnum mGroup;
};

}   // namespace VrexZynConfigTools::support

#endif
