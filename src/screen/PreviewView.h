#pragma once
#include <memory>
#include <string>
#include <vector>

#include "util/Picture.h"

/// What the preview shows. Texts are UTF-8; whatever they hold is shown as plain text.
struct PreviewContent {
    enum class Kind { properties, text, picture, folder, loading };
    struct Entry {
        std::string iconName, name;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    struct Fact {
        std::string name, value;
        friend bool operator==(const Fact&, const Fact&) = default;
    };
    Kind kind = Kind::properties;
    std::string iconName = {};  // freedesktop icon name
    std::string name = {};
    std::string text = {};
    std::vector<Entry> entries = {};
    std::shared_ptr<const Picture> picture = {};
    std::vector<Fact> facts = {};
    std::string message = {};
};

/// A panel beside the search window, which keeps the keyboard. Main thread.
class PreviewView {
  public:
    virtual ~PreviewView() = default;
    virtual void show() = 0;
    virtual void hide() = 0;
    virtual bool isVisible() const = 0;
    virtual void setContent(const PreviewContent& content) = 0;
    /// The longest side that a picture has in it, in device pixels.
    virtual uint32_t picturePixels() const = 0;
};
