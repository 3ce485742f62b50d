#include "platform/linux/events/MountTable.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

std::string unescaped(std::string_view text) {
    std::string plain;
    for (size_t i = 0; i < text.size(); i++) {
        const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
        if (text[i] == '\\' && i + 3 < text.size() &&
            std::all_of(&text[i + 1], &text[i + 4], isOctal)) {
            plain += static_cast<char>((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 +
                                       (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

}  // namespace

MountTable::MountTable() : handle_(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)) {
    read(mounts_);
}

std::map<int, std::string> MountTable::parse(const std::string& table) {
    // number parent device root point options ...
    constexpr int kPoint = 4;
    std::map<int, std::string> mounts;
    std::string_view rest = table;
    while (!rest.empty()) {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const int number = std::atoi(std::string(line.substr(0, line.find(' '))).c_str());
        for (int i = 0; i < kPoint && !line.empty(); i++)
            line.remove_prefix(std::min(line.find(' '), line.size() - 1) + 1);
        if (!line.empty()) mounts[number] = unescaped(line.substr(0, line.find(' ')));
    }
    return mounts;
}

bool MountTable::read(std::map<int, std::string>& mounts) const {
    if (!handle_ || lseek(handle_.get(), 0, SEEK_SET) != 0) return false;
    std::string table;
    char buffer[16384];
    for (ssize_t got; (got = ::read(handle_.get(), buffer, sizeof buffer)) != 0;) {
        if (got < 0) return false;
        table.append(buffer, static_cast<size_t>(got));
    }
    mounts = parse(table);
    return true;
}

std::vector<MountTable::Change> MountTable::changes() {
    std::vector<Change> changes;
    std::map<int, std::string> now;
    if (!read(now)) return changes;
    for (const auto& [number, path] : mounts_)
        if (const auto found = now.find(number); found == now.end() || found->second != path)
            changes.push_back({path, false});
    for (const auto& [number, path] : now)
        if (const auto found = mounts_.find(number);
            found == mounts_.end() || found->second != path)
            changes.push_back({path, true});
    mounts_ = std::move(now);
    return changes;
}
