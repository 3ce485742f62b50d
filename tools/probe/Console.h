#pragma once
#include <memory>
#include <string>
#include <string_view>

struct Session;

/// The line console: a JSON object a line in, a JSON object a line out, in the same order. Whatever
/// comes in, each line gets its one reply and the console goes on.
/// Owner:   main. Threads: main.
class Console {
  public:
    Console();
    ~Console();
    /// Until the end of the input; each reply is flushed.
    void run(int input, std::FILE* output);
    std::string reply(std::string_view line);

  private:
    const std::unique_ptr<Session> session_;
};
