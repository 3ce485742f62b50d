#pragma once
#include <functional>
#include <map>
#include <string>
#include <vector>

/// The ways into the running program from outside: a second start of it, the desktop's own key
/// settings, a launcher, a link. At most one program a session has them.
/// Owner:   main. Threads: main.
/// Fails:   silently: where there is nothing to claim them from, nobody ever asks.
class EntryPoints {
  public:
    struct Requests {
        std::function<void()> activate;                           // bring the window up
        std::map<std::string, std::function<void()>> actions;     // what may be asked for by name
        std::function<void(std::vector<std::string> urls)> open;  // links and files
    };
    /// What a start wants of the instance that runs already; neither: nothing.
    struct Wish {
        std::string action = {};
        std::vector<std::string> urls = {};
    };
    virtual ~EntryPoints() = default;
    /// False: another instance has them, and was told the wish; leave. The requests are called as
    /// often as somebody outside asks.
    virtual bool claim(Requests requests, const Wish& wish) = 0;
};
