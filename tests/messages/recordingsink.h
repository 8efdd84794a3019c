/// A sink that keeps all it is told.

#ifndef TESTS_MESSAGES_RECORDINGSINK_H
#define TESTS_MESSAGES_RECORDINGSINK_H

#include <messages/messages.h>

#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools {

class RecordingSink : public IMessageSink
{
public:
    struct Line
    {
        GroupEnum mGroup;
        std::uint32_t mLevel;
        bool mIsExit;
        std::string mFunction;
        std::string mFile;
        std::uint32_t mLine;
        std::string mText;
    };
    struct Status
    {
        GroupEnum mGroup;
        StatusLevels mLevel;
        std::string mText;
    };

    void OnDebugLine(const DebugLine & line) override
    {
        mLines.push_back(
            { line.mGroup, line.mLevel, line.mIsExit, line.mFunction, line.mFile, line.mLine, line.mText });
    }
    void OnStatus(GroupEnum group, StatusLevels level, const std::string & text) override
    {
        mStatuses.push_back({ group, level, text });
    }

    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const Line & line : mLines)
            texts.push_back(line.mText);
        return texts;
    }

    std::vector<Line> mLines;
    std::vector<Status> mStatuses;
};

/// Debug output on for the life of a scope.
class DebugOn
{
public:
    explicit DebugOn(std::uint32_t level = 3) { CTheMsgHnd::SetDebugLevel(level); }
    ~DebugOn() { CTheMsgHnd::SwitchDebugOff(); }
    DebugOn(const DebugOn &) = delete;
    DebugOn & operator=(const DebugOn &) = delete;
};

/// The handler of a group, asked for as the framework does.
inline CMessageHandler & Handler(GroupEnum group)
{
    return CTheMsgHnd::Instance().GetAppropriateHandler(group, "test", false);
}

}   // namespace VrexZynConfigTools

#endif
