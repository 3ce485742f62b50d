#pragma once
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "util/FileURL.h"

using json = nlohmann::json;

/// Ends an op: its text becomes the reply's "error". Thrown by ops and by Fields, caught by the
/// console, on the main thread.
class OpError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Typed reading of a request, or of an object inside one, in carried form (Surrogates.h). What is
/// missing, ill-typed or out of range throws an OpError that names the field. An optional field is
/// read with a fallback; it may also be null.
/// Threads: main. Borrows the object.
class Fields {
  public:
    /// where stands before the names in errors: "rules[2].".
    explicit Fields(const json& object, std::string where = {});

    /// As it came; null where it is left out.
    const json* find(std::string_view name) const;
    std::u16string text(std::string_view name) const;
    /// A word of the op's own: UTF-8.
    std::string word(std::string_view name) const;
    std::string word(std::string_view name, std::string_view fallback) const;
    /// Bytes without NUL; absolutePath begins with a slash and has none at its end.
    FileURL path(std::string_view name) const;
    FileURL absolutePath(std::string_view name) const;
    bool boolean(std::string_view name, bool fallback) const;
    template <class T>
    T integer(std::string_view name) const {
        const json& value = get(name);
        if (value.is_number_unsigned()) {
            const auto number = value.get<uint64_t>();
            if (std::in_range<T>(number)) return static_cast<T>(number);
        } else if (value.is_number_integer()) {
            const auto number = value.get<int64_t>();
            if (std::in_range<T>(number)) return static_cast<T>(number);
        } else {
            illTyped(name, "a whole number");
        }
        illTyped(name, "a whole number from " + std::to_string(std::numeric_limits<T>::min()) +
                           " to " + std::to_string(std::numeric_limits<T>::max()));
    }
    template <class T>
    T integer(std::string_view name, T fallback) const {
        return find(name) ? integer<T>(name) : fallback;
    }
    Fields object(std::string_view name) const;
    std::vector<Fields> objects(std::string_view name) const;
    const json& list(std::string_view name) const;

    [[noreturn]] void illTyped(std::string_view name, std::string_view expected) const;

  private:
    const json& get(std::string_view name) const;
    const std::string& string(std::string_view name, std::string_view expected) const;

    const json& object_;
    std::string where_;
};

/// The path that a string of a request stands for; nothing for what is none.
std::optional<FileURL> pathFromJson(const json& value);
