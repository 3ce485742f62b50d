#pragma once
#include <functional>

/// The ways into the running program from outside: a second start of it, the desktop's own key
/// settings, a launcher. At most one program a session has them.
/// Owner:   main. Threads: main.
/// Fails:   silently: where there is nothing to claim them from, nobody ever asks.
class EntryPoints {
  public:
    virtual ~EntryPoints() = default;
    /// False: another instance has them and was told to show itself; leave. The blocks are called
    /// as often as somebody outside asks: to bring the window up, and to bring it up or away.
    virtual bool claim(std::function<void()> onActivate, std::function<void()> onToggle) = 0;
};
