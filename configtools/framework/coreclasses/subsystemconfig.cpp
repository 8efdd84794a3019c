#include <configtools/subsystemconfig.h>

#include "contextfacts.h"
#include "elementindex.h"
#include "winnerledger.h"

#include <configtools/keywords.h>
#include <configtools/metadata.h>
#include <messages/trace.h>
#include <misc/stringutil.h>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

namespace VrexZynConfigTools {

namespace {

constexpr GroupEnum MESSAGE_GROUP = GROUP_CORE_CLASSES;

bool IsPlain(const CElement & element)
{
    const auto * row = dynamic_cast<const CIndexedElement *>(&element);
    return row == nullptr || row->NumIndices() == 0;
}

CElement & ElementOrNull(CElement * element)
{
    return element != nullptr ? *element : CNullElement::Ref();
}

// The clone of a foreign context class may be null or of any class; its tags must do then.
std::unique_ptr<CBaseContext> CloneOf(CBaseContext & context)
{
    std::unique_ptr<IConfigContext> clone(context.Clone());
    std::unique_ptr<CBaseContext> base(dynamic_cast<CBaseContext *>(clone.get()));
    if (base == nullptr)
        return std::make_unique<CBaseContext>(context);
    clone.release();   // base owns it now
    return base;
}

}   // namespace

/// What a key text asks for.
struct CSubsystemConfig::Query
{
    std::string mName;   // in lower case, unless it begins with a number other than 0
    bool mIsNumber = false;
    std::uint32_t mNumber = 0;
    bool mIsIndexed = false;
    std::vector<std::uint32_t> mIndices;

    /// Whether the element has the number or name asked for.
    bool Names(const CElement & element) const
    {
        return mIsNumber ? element.PsId() == mNumber : stringutil::ToLower(element.Name()) == mName;
    }

    /// Whether an element of that number or name is the row, or the plain element, asked for.
    bool Selects(const CElement & element) const
    {
        if (!mIsIndexed)
            return IsPlain(element);
        CIndexedElement row(element.PsId(), mName, mIndices, {}, true);
        return element.Same(row);
    }
};

CSubsystemConfig::CSubsystemConfig(CBaseContext & context, IConfigReaderElementObserver * observer)
    : CSubsystemConfig(context, observer, CWinnerLedger::Of(observer))
{}

CSubsystemConfig::CSubsystemConfig(
    CBaseContext & context, IConfigReaderElementObserver * observer, CWinnerLedger * winners)
    : mType(static_cast<unsigned short>(context.SubsystemType()))
    , mContext(nullptr)
    , mObserver(observer)
    , mIndex(std::make_unique<CElementIndex>(mElements))
    , mWinners(winners)
{
    ZYN_CONSTRUCTOR(GROUP_CORE_CLASSES, "VrexZynConfigTools::CSubsystemConfig::CSubsystemConfig");

    mContext = CloneOf(context).release();
}

CSubsystemConfig::~CSubsystemConfig()
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::~CSubsystemConfig");

    for (CElement * element : mElements) {
        OnElementGone(element, nullptr);
        delete element;
    }
    delete mContext;
}

bool CSubsystemConfig::Write(IConfigWriter & writer, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::Write", result);

    for (CElement * element : mElements) {
        // Elements with the number 0 are passed over, intended: they carry no key that a writer could use.
        if (element->PsId() != 0)
            result = element->Write(writer, context);
        if (!result)
            break;
    }
    return result;
}

std::uint64_t CSubsystemConfig::Size()
{
    std::uint64_t result = 0;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::Size", result);

    for (const CElement * element : mElements)
        result += element->Size();
    return result;
}

unsigned short CSubsystemConfig::Type()
{
    ZYN_TRACE_IN("VrexZynConfigTools::CSubsystemConfig::Type", 2, "-> CSubsystemConfig::Type <-returning %d",
        static_cast<int>(mType));
    return mType;
}

CElement & CSubsystemConfig::Element(std::uint32_t id)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::Element");

    // Of several elements with one number the one added last answers, intended; the form with a text gives the first.
    return ElementOrNull(mIndex->IsExact() ? mIndex->LastWithId(id) : WalkToLast(id));
}

CElement & CSubsystemConfig::Element(const std::string & key)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::Element");

    const CElementIndex::NameKey name = CElementIndex::KeyOf(key);
    const bool isIndexed = mIndex->IsExact() && name.mIsPlainText && !CTheMsgHnd::DebugActivated();
    return ElementOrNull(isIndexed ? mIndex->FirstPlainNamed(name) : FirstSelected(key));
}

const std::list<CElement *> & CSubsystemConfig::Elements()
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::Elements");
    return mElements;
}

const std::list<CElement *> CSubsystemConfig::Elements(std::uint32_t id)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::Elements");

    if (mIndex->IsExact())
        return mIndex->AllWithId(id);
    std::list<CElement *> elements;
    std::copy_if(mElements.begin(), mElements.end(), std::back_inserter(elements),
        [id](const CElement * element) { return element->PsId() == id; });
    return elements;
}

bool CSubsystemConfig::ElementsIsEmpty(std::uint32_t id)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::ElementsIsEmpty", result);

    // The first element with the number decides; further ones aren't looked at.
    const CElement * first = FirstWithId(id);
    return result = first == nullptr || first->PayloadCollectionSize() == 0;
}

void CSubsystemConfig::RemoveElement(std::uint32_t id, const std::vector<std::uint32_t> * indices)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::RemoveElement");

    while (RemoveElement(ElementIterator(id, indices))) {
        // until nothing more is selected
    }
}

void CSubsystemConfig::RemoveElement(const std::string & key, const std::vector<std::uint32_t> * indices)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::RemoveElement");

    while (RemoveElement(ElementIterator(key, indices))) {
        // until nothing more is selected
    }
}

CBaseContext & CSubsystemConfig::Context()
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::Context");
    return *mContext;
}

void CSubsystemConfig::MergeContext(CBaseContext & source, bool overwrite)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::MergeContext");

    for (const auto & [key, value] : source.Tags()) {
        if (overwrite || mContext->TagMatches(key, keywords::EMPTY))
            mContext->SetTag(key, value);
    }
}

bool CSubsystemConfig::OnElementFound(CElement * element, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::OnElementFound", result);

    if (element == nullptr || element == &CNullElement::Ref())
        return result;   // nothing to keep, and the null element is nobody's to delete
    std::unique_ptr<CElement> incoming(element);
    if (mDiscards)
        return result;

    std::vector<std::uint32_t> indices = CollectIndices(context);
    if (!indices.empty()) {
        // The row shares the payloads until it is built, so that they have an owner if building it fails.
        auto row = std::make_unique<CIndexedElement>(
            element->PsId(), element->Name(), indices, element->GetPayloadCopy(false), true);
        element->TransferPayload();
        if (IMetadata const * metadata = element->Metadata())
            row->Use(*metadata);
        incoming = std::move(row);
    }
    InsertOrReplaceElement(incoming, context);
    return result;
}

std::vector<std::uint32_t> CSubsystemConfig::CollectIndices(IConfigContext & context)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::CollectIndices");

    CContextFacts * facts = CContextFacts::Of(context);
    return facts != nullptr ? facts->ReadOptions(context).mIndices : CContextFacts::IndicesOf(context);
}

bool CSubsystemConfig::InsertOrReplaceElement(std::unique_ptr<CElement> & element, IConfigContext & context)
{
    bool result = true;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::InsertOrReplaceElement", result);

    CContextFacts * facts = CContextFacts::Of(context);
    const InsertModeEnum mode =
        facts != nullptr ? facts->ReadOptions(context).mInsertMode : CContextFacts::InsertModeOf(context);
    if (mode != InsertModeEnum::ADD) {
        const auto stored = FindSame(*element);
        if (stored != mElements.end()) {
            // A replaced element is no new one: the observer isn't told, intended.
            if (mode == InsertModeEnum::OVERWRITE)
                ReplaceElement(stored, element);
            return result = mode == InsertModeEnum::OVERWRITE;
        }
    }
    CElement * added = element.get();
    Append(element);
    if (mObserver != nullptr)
        mObserver->OnElementFound(added, context);
    return result;
}

bool CSubsystemConfig::GetNameAndIndices(
    const std::string & key, std::string & name, std::vector<std::uint32_t> & indices)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::GetNameAndIndices", result);

    std::size_t dot = key.find('.');
    if (dot != std::string::npos)
        name = key.substr(0, dot);
    while (dot != std::string::npos) {
        const std::size_t begin = dot + 1;
        dot = key.find('.', begin);
        const std::string_view piece =
            std::string_view(key).substr(begin, dot == std::string::npos ? dot : dot - begin);
        indices.push_back(static_cast<std::uint32_t>(stringutil::DecimalToInt(piece)));
    }
    return result = !indices.empty();
}

CSubsystemConfig::Query CSubsystemConfig::ParseKey(
    const std::string & key, const std::vector<std::uint32_t> * indices)
{
    Query query;
    query.mIsIndexed = GetNameAndIndices(key, query.mName, query.mIndices);
    if (!query.mIsIndexed)
        query.mName = key;
    if (indices != nullptr) {
        query.mIndices = *indices;
        query.mIsIndexed = true;
    }
    int number = 0;
    query.mIsNumber = stringutil::StringToInteger(query.mName, number);
    query.mNumber = static_cast<std::uint32_t>(number);
    // A text such as "12abc" is no number but leaves 12, and its name isn't lowered then, intended: it is found only
    // if it is written in lower case.
    if (number == 0)
        query.mName = stringutil::ToLower(std::move(query.mName));
    return query;
}

CSubsystemConfig::ElementList::iterator CSubsystemConfig::ElementIterator(
    const std::string & key, const std::vector<std::uint32_t> * indices)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::ElementIterator");

    const Query query = ParseKey(key, indices);
    if (mIndex->IsExact() && query.mIsNumber)
        return mIndex->FirstNumbered(query.mNumber, query.mIndices);
    if (mIndex->IsExact() && !query.mName.empty())
        return mIndex->FirstNamed(query.mName, query.mIndices);
    return std::find_if(mElements.begin(), mElements.end(),
        [&query](const CElement * element) { return query.Names(*element) && query.Selects(*element); });
}

CSubsystemConfig::ElementList::iterator CSubsystemConfig::ElementIterator(
    std::uint32_t id, const std::vector<std::uint32_t> * indices)
{
    ZYN_SENTRY("VrexZynConfigTools::CSubsystemConfig::ElementIterator");

    // By way of the text, intended: above 2147483647 it is no number there but a name, and selects by name.
    return ElementIterator(std::to_string(id), indices);
}

bool CSubsystemConfig::RemoveElement(ElementList::iterator position)
{
    bool result = false;
    ZYN_SENTRY_RESULT("VrexZynConfigTools::CSubsystemConfig::RemoveElement", result);

    if (position == mElements.end())
        return result;
    mIndex->Remove(position);
    const std::unique_ptr<CElement> removed(*position);
    mElements.erase(position);
    OnElementGone(removed.get(), nullptr);
    return result = true;
}

CElement * CSubsystemConfig::WalkToLast(std::uint32_t id) const
{
    const auto found = std::find_if(
        mElements.rbegin(), mElements.rend(), [id](const CElement * element) { return element->PsId() == id; });
    return found != mElements.rend() ? *found : nullptr;
}

CElement * CSubsystemConfig::FirstSelected(const std::string & key)
{
    const auto found = ElementIterator(key, nullptr);
    return found != mElements.end() ? *found : nullptr;
}

const CElement * CSubsystemConfig::FirstWithId(std::uint32_t id) const
{
    if (mIndex->IsExact())
        return mIndex->FirstWithId(id);
    const auto found = std::find_if(
        mElements.begin(), mElements.end(), [id](const CElement * element) { return element->PsId() == id; });
    return found != mElements.end() ? *found : nullptr;
}

CSubsystemConfig::ElementList::iterator CSubsystemConfig::FindSame(CElement & element)
{
    if (mIndex->IsExact())
        return mIndex->FirstSame(element);
    return std::find_if(mElements.begin(), mElements.end(),
        [&element](const CElement * stored) { return stored->Same(element); });
}

void CSubsystemConfig::Append(std::unique_ptr<CElement> & element)
{
    ElementList place(1, element.get());
    mIndex->Append(place.begin());
    mElements.splice(mElements.end(), place);
    element.release();   // the list owns it now
}

void CSubsystemConfig::ReplaceElement(ElementList::iterator position, std::unique_ptr<CElement> & successor)
{
    mIndex->Replace(position, *successor);
    const std::unique_ptr<CElement> former(*position);
    *position = successor.release();   // the list owns it now
    OnElementGone(former.get(), *position);
}

void CSubsystemConfig::OnElementGone(const CElement * element, CElement * successor)
{
    if (mWinners != nullptr)
        mWinners->OnElementGone(element, successor);
}

}   // namespace VrexZynConfigTools
