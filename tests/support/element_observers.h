/// Receivers of elements that note what they are told.

#ifndef TESTS_SUPPORT_ELEMENT_OBSERVERS_H
#define TESTS_SUPPORT_ELEMENT_OBSERVERS_H

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/readerwriter.h>

#include <functional>
#include <vector>

namespace VrexZynConfigTools::support {

/// Takes no ownership, as an onward notice requires.
class RecordingElementObserver : public IConfigReaderElementObserver
{
public:
    struct Call
    {
        CElement * mElement;   // may have died since
        IConfigContext * mContext;
    };

    explicit RecordingElementObserver(bool result = false)
        : mResult(result)
    {}

    bool OnElementFound(CElement * element, IConfigContext & context) override
    {
        mCalls.push_back({ element, &context });
        if (mThen)
            mThen(element, context);
        return mResult;
    }

    const std::vector<Call> & Calls() const { return mCalls; }
    void Forget() { mCalls.clear(); }

    /// What is done in each call, after it was noted.
    void Then(std::function<void(CElement *, IConfigContext &)> action) { mThen = std::move(action); }

private:
    const bool mResult;
    std::vector<Call> mCalls;
    std::function<void(CElement *, IConfigContext &)> mThen;
};

}   // namespace VrexZynConfigTools::support

#endif
