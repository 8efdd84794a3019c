/// A plug-in module on one page: a reader of numbers from lines of text, and a writer that prints them.
///
/// The reader's text is the string argument of its creator. Each line holds five decimal numbers: subsystem type,
/// device, store, key, value. The writer's pointer argument is the std::ostream to print to.

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>
#include <configtools/zyncontext.h>

#include <messages/messages.h>

#include <cstdint>
#include <locale>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

namespace {

using namespace VrexZynConfigTools;

struct Line
{
    int mType;
    int mDevice;
    int mStore;
    std::uint32_t mKey;
    std::uint32_t mValue;
};

bool SameSubsystem(const Line & left, const Line & right)
{
    return left.mType == right.mType && left.mDevice == right.mDevice && left.mStore == right.mStore;
}

void ReportError(const std::string & text)
{
    CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "lineconfig", true).SetErrorMsg(0, text);
}

class CLineReader : public IConfigReader
{
public:
    explicit CLineReader(const std::string & text)
        : mText(text)
    {}

    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider &) override {}   // these lines say all there is to know

    void Read(IConfigContext & context) override
    {
        std::vector<Line> lines;
        if (mObserver == nullptr || !Parse(lines))
            return;   // everything is read before anything is delivered, so nothing half read goes out

        mObserver->OnReadStarted(*this, context);
        for (std::size_t first = 0; first < lines.size();)
            first = DeliverSubsystem(lines, first, context);
        mObserver->OnReadEnded(*this, context);
    }

private:
    bool Parse(std::vector<Line> & lines) const
    {
        std::istringstream text(mText);
        for (std::string lineText; std::getline(text, lineText);) {
            std::istringstream fields(lineText);
            fields.imbue(std::locale::classic());   // the process's locale may group digits
            Line line{};
            if (!(fields >> line.mType >> line.mDevice >> line.mStore >> line.mKey >> line.mValue)) {
                ReportError("line " + std::to_string(lines.size() + 1) + ": five numbers expected");
                return false;
            }
            lines.push_back(line);
        }
        return true;
    }

    // Delivers the lines from `first` on that belong to one subsystem; returns the number of the next line.
    std::size_t DeliverSubsystem(const std::vector<Line> & lines, std::size_t first, IConfigContext & context)
    {
        CZynContext subsystem;
        subsystem.SetTag(keywords::TAG_INSERT_MODE, context.GetTag(keywords::TAG_INSERT_MODE));
        subsystem.SetChip(context.GetTag(keywords::TAG_CHIP));
        subsystem.SetSubsystemType(lines[first].mType);
        subsystem.SetDevice(lines[first].mDevice);
        subsystem.SetStore(lines[first].mStore);

        mObserver->OnSubsystemFound(*this, subsystem);   // this replaces mElementObserver
        std::size_t next = first;
        for (; next < lines.size() && SameSubsystem(lines[first], lines[next]); ++next)
            Deliver(lines[next], subsystem);
        mObserver->OnSubsystemCompleted(*this, subsystem);
        return next;
    }

    void Deliver(const Line & line, IConfigContext & context)
    {
        auto element = std::make_unique<CElementNumericArray>(NUMERIC_UINT32, line.mKey, "", false);
        element->SetValue(std::vector<std::uint32_t>{ line.mValue });
        if (mElementObserver != nullptr)
            mElementObserver->OnElementFound(element.release(), context);   // the observer owns it now
    }

    std::string mText;
    IConfigReaderObserver * mObserver = nullptr;                 // the caller's
    IConfigReaderElementObserver * mElementObserver = nullptr;   // the caller's
};

class CLineWriter : public IConfigWriter
{
public:
    explicit CLineWriter(std::ostream & out)
        : mOut(out)
    {}

    void PrepareWriter(IConfigContext &) override {}
    void StartWrite(IConfigContext &) override {}
    void EndWrite(IConfigContext &) override
    {
        if (!mOut.flush())
            ReportError(keywords::ERROR_UNABLE_TO_WRITE_FILE);
    }
    void StartSubsystem(IConfigContext & context) override
    {
        mOut << "subsystem " << context.GetTag(keywords::TAG_SUBSYSTEM_TYPE) << ", layer "
             << context.GetTag(keywords::TAG_LAYER_NUMBER) << '\n';
    }
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override { mOut << '\n'; }
    void WriteKeyId(std::uint32_t psId, IConfigContext &) override { mOut << "  " << std::to_string(psId); }
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(IPayload & payload, IConfigContext &) override { mOut << ' ' << payload.ToString(); }

private:
    std::ostream & mOut;
};

}   // namespace

const char * GetPlugInName()
{
    return "lineconfig";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IConfigReader * CreateConfigReader(const std::string & argument, void *)
{
    return new CLineReader(argument);
}

IConfigWriter * CreateConfigWriter(const std::string &, void * pointer)
{
    return pointer == nullptr ? nullptr : new CLineWriter(*static_cast<std::ostream *>(pointer));
}
