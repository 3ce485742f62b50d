#pragma once

/// Looks for newer versions of the program. Where packages do that, there never is a session.
/// Owner:   main. Threads: main.
class Updater {
  public:
    virtual ~Updater() = default;
    virtual void start() = 0;
    /// It is installing one, or asking: the window stays away meanwhile.
    virtual bool sessionInProgress() const = 0;
};
