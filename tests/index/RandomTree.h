#pragma once
#include <sys/stat.h>

#include <random>
#include <string>
#include <vector>

#include "support/TemporaryFolder.h"

/// A small tree on disk with everything that a scan can meet. The same seed makes the same tree.
class RandomTree {
  public:
    RandomTree(const TemporaryFolder& folder, unsigned seed) : folder_(folder), random_(seed) {
        for (int i = 0; i < 150; i++) addEntry(folders_[below(folders_.size())]);
    }

  private:
    size_t below(size_t n) { return random_() % n; }
    std::string name() {
        static constexpr const char* kNames[] = {
            "readme.txt", ".hidden",     "node_modules", "x.framework",
            "Pack.app",   "back~",       "~tmp",         "e\u0301te\u0301",
            "\u00E9",     "bad\xFF\xFE", "a b",          "UPPER",
            "src",        "Makefile",    "line\nbreak",  "*"};
        if (below(12) == 0) return std::string(255, static_cast<char>('a' + below(26)));
        return std::string(kNames[below(std::size(kNames))]) +
               (below(2) ? std::to_string(below(9)) : "");
    }
    void addEntry(std::string parent) {
        const std::string path = parent + (parent.empty() ? "" : "/") + name();
        struct stat status;
        if (path.size() > 2000 || lstat(folder_.at(path).c_str(), &status) == 0) return;
        static constexpr const char* kTargets[] = {".", "..", "nowhere"};
        switch (below(8)) {
            case 0:
            case 1:
            case 2:
                folder_.folder(path);
                folders_.push_back(path);
                break;
            case 3:
                folder_.link(path, kTargets[below(3)]);
                break;
            case 4:
                mkfifo(folder_.at(path).c_str(), 0600);
                break;
            default:
                (void)mknod(folder_.at(path).c_str(), S_IFREG | 0600, 0);
        }
    }

    const TemporaryFolder& folder_;
    std::mt19937 random_;
    std::vector<std::string> folders_{""};
};
