#pragma once
#include <string>
#include <vector>

/// Lines of a file descriptor, each at most kMaxLength bytes long: of a longer one the rest is read
/// and dropped, so that no input can take all memory.
/// Owner:   the console. Threads: one. Does not own the descriptor.
/// Fails:   a read error ends the lines like the end of input.
class LineReader {
  public:
    static constexpr size_t kMaxLength = size_t{64} << 20;
    enum class Status { line, tooLong, end };

    explicit LineReader(int descriptor) : descriptor_(descriptor) {}
    /// Without the line break; what stands behind the last one is a line if there is anything.
    Status next(std::string& line);

  private:
    bool fill();

    const int descriptor_;
    std::vector<char> buffer_ = std::vector<char>(size_t{1} << 16);
    size_t at_ = 0;
    size_t end_ = 0;
};
