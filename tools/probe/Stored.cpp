#include "Stored.h"

#include "Fields.h"
#include "Surrogates.h"
#include "util/Unicode.h"

namespace {

template <class F>
json withTexts(const json& value, const F& translated) {
    if (value.is_string()) return translated(value.get_ref<const std::string&>());
    if (!value.is_structured()) return value;
    json out(value.type());
    for (const auto& [key, each] : value.items()) {
        if (value.is_object())
            out[translated(key)] = withTexts(each, translated);
        else
            out.push_back(withTexts(each, translated));
    }
    return out;
}

}  // namespace

json storedFromCarried(const json& value) {
    return withTexts(value, [](const std::string& text) {
        const auto bytes = pathFromCarried(text);
        if (!bytes) throw OpError("a stored text must not hold a lone surrogate that is no byte");
        return pathToText(*bytes);
    });
}

json carriedFromStored(const json& value) {
    return withTexts(value,
                     [](const std::string& text) { return carriedFromPath(textToPath(text)); });
}
