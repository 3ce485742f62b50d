#pragma once
#include <string>

/// What is copied for other programs.
/// Owner:   main. Threads: main.
class Pasteboard {
  public:
    virtual ~Pasteboard() = default;
    /// Text as bytes: the name of a file need not be valid UTF-8.
    virtual void setString(const std::string& text) = 0;
};
