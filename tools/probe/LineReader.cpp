#include "LineReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

bool LineReader::fill() {
    ssize_t got;
    do got = read(descriptor_, buffer_.data(), buffer_.size());
    while (got < 0 && errno == EINTR);
    at_ = 0;
    end_ = got > 0 ? static_cast<size_t>(got) : 0;
    return end_ > 0;
}

LineReader::Status LineReader::next(std::string& line) {
    line.clear();
    bool tooLong = false;
    bool any = false;
    while (at_ < end_ || fill()) {
        any = true;
        const auto from = buffer_.begin() + static_cast<ptrdiff_t>(at_);
        const auto end = buffer_.begin() + static_cast<ptrdiff_t>(end_);
        const auto lineBreak = std::find(from, end, '\n');
        const auto length = static_cast<size_t>(lineBreak - from);
        tooLong = tooLong || line.size() + length > kMaxLength;
        if (!tooLong) line.append(from, lineBreak);
        at_ += length;
        if (lineBreak == end) continue;
        at_++;
        return tooLong ? Status::tooLong : Status::line;
    }
    if (!any) return Status::end;
    return tooLong ? Status::tooLong : Status::line;
}
