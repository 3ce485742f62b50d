#pragma once
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "platform/linux/events/MountTable.h"
#include "util/FileURL.h"

/// A process that changes a folder at full speed: makes, writes, removes and moves files and whole
/// folders, inside, out and in, swaps them and lets one take the name of another; where it may, it
/// mounts disks in memory over them. It waits for begin(); the same seed makes the same choices.
/// Owner:   a test; to be made before the test has threads.
class EventStorm {
  public:
    EventStorm(const FileURL& root, const FileURL& outside, unsigned seed, int operations)
        : root_(root.path()), outside_(outside.path() + "/" + std::to_string(seed)), random_(seed) {
        if (pipe(gate_) != 0) return;
        child_ = fork();
        if (child_ != 0) return;
        close(gate_[1]);
        char byte = 0;
        if (read(gate_[0], &byte, 1) == 1) run(operations);
        _exit(0);
    }
    ~EventStorm() {
        close(gate_[1]);
        wait();
        close(gate_[0]);
        unmountAll();
    }
    /// Not while a storm goes on: of a disk that comes and goes between two looks at the table of
    /// mounts the kernel tells nobody. One that another hides goes once that is away.
    void unmountAll() const {
        for (bool any = true; any;) {
            any = false;
            std::ostringstream table;
            table << std::ifstream("/proc/self/mountinfo").rdbuf();
            for (const auto& [number, path] : MountTable::parse(table.str()))
                if (path.starts_with(root_ + "/") || path.starts_with(outside_ + "/"))
                    any |= umount2(path.c_str(), MNT_DETACH) == 0;
        }
    }
    /// Without mounts less is tried, and the result of a test should say so.
    static bool mayMount() { return geteuid() == 0; }
    EventStorm(const EventStorm&) = delete;
    EventStorm& operator=(const EventStorm&) = delete;

    void begin() const { EXPECT_EQ(write(gate_[1], "x", 1), 1); }
    bool hasEnded() {
        if (child_ > 0 && waitpid(child_, nullptr, WNOHANG) == child_) child_ = -1;
        return child_ < 0;
    }
    void wait() {
        if (child_ > 0) waitpid(child_, nullptr, 0);
        child_ = -1;
    }

  private:
    unsigned below(unsigned count) { return static_cast<unsigned>(random_() % count); }
    const std::string& anyFolder() { return folders_[below(unsigned(folders_.size()))]; }
    std::string anyName(const char* kind) {
        return anyFolder() + "/" + std::to_string(below(12)) + kind;
    }
    static void touch(const std::string& path, int flags = O_CREAT | O_WRONLY) {
        const int file = open(path.c_str(), flags, 0600);
        if (file < 0) return;
        if (flags & O_APPEND) static_cast<void>(!::write(file, "x", 1));
        close(file);
    }
    void makeFolders(const std::string& path) {
        for (const char* end : {"", "/x", "/x/y"}) {
            mkdir((path + end).c_str(), 0700);
            folders_.push_back(path + end);
            touch(path + end + "/leaf");
        }
    }
    void move(const std::string& from, const std::string& to, unsigned flags = 0) {
        if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0)
            folders_.push_back(to);
    }

    void mountOver(const std::string& path) {
        mkdir(path.c_str(), 0700);
        if (mount("none", path.c_str(), "tmpfs", 0, "size=1m") == 0) makeFolders(path + "/in");
    }
    void run(int operations) {
        folders_ = {root_};
        mkdir(outside_.c_str(), 0700);
        for (int i = 0; i < operations; i++) {
            one(i);
            if (folders_.size() > 200) folders_.erase(folders_.begin() + 1, folders_.begin() + 100);
        }
    }
    void one(int number) {
        const std::string folder = anyFolder();
        const bool isRoot = folder == root_;
        switch (below(17)) {
            case 0:
            case 1:
                return makeFolders(anyName(""));
            case 2:
            case 3:
                return touch(anyName("f"));
            case 4:
                return touch(anyName("f"), O_WRONLY | O_APPEND);
            case 5:
                unlink(anyName("f").c_str());
                return;
            case 6:
                rename(anyName("f").c_str(), anyName("f").c_str());
                return;
            case 7:
            case 8:
                return isRoot ? void() : move(folder, anyName(""));
            case 9:
                return isRoot ? void() : move(folder, anyName(""), RENAME_EXCHANGE);
            case 10:
                return isRoot ? void() : move(folder, outside_ + "/" + std::to_string(number));
            case 11:
                makeFolders(outside_ + "/in");
                return move(outside_ + "/in", anyName(""));
            case 12:  // a folder becomes a file, or a file a folder
                if (!isRoot && rmdir(folder.c_str()) == 0) return touch(folder);
                if (const std::string file = anyName("f"); unlink(file.c_str()) == 0)
                    mkdir(file.c_str(), 0700);
                return;
            case 13:
                static_cast<void>(!symlink(anyFolder().c_str(), anyName("l").c_str()));
                return;
            case 14:
                chmod(folder.c_str(), 0750);
                unlink(anyName("l").c_str());
                return;
            case 15:
                return isRoot ? void() : mountOver(below(2) ? folder : anyName(""));
            default:
                if (isRoot) return;
                for (const char* end : {"/x/y/leaf", "/x/leaf", "/leaf"})
                    unlink((folder + end).c_str());
                for (const char* end : {"/x/y", "/x", ""}) rmdir((folder + end).c_str());
        }
    }

    std::string root_, outside_;
    std::mt19937 random_;
    std::vector<std::string> folders_;
    int gate_[2] = {-1, -1};
    pid_t child_ = -1;
};
