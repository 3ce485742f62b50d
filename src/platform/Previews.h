#pragma once
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "util/FileURL.h"
#include "util/Picture.h"

/// What there is to see of a file without opening it. Texts are bytes and may hold anything.
struct Preview {
    enum class Kind : uint8_t { properties, text, picture, folder };
    struct Fact {
        std::string name, value;
        friend bool operator==(const Fact&, const Fact&) = default;
    };
    struct Entry {
        std::string name;
        bool isFolder = false;
        friend bool operator==(const Entry&, const Entry&) = default;
    };
    Kind kind = Kind::properties;
    bool isFolder = false;            // the item is one, readable or not
    std::string text = {};            // the file's beginning
    std::vector<Entry> entries = {};  // of a folder, the first ones
    std::shared_ptr<const Picture> picture = {};
    std::vector<Fact> facts = {};  // size, date, length...
    std::string message = {};      // why there is no more than this
};

/// Makes previews. One at a time: a new request takes the place of the one before.
/// Threads: main. Fails: with a Preview that has nothing but a message.
class Previews {
  public:
    struct Request {
        FileURL url;
        uint32_t pixels = 0;  // longest side of a picture
    };
    /// Called once, on the main thread; never after the request was replaced or cancelled.
    using Answer = std::function<void(const Preview&)>;

    virtual ~Previews() = default;
    /// Returns at once, whatever the file is on.
    virtual void request(const Request& request, Answer answer) = 0;
    virtual void cancel() = 0;
};
