#include <kit/reading/storetags.h>

#include <kit/reporting/advice.h>
#include <kit/text/number.h>

#include <limits>

namespace kit::reading {

namespace {

constexpr int MAX_LAYER = 15;

using StorePlace = std::pair<int, int>;

// Takes the text up to `separator` off the front; all of it where there is no separator.
std::string_view TakePiece(std::string_view & text, char separator)
{
    const std::size_t end = text.find(separator);
    const std::string_view piece = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    return piece;
}

template <typename NumberT>
std::optional<std::map<StorePlace, NumberT>> Parse(
    std::string_view text, int minDevice, NumberT min, NumberT max)
{
    std::map<StorePlace, NumberT> numbers;
    if (!text.empty() && text.back() == ',')
        return std::nullopt;
    while (!text.empty()) {
        std::string_view entry = TakePiece(text, ',');
        const auto device = text::ParseWholeIn(TakePiece(entry, '.'), minDevice, MAX_TAG_NUMBER);
        const auto store = text::ParseWholeIn(TakePiece(entry, ':'), 0, MAX_TAG_NUMBER);
        const auto number = text::ParseWholeIn(entry, min, max);
        if (!device || !store || !number || !numbers.emplace(StorePlace(*device, *store), *number).second)
            return std::nullopt;
    }
    return numbers;
}

template <typename NumberT>
std::string Compose(const std::map<StorePlace, NumberT> & numbers)
{
    std::string text;
    for (const auto & [store, number] : numbers) {
        text += text.empty() ? "" : ",";
        text += std::to_string(store.first) + '.' + std::to_string(store.second) + ':' + std::to_string(number);
    }
    return text;
}

std::string WrongTag(const char * tag, const std::string & value, const char * form)
{
    return "the context tag \"" + std::string(tag) + "\" reads " + reporting::Quoted(value) + "; expected " +
           form;
}

}   // namespace

std::string ComposeStoreLayers(const StoreLayers & layers)
{
    return Compose(layers);
}

std::string ComposeStoreSizes(const StoreSizes & sizes)
{
    return Compose(sizes);
}

std::optional<StoreLayers> ParseStoreLayers(std::string_view text)
{
    return Parse(text, -1, 1, MAX_LAYER);
}

std::optional<StoreSizes> ParseStoreSizes(std::string_view text)
{
    return Parse(text, 0, std::uint32_t{ 0 }, std::numeric_limits<std::uint32_t>::max());
}

std::string WhyNoStoreLayers(VrexZynConfigTools::IConfigContext & context)
{
    const std::string layers = context.GetTag(TAG_STORE_LAYERS);
    return ParseStoreLayers(layers) ? std::string()
                                    : WrongTag(TAG_STORE_LAYERS, layers,
                                          "DEVICE.STORE:LAYER,... in decimal, such as \"1.1:1,15.1:2\"");
}

std::string WhyNoStoreSizes(VrexZynConfigTools::IConfigContext & context)
{
    const std::string sizes = context.GetTag(TAG_STORE_SIZES);
    return ParseStoreSizes(sizes) ? std::string()
                                  : WrongTag(TAG_STORE_SIZES, sizes,
                                        "DEVICE.STORE:SIZE,... in decimal, such as \"1.1:512,15.1:8192\"");
}

}   // namespace kit::reading
