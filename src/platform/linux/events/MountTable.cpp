#include "platform/linux/events/MountTable.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

namespace {

std::string unescaped(std::string_view text) {
    std::string plain;
    while (!text.empty()) {
        const std::string_view digits = text[0] == '\\' ? text.substr(1, 3) : "";
        const bool isEscape = digits.size() == 3 && digits[0] <= '3' &&
                              digits.find_first_not_of("01234567") == std::string_view::npos;
        plain += isEscape ? static_cast<char>((digits[0] - '0') * 64 + (digits[1] - '0') * 8 +
                                              (digits[2] - '0'))
                          : text[0];
        text.remove_prefix(isEscape ? 4 : 1);
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

bool MountTable::has(const std::string& path) const {
    return std::any_of(mounts_.begin(), mounts_.end(),
                       [&](const auto& mount) { return mount.second == path; });
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
