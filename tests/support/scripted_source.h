/// A source of raw values that answers by a script and notes what it was asked.
///
///     ScriptedSource source;
///     source.Number(7).Text("abc").Last();             // the second answer says that nothing follows
///     source.Untouched().Failing(GROUP_FRAMEWORK, "bad");   // leaves the caller's value, and an error
///     ...
///     EXPECT_EQ(source.Calls(), (Calls{ "NextInt uint8", "NextString", "NextInt uint32 index=1" }));
///
/// The answers are one queue, whatever the operation that is asked. A number for a text, or the reverse, leaves the
/// caller's value. When the script has ended, the answer is false and the value is left.

#ifndef TESTS_SUPPORT_SCRIPTED_SOURCE_H
#define TESTS_SUPPORT_SCRIPTED_SOURCE_H

#include <configtools/readerwriter.h>
#include <messages/messages.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace VrexZynConfigTools::support {

class ScriptedSource : public IElementFactorySource
{
public:
    /// Answers with `value`, and that more follows.
    ScriptedSource & Number(std::uint64_t value)
    {
        mScript.emplace_back().mNumber = value;
        return *this;
    }
    ScriptedSource & Numbers(const std::vector<std::uint64_t> & values)
    {
        for (const std::uint64_t value : values)
            Number(value);
        return *this;
    }
    ScriptedSource & Text(const std::string & value)
    {
        mScript.emplace_back().mText = value;
        return *this;
    }

    /// Leaves the caller's value as it is.
    ScriptedSource & Untouched()
    {
        mScript.emplace_back();
        return *this;
    }

    /// The answer before this is false: nothing follows.
    ScriptedSource & Last()
    {
        mScript.back().mMore = false;
        return *this;
    }

    /// The answer before this also leaves an error in `group`.
    ScriptedSource & Failing(GroupEnum group, const std::string & text)
    {
        mScript.back().mErrors.emplace_back(group, text);
        return *this;
    }

    /// With the answer before this something happens, ahead of its error and its value.
    ScriptedSource & Doing(std::function<void()> action)
    {
        mScript.back().mAction = std::move(action);
        return *this;
    }

    /// The calls so far, in order: the operation, its type name, and the running number of a table index.
    const std::vector<std::string> & Calls() const { return mCalls; }

    /// The numbers that the callers of `NextInt` and `NextEnum` passed in, in order.
    const std::vector<std::uint64_t> & NumbersPassedIn() const { return mNumbersPassedIn; }

    /// The texts that the callers of `NextString` passed in, in order.
    const std::vector<std::string> & TextsPassedIn() const { return mTextsPassedIn; }

    /// The answers that nobody has asked for yet.
    std::size_t Left() const { return mScript.size() - mNext; }

    bool NextInt(const std::string & typeName, std::uint64_t & value, std::uint16_t * indexNumber) override
    {
        Note("NextInt " + typeName, indexNumber);
        return AnswerNumber(value);
    }
    bool NextString(std::string & value, std::uint16_t * indexNumber) override
    {
        Note("NextString", indexNumber);
        mTextsPassedIn.push_back(value);
        const Answer answer = Next();
        value = answer.mText.value_or(value);
        return answer.mMore;
    }
    bool NextEnum(std::uint64_t & value, std::uint16_t * indexNumber) override
    {
        Note("NextEnum", indexNumber);
        return AnswerNumber(value);
    }

private:
    struct Answer
    {
        bool mMore = true;
        std::optional<std::uint64_t> mNumber;
        std::optional<std::string> mText;
        std::vector<std::pair<GroupEnum, std::string>> mErrors;
        std::function<void()> mAction;
    };

    bool AnswerNumber(std::uint64_t & value)
    {
        mNumbersPassedIn.push_back(value);
        const Answer answer = Next();
        value = answer.mNumber.value_or(value);
        return answer.mMore;
    }

    /// The next answer of the script, with what comes along with it done.
    Answer Next()
    {
        Answer answer;
        if (Left() == 0) {
            answer.mMore = false;
            return answer;
        }
        answer = mScript[mNext++];
        if (answer.mAction)
            answer.mAction();
        for (const auto & [group, text] : answer.mErrors)
            CTheMsgHnd::GetAppropriateHandler(group, "VrexZynConfigTools::support::ScriptedSource", false)
                .SetErrorMsg(0, text);
        return answer;
    }

    void Note(std::string call, const std::uint16_t * indexNumber)
    {
        if (indexNumber != nullptr)
            call += " index=" + std::to_string(*indexNumber);
        mCalls.push_back(std::move(call));
    }

    std::vector<Answer> mScript;
    std::size_t mNext = 0;
    std::vector<std::string> mCalls;
    std::vector<std::uint64_t> mNumbersPassedIn;
    std::vector<std::string> mTextsPassedIn;
};

}   // namespace VrexZynConfigTools::support

#endif
