/// A plug-in that stands in for the one of the tool's files and does what no honest one would, by order of the file that
/// it reads. Each line of it is one order; a text in an order is percent-encoded:
///
///     chip LABEL                      the label in the contexts of later subsystems
///     started LABEL                   tells the label in OnReadStarted already
///     subsystem TYPE DEVICE STORE     "-" leaves a tag unset
///     key ID NAME KIND VALUE [INDEX]...
///                                     KIND: number, text, texts (of a doubled value), octets, foreign, nullpayload,
///                                     watched (its end is told on standard error); or nullelement
///     raw ID NAME                     a row without indices
///     size DEVICE STORE SIZE FREE     reports a store with its sizes, as a store manager
///     stores DEVICE COUNT             reports stores 1 to COUNT of the device, as a store manager
///     error GROUP TEXT                leaves an error
///     finding FILE LINE COLUMN TEXT   leaves an error with a record of its place
///     status TEXT                     a warning
///     throw                           what a plug-in must not do
///     dirty TAG VALUE                 leaves a tag in the caller's context
///     ticket FILE                     from the second reading on, reads FILE in place of the rest
///
/// A path that contains "nothing" gets neither reader nor writer. The writer notes its calls in its file, and the tag
/// "fake" in its context makes it fail: "prepare", "start", "end" leave an error; "silent" leaves one that is gone again.

#include <configtools/context.h>
#include <configtools/elements.h>
#include <configtools/keywords.h>
#include <configtools/plugin.h>
#include <configtools/readerwriter.h>
#include <configtools/stores.h>
#include <configtools/zyncontext.h>

#include <messages/messages.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using namespace VrexZynConfigTools;

constexpr char LAYERS_TAG[] = "storelayers";

void ReportError(std::uint32_t group, const std::string & text)
{
    const auto place = static_cast<GroupEnum>(group);
    CTheMsgHnd::GetAppropriateHandler(place, "fakeconfig", true).SetErrorMsg(0, text);
}

std::string Decoded(const std::string & text)
{
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            result += text[i];
            continue;
        }
        result += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
        i += 2;
    }
    return result;
}

/// A payload class that nobody but this module knows.
class CForeignPayload : public CPayload<std::uint8_t>
{
public:
    CForeignPayload()
        : CPayload<std::uint8_t>(7, static_cast<PayloadTypeEnum>(99))
    {}
    std::string ToString() override { return "foreign \033[31m"; }
};

class CWatchedElement : public CElementString
{
public:
    CWatchedElement(std::uint32_t id, const std::string & name)
        : CElementString(id, name, "watched", false, true)
    {}
    ~CWatchedElement() override { std::fputs("an element is gone\n", stderr); }
};

std::unique_ptr<CElement> MakeElement(
    std::uint32_t id, const std::string & name, const std::string & kind, const std::string & value)
{
    if (kind == "text" || kind == "octets")
        return std::make_unique<CElementString>(id, name, Decoded(value), kind == "octets", true);
    if (kind == "texts")
        return std::make_unique<CElementString>(id, name,
            std::vector<IPayload *>{ new CStringPayload(value, false), new CStringPayload(value, false) },
            true);
    if (kind == "watched")
        return std::make_unique<CWatchedElement>(id, name);
    if (kind == "foreign")
        return std::make_unique<CElementNumericArray>(
            id, name, std::vector<IPayload *>{ new CForeignPayload }, true);
    if (kind == "nullpayload")
        return std::make_unique<CElementNumericArray>(id, name, std::vector<IPayload *>{ nullptr }, true);
    auto number = std::make_unique<CElementNumericArray>(NUMERIC_UINT32, id, name, true);
    number->SetValue(std::vector<std::uint32_t>{ static_cast<std::uint32_t>(std::stoul(value)) });
    return number;
}

void SetTagUnlessDash(IConfigContext & context, const char * tag, const std::string & value)
{
    if (value != "-")
        context.SetTag(tag, value);
}

class CFakeReader : public IConfigReader, public IStoreManager
{
public:
    explicit CFakeReader(const std::string & path)
        : mPath(path)
    {}
    ~CFakeReader() override { ClearStoreList(mStores); }

    void SetObserver(IConfigReaderObserver & observer) override { mObserver = &observer; }
    void SetElementObserver(IConfigReaderElementObserver & observer) override { mElementObserver = &observer; }
    void SetMetadataProvider(IMetadataProvider &) override {}

    void Read(IConfigContext & context) override
    {
        static std::map<std::string, int> readings;
        mReading = ++readings[mPath];
        mContext = &context;
        mStarted.reset(context.Clone());
        Obey(mPath);
        if (mIsStarted) {
            Complete();
            mObserver->OnReadEnded(*this, context);
        }
    }

    bool Open(IConfigContext &) override { return true; }
    IChunkInOut * ChunkAccess(DEVICE, std::uint16_t, IConfigContext &) override { return nullptr; }
    const std::list<CStoreInfo *> & Stores(IConfigContext &) override { return mStores; }

private:
    void Obey(const std::string & path)
    {
        std::ifstream file(path);
        for (std::string line; std::getline(file, line);) {
            std::istringstream words(line);
            std::string order;
            words >> order;
            if (order == "ticket" && mReading > 1) {
                words >> order;
                return Obey(order);
            }
            ObeyOrder(order, words);
        }
    }

    void ObeyOrder(const std::string & order, std::istringstream & words)
    {
        std::string first;
        std::string second;
        if (order == "throw")
            throw std::runtime_error("thrown by a plug-in");
        if (order == "chip") {
            words >> mChip;
        } else if (order == "started") {
            words >> first;
            mStarted->SetTag(keywords::TAG_CHIP, first);
            Start();
        } else if (order == "error") {
            words >> first >> second;
            ReportError(static_cast<std::uint32_t>(std::stoul(first)), Decoded(second));
        } else if (order == "finding") {
            ErrorRecord record;
            words >> record.mFile >> record.mLine >> record.mColumn >> record.mText;
            record.mText = Decoded(record.mText);
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "fakeconfig", true)
                .SetErrorMsg(0, record.mFile + ": " + record.mText, { record });
        } else if (order == "status") {
            words >> first;
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "fakeconfig", true)
                .NotifyStatus(STATUS_WARNING, Decoded(first));
        } else if (order == "dirty") {
            words >> first >> second;
            mContext->SetTag(first, second);
        } else if (order == "stores") {
            ReportStores(words);
        } else if (order == "size") {
            ReportSize(words);
        } else if (order == "subsystem") {
            StartSubsystem(words);
        } else if (order == "key") {
            DeliverKey(words);
        } else if (order == "raw") {
            words >> first >> second;
            Hand(new CIndexedElement(static_cast<std::uint32_t>(std::stoul(first)), second, {}, {}, true),
                *mSubsystem);
        } else if (order == "nullelement") {
            Hand(nullptr, *mSubsystem);
        }
    }

    void Start()
    {
        if (!mIsStarted)
            mObserver->OnReadStarted(*this, *mStarted);
        mIsStarted = true;
    }

    void Complete()
    {
        if (mSubsystem != nullptr)
            mObserver->OnSubsystemCompleted(*this, *mSubsystem);
        mSubsystem = nullptr;
    }

    void ReportStores(std::istringstream & words)
    {
        int device = 0;
        std::uint16_t count = 0;
        words >> device >> count;
        for (std::uint16_t store = 1; store <= count; ++store)
            mStores.push_back(
                new CStoreInfo(static_cast<DEVICE>(device), store, 0xFFFFFFFF, -1, 0, store, false));
    }

    void ReportSize(std::istringstream & words)
    {
        int device = 0;
        std::uint16_t store = 0;
        std::uint32_t size = 0;
        std::int32_t free = 0;
        words >> device >> store >> size >> free;
        mStores.push_back(new CStoreInfo(static_cast<DEVICE>(device), store, size, free, 0, store, false));
    }

    void StartSubsystem(std::istringstream & words)
    {
        std::string type;
        std::string device;
        std::string store;
        words >> type >> device >> store;
        Start();
        Complete();
        mSubsystem.reset(mContext->Clone());
        SetTagUnlessDash(*mSubsystem, keywords::TAG_SUBSYSTEM_TYPE, type);
        SetTagUnlessDash(*mSubsystem, keywords::TAG_DEVICE, device);
        SetTagUnlessDash(*mSubsystem, keywords::TAG_STORE, store);
        mSubsystem->SetTag(keywords::TAG_CHIP, mChip);
        SetLayer(device + '.' + store + ':');
        mObserver->OnSubsystemFound(*this, *mSubsystem);
    }

    void SetLayer(const std::string & store)
    {
        const std::string layers = ',' + mContext->GetTag(LAYERS_TAG);
        const auto place = layers.find(',' + store);
        if (place != std::string::npos)
            mSubsystem->SetTag(
                keywords::TAG_LAYER_NUMBER, std::atoi(layers.c_str() + place + 1 + store.size()));
    }

    void DeliverKey(std::istringstream & words)
    {
        std::uint32_t id = 0;
        std::string name;
        std::string kind;
        std::string value;
        words >> id >> name >> kind >> value;
        const std::unique_ptr<IConfigContext> own(mSubsystem->Clone());
        std::string index;
        for (int i = 1; words >> index; ++i) {
            own->SetTag(keywords::TAG_NUM_INDICES, i);
            own->SetTag(keywords::TAG_INDEX + std::to_string(i), index);
        }
        Hand(MakeElement(id, name == "-" ? "" : Decoded(name), kind, value).release(), *own);
    }

    void Hand(CElement * element, IConfigContext & context)
    {
        mElementObserver->OnElementFound(element, context);
    }

    std::string mPath;
    std::string mChip;
    int mReading = 0;
    bool mIsStarted = false;
    IConfigContext * mContext = nullptr;
    std::unique_ptr<IConfigContext> mStarted;
    std::unique_ptr<IConfigContext> mSubsystem;
    std::list<CStoreInfo *> mStores;
    IConfigReaderObserver * mObserver = nullptr;
    IConfigReaderElementObserver * mElementObserver = nullptr;
};

class CFakeWriter : public IConfigWriter
{
public:
    explicit CFakeWriter(const std::string & path)
        : mFile(path)
    {}

    void PrepareWriter(IConfigContext & context) override { Note("prepare", context); }
    void StartWrite(IConfigContext & context) override { Note("start", context); }
    void EndWrite(IConfigContext & context) override
    {
        Note("end", context);
        if (context.TagMatches("fake", "silent"))
            CTheMsgHnd::GetAppropriateHandler(GROUP_FRAMEWORK, "fakeconfig", true).ClearError(GROUP_FRAMEWORK);
        mFile.close();
    }
    void StartSubsystem(IConfigContext & context) override
    {
        mFile << "subsystem type=" << context.GetTag(keywords::TAG_SUBSYSTEM_TYPE)
              << " chip=" << context.GetTag(keywords::TAG_CHIP)
              << " layer=" << context.GetTag(keywords::TAG_LAYER_NUMBER) << '\n';
        if (context.TagMatches("fake", "silent"))
            ReportError(GROUP_FRAMEWORK, "never seen");
    }
    void EndSubsystem(IConfigContext &) override {}
    void StartElement(IConfigContext &) override {}
    void EndElement(IConfigContext &) override { mFile << '\n'; }
    void WriteKeyId(std::uint32_t psId, IConfigContext &) override { mFile << psId; }
    void WriteNamedData(const std::string &, const void *, std::uint32_t, IConfigContext &) override {}
    void WritePayload(IPayload & payload, IConfigContext &) override { mFile << ' ' << payload.ToString(); }

private:
    void Note(const std::string & call, IConfigContext & context)
    {
        mFile << call << " chip=" << context.GetTag(keywords::TAG_CHIP)
              << " filter=" << context.GetTag(keywords::TAG_LAYER_FILTER)
              << " extra=" << context.GetTag("extra") << '\n';
        if (context.TagMatches("fake", call))
            ReportError(GROUP_FRAMEWORK, "the fake writer fails at " + call);
    }

    std::ofstream mFile;
};

bool IsRefused(const std::string & path)
{
    if (path.find("nothing") == std::string::npos)
        return false;
    if (path.find("because") != std::string::npos)
        ReportError(GROUP_FRAMEWORK, "the creator tells why");
    return true;
}

}   // namespace

const char * GetPlugInName()
{
    return "tomlconfig";
}

const char * GetPlugInSignature()
{
    return PLUGIN_SIGNATURE;
}

IConfigReader * CreateConfigReader(const std::string & argument, void *)
{
    return IsRefused(argument) ? nullptr : new CFakeReader(argument);
}

IConfigWriter * CreateConfigWriter(const std::string & argument, void *)
{
    return IsRefused(argument) ? nullptr : new CFakeWriter(argument);
}
