#include "Fields.h"

#include "Surrogates.h"

std::optional<FileURL> pathFromJson(const json& value) {
    if (!value.is_string()) return std::nullopt;
    auto bytes = pathFromCarried(value.get_ref<const std::string&>());
    if (!bytes || bytes->find('\0') != std::string::npos) return std::nullopt;
    return FileURL(std::move(*bytes));
}

Fields::Fields(const json& object, std::string where) : object_(object), where_(std::move(where)) {}

void Fields::illTyped(std::string_view name, std::string_view expected) const {
    throw OpError("field '" + where_ + std::string(name) + "' must be " + std::string(expected));
}

const json* Fields::find(std::string_view name) const {
    const auto found = object_.find(name);
    return found == object_.end() || found->is_null() ? nullptr : &*found;
}

const json& Fields::get(std::string_view name) const {
    const auto found = object_.find(name);
    if (found == object_.end())
        throw OpError("field '" + where_ + std::string(name) + "' is missing");
    return *found;
}

const std::string& Fields::string(std::string_view name, std::string_view expected) const {
    const json& value = get(name);
    if (!value.is_string()) illTyped(name, expected);
    return value.get_ref<const std::string&>();
}

std::u16string Fields::text(std::string_view name) const {
    return unitsFromCarried(string(name, "a text"));
}

std::string Fields::word(std::string_view name) const {
    return string(name, "a text");
}

std::string Fields::word(std::string_view name, std::string_view fallback) const {
    return find(name) ? word(name) : std::string(fallback);
}

FileURL Fields::path(std::string_view name) const {
    const auto path = pathFromJson(get(name));
    if (!path) illTyped(name, "a path");
    return *path;
}

FileURL Fields::absolutePath(std::string_view name) const {
    const FileURL url = path(name);
    if (!url.isAbsolute()) illTyped(name, "an absolute path");
    return FileURL::standardized(url.path());
}

bool Fields::boolean(std::string_view name, bool fallback) const {
    const json* value = find(name);
    if (!value) return fallback;
    if (!value->is_boolean()) illTyped(name, "true or false");
    return value->get<bool>();
}

Fields Fields::object(std::string_view name) const {
    const json& value = get(name);
    if (!value.is_object()) illTyped(name, "an object");
    return Fields(value, where_ + std::string(name) + ".");
}

const json& Fields::list(std::string_view name) const {
    const json& value = get(name);
    if (!value.is_array()) illTyped(name, "a list");
    return value;
}

std::vector<Fields> Fields::objects(std::string_view name) const {
    std::vector<Fields> objects;
    for (const json& value : list(name)) {
        const std::string each = std::string(name) + "[" + std::to_string(objects.size()) + "]";
        if (!value.is_object()) illTyped(each, "an object");
        objects.emplace_back(value, where_ + each + ".");
    }
    return objects;
}
