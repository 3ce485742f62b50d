#pragma once
#include <xcb/xcb.h>

#include <cstdint>
#include <vector>

/// Keys that the X server gives to this program alone. It keeps two books of such keys that know
/// nothing of each other; a key counts as free only if nobody has it in either.
/// Owner:   LinuxHotKeys. Threads: main. Grabbing waits for the X server.
class KeyGrabs {
  public:
    explicit KeyGrabs(xcb_connection_t* x);
    ~KeyGrabs() { ungrab(); }
    KeyGrabs(const KeyGrabs&) = delete;
    KeyGrabs& operator=(const KeyGrabs&) = delete;

    /// Each key with these modifiers, whatever locks are on. All or none: false, somebody has one.
    bool grab(const std::vector<xcb_keycode_t>& keys, uint16_t modifiers,
              const std::vector<uint16_t>& lockStates);
    void ungrab();
    bool has(xcb_keycode_t key) const;

  private:
    struct Grab {
        xcb_keycode_t key;
        uint16_t modifiers;
    };
    bool isFreeInSecondBook(xcb_keycode_t key, const std::vector<uint32_t>& modifiers) const;

    xcb_connection_t* const x_;
    xcb_window_t root_;
    std::vector<Grab> grabs_;
};
