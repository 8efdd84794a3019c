/// Debug output, switched on and kept for the life of a scope.

#ifndef TESTS_SUPPORT_DEBUG_CAPTURE_H
#define TESTS_SUPPORT_DEBUG_CAPTURE_H

#include <messages/messages.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace VrexZynConfigTools::support {

class DebugCapture : public IMessageSink
{
public:
    struct Line
    {
        GroupEnum mGroup;
        std::uint32_t mLevel;
        std::string mFunction;
        std::string mText;
    };

    explicit DebugCapture(std::uint32_t level = 3)
        : mGuard(this)
    {
        CTheMsgHnd::SetDebugLevel(level);
    }
    ~DebugCapture() override { CTheMsgHnd::SwitchDebugOff(); }
    DebugCapture(const DebugCapture &) = delete;
    DebugCapture & operator=(const DebugCapture &) = delete;

    void OnDebugLine(const DebugLine & line) override
    {
        mLines.push_back({ line.mGroup, line.mLevel, line.mFunction, line.mText });
    }
    void OnStatus(GroupEnum /*group*/, StatusLevels /*level*/, const std::string & /*text*/) override {}

    const std::vector<Line> & Lines() const { return mLines; }
    void Forget() { mLines.clear(); }

    std::size_t Count(const std::string & text) const
    {
        return static_cast<std::size_t>(std::count_if(
            mLines.begin(), mLines.end(), [&text](const Line & line) { return line.mText == text; }));
    }

    /// The texts of the lines that a function wrote at a level, in order; entry and exit lines are of level 0.
    std::vector<std::string> TextsOf(const std::string & function, std::uint32_t level = 3) const
    {
        std::vector<std::string> texts;
        for (const Line & line : mLines) {
            if (line.mFunction == function && line.mLevel == level)
                texts.push_back(line.mText);
        }
        return texts;
    }

    /// The texts of what the functions of a class decided, as far as they begin with `start`, in order.
    std::vector<std::string> DecisionsOf(const std::string & className, const std::string & start = "") const
    {
        std::vector<std::string> texts;
        for (const Line & line : mLines) {
            if (line.mLevel == 3 && line.mFunction.rfind(className + "::", 0) == 0 &&
                line.mText.rfind(start, 0) == 0)
                texts.push_back(line.mText);
        }
        return texts;
    }

private:
    std::vector<Line> mLines;
    CMessageSinkGuard mGuard;
};

}   // namespace VrexZynConfigTools::support

#endif
