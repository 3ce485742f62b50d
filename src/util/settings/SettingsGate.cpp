#include "util/settings/SettingsGate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

namespace {

using nlohmann::json;

enum class Type {
    boolean,
    integer,
    number,
    string,
    strings,  // list of them
    dictionary,
    dictionaries,  // list of them
    stringOrDictionary,
    numberOrDictionary,
};

struct Rule {
    std::string_view key;
    Type type;
    double min = std::numeric_limits<double>::lowest();
    double max = std::numeric_limits<double>::max();
};

constexpr double kMaxItems = 1'000'000;  // of what is kept in memory and shown as rows
constexpr double kMaxCount = 1e15;       // may still be counted up for ever

constexpr Rule kRules[] = {
    {"actionIgnoreDiacritics", Type::integer},
    {"actionModeIgnoreDiacritics", Type::boolean},
    {"actionModeShowsInternalActions", Type::boolean},
    {"actionModeShowsOpenWithActions", Type::boolean},
    {"browserIgnoreDiacritics", Type::boolean},
    {"browserVisibleItemTypes", Type::integer, 0, 255},
    {"currentProject", Type::stringOrDictionary},  // a virtual project stands there whole
    {"dataproviderIgnoreDiacritics", Type::integer},
    {"debugCache", Type::boolean},
    {"debugFilePromises", Type::boolean},
    {"debugFsEventPath", Type::string},
    {"debugFsEvents", Type::boolean},
    {"debugPerformance", Type::boolean},
    {"debugRules", Type::boolean},
    {"debugScan", Type::boolean},
    {"debugSearch", Type::boolean},
    {"debugSelection", Type::boolean},
    {"defaultFileManager", Type::string},
    {"defaultTerminal", Type::string},
    {"defaultTextEditor", Type::string},
    {"dropChangesSelection", Type::boolean},
    {"dumpCache", Type::boolean},
    {"fontWeight", Type::number, -1, 1},
    {"fullDiskAccess", Type::integer},
    {"globalFolderRules", Type::dictionaries},
    {"globalFoldersToIgnore", Type::dictionaries},
    {"hideSearchFieldAfterAction", Type::boolean},
    {"hideSearchFieldOnDeFocus", Type::boolean},
    {"highlightRegularExpressions", Type::boolean},
    {"history", Type::strings},
    {"historyIgnoreDiacritics", Type::integer},
    {"historyMaxSize", Type::integer, 1, kMaxItems},  // the newest entry always stays
    {"includeNeverWhenCyclingShowMetadataInResult", Type::boolean},
    {"keyboardShortcuts", Type::dictionary},
    {"logLevel", Type::integer, 0, 31},
    {"markedItems", Type::dictionary},
    {"markedItemsIgnoreDiacritics", Type::boolean},
    {"markedItemsMatchFilenameOnly", Type::boolean},
    {"markedItemsVisibleItemTypes", Type::integer, 0, 255},
    {"maxResultsetSize", Type::integer, 0, kMaxItems},
    {"numberOfInvocations", Type::integer, 0, kMaxCount},
    {"previousProject", Type::stringOrDictionary},
    {"previousRealProject", Type::string},
    {"processMetadata", Type::boolean},
    {"projects", Type::dictionaries},
    {"projectsIgnoreDiacritics", Type::boolean},
    {"recentItemsIgnoreDiacritics", Type::boolean},
    {"recentItemsMatchFilenameOnly", Type::boolean},
    {"recentItemsMaxCount", Type::integer, 0, kMaxItems},
    {"recentItemsVisibleItemTypes", Type::integer, 0, 255},
    {"resizableSearchWindow", Type::boolean},
    {"searchPanelTopLeft", Type::dictionary},
    {"searchPanelWidth", Type::numberOrDictionary, 0, kMaxItems},  // a dictionary once it was moved
    {"showMetadata", Type::integer},
    {"showStatusMenu", Type::boolean},
    {"treatBundlesAsFiles", Type::boolean},
    {"userDefinedActions", Type::dictionaries},
    {"warnMoveToTrash", Type::boolean},
    {"warnRemoveRecentDirectory", Type::boolean},
};

static_assert(std::is_sorted(std::begin(kRules), std::end(kRules),
                             [](const Rule& a, const Rule& b) { return a.key < b.key; }));

const Rule* ruleFor(std::string_view key) {
    const auto found =
        std::lower_bound(std::begin(kRules), std::end(kRules), key,
                         [](const Rule& rule, std::string_view k) { return rule.key < k; });
    return found != std::end(kRules) && found->key == key ? found : nullptr;
}

bool isTooDeep(const json& value, int levels) {
    if (!value.is_structured()) return false;
    if (levels == 0) return true;
    return std::any_of(value.begin(), value.end(),
                       [levels](const json& part) { return isTooDeep(part, levels - 1); });
}

Admission changed(json value, const char* complaint = nullptr) {
    return {std::make_shared<const json>(std::move(value)), complaint};
}

Admission wrongType() {
    return {nullptr, "has a value of the wrong type"};
}

Admission admitBoolean(SettingsValue value) {
    if (value->is_boolean()) return {std::move(value)};
    if (*value == 0 || *value == 1) return changed(*value == 1);
    return wrongType();
}

Admission admitNumber(const Rule& rule, SettingsValue value) {
    constexpr const char* kOutOfRange = "is out of range, the nearest value counts";
    if (value->is_boolean()) return changed(value->get<bool>() ? 1 : 0);
    if (!value->is_number()) return wrongType();
    const auto number = value->get<double>();
    if (number < rule.min) return changed(static_cast<int64_t>(rule.min), kOutOfRange);
    if (number > rule.max) return changed(static_cast<int64_t>(rule.max), kOutOfRange);
    const bool whole = value->is_number_integer();
    if (rule.type != Type::integer || (whole && !value->is_number_unsigned()))
        return {std::move(value)};
    constexpr auto kMaxInteger = std::numeric_limits<int64_t>::max();
    if (whole) {
        if (value->get<uint64_t>() <= uint64_t{kMaxInteger}) return {std::move(value)};
        return changed(kMaxInteger, kOutOfRange);
    }
    if (number != std::floor(number) || std::abs(number) > 9e18) return wrongType();
    return changed(static_cast<int64_t>(number));
}

Admission admitList(SettingsValue value, bool (json::*isEntry)() const) {
    if (!value->is_array()) return wrongType();
    const auto isGood = [isEntry](const json& entry) { return (entry.*isEntry)(); };
    if (std::all_of(value->begin(), value->end(), isGood)) return {std::move(value)};
    json kept = json::array();
    std::copy_if(value->begin(), value->end(), std::back_inserter(kept), isGood);
    return changed(std::move(kept), "has entries of the wrong type, they are passed over");
}

Admission admitIf(bool good, SettingsValue value) {
    return good ? Admission{std::move(value)} : wrongType();
}

}  // namespace

Admission admitSetting(std::string_view key, SettingsValue value) {
    if (!value || value->is_null()) return wrongType();
    if (isTooDeep(*value, kMaxSettingsDepth - 1)) return {nullptr, "is nested too deeply"};
    const Rule* rule = ruleFor(key);
    if (!rule) return {std::move(value)};
    const json& v = *value;
    switch (rule->type) {
        case Type::boolean:
            return admitBoolean(std::move(value));
        case Type::integer:
        case Type::number:
            return admitNumber(*rule, std::move(value));
        case Type::strings:
            return admitList(std::move(value), &json::is_string);
        case Type::dictionaries:
            return admitList(std::move(value), &json::is_object);
        case Type::string:
            return admitIf(v.is_string(), std::move(value));
        case Type::dictionary:
            return admitIf(v.is_object(), std::move(value));
        case Type::stringOrDictionary:
            return admitIf(v.is_string() || v.is_object(), std::move(value));
        case Type::numberOrDictionary:
            return v.is_object() ? Admission{std::move(value)}
                                 : admitNumber(*rule, std::move(value));
    }
    return wrongType();
}
