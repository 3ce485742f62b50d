#pragma once
#include <string>
#include <utility>
#include <variant>

/// What went wrong, in words that can be shown.
struct Error {
    std::string domain;              // "posix", "settings" ...
    int code = 0;                    // errno where domain is "posix"
    std::string description;         // what could not be done
    std::string failureReason = {};  // why
    std::string recoverySuggestion = {};
};

/// A value, or the error that stood in its way. Nothing throws.
template <class T>
class [[nodiscard]] Result {
  public:
    Result(T value) : state_(std::move(value)) {}      // NOLINT: implicit on purpose
    Result(Error error) : state_(std::move(error)) {}  // NOLINT
    explicit operator bool() const { return state_.index() == 0; }
    T& value() { return std::get<0>(state_); }
    const T& value() const { return std::get<0>(state_); }
    const Error& error() const { return std::get<1>(state_); }

  private:
    std::variant<T, Error> state_;
};

template <>
class [[nodiscard]] Result<void> {
  public:
    Result() = default;
    Result(Error error) : failed_(true), error_(std::move(error)) {}  // NOLINT
    explicit operator bool() const { return !failed_; }
    const Error& error() const { return error_; }

  private:
    bool failed_ = false;
    Error error_;
};
