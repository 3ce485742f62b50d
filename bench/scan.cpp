// bench_scan ROOT [-m] [-n REPEATS]: indexes ROOT with the real scanner and Cache, metadata on with
// -m, and prints a line of NAME=VALUE words a repeat, the last one with the medians: seconds, items
// and the growth of resident memory in bytes an item.
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "index/FSScanner.h"
#include "index/checkTree.h"
#include "platform/FileTypes.h"
#include "util/ProcessFlags.h"
#include "util/World.h"

namespace {

class NoPackages : public FileTypes {
  public:
    bool isFilePackageAtPath(const FileURL&) const override { return false; }
    std::string iconNameForItem(const FileURL&, uint8_t) const override { return {}; }
};

class Observer : public IndexObserver {
  public:
    Cache* currentCache() override { return cache; }
    void removeFilteredItem(const fs_item_t*) override {}
    void consolidateFilteredList() override {}
    bool hasMarkedPaths() override { return false; }
    void updatePathCachesAfterRemovePath(const FileURL&) override {}
    void updatePathCachesAfterRename(const FileURL&, const FileURL&) override {}

    Cache* cache = nullptr;
};

double residentBytes() {
    malloc_trim(0);
    long total = 0, resident = 0;
    if (FILE* file = std::fopen("/proc/self/statm", "r")) {
        if (std::fscanf(file, "%ld %ld", &total, &resident) != 2) resident = 0;
        std::fclose(file);
    }
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE));
}

struct Figures {
    double seconds, items, bytes;
};

Figures scanOnce(const FileURL& root) {
    const NoPackages fileTypes;
    Observer observer;
    FSScanner& scanner = FSScanner::sharedInstance();
    const double before = residentBytes();
    const auto begin = std::chrono::steady_clock::now();
    auto cache = std::make_shared<Cache>(observer, fileTypes);
    observer.cache = cache.get();
    auto end = ReverseSemaphore::initWithCount(1);
    scanner.contentsOfDirectory(
        root, {.projectSearchFolderURL = root, .cache = cache, .projectFolderCountSemaphore = end});
    end->wait();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    scanner.scanDirectoryQ().waitUntilAllOperationsAreFinished();
    const auto items = static_cast<double>(cache->count());
    return {seconds.count(), items, (residentBytes() - before) / items};
}

double median(std::vector<Figures> all, double Figures::*field) {
    std::sort(all.begin(), all.end(),
              [field](const Figures& a, const Figures& b) { return a.*field < b.*field; });
    return all[all.size() / 2].*field;
}

}  // namespace

int main(int argc, char** argv) {
    bool withMetadata = false;
    int repeats = 1;
    for (int option; (option = getopt(argc, argv, "mn:")) != -1;) {
        if (option == 'm')
            withMetadata = true;
        else if (option == 'n')
            repeats = std::atoi(optarg);
        else
            return 2;
    }
    if (optind + 1 != argc || repeats < 1) {
        std::fprintf(stderr, "usage: bench_scan ROOT [-m] [-n REPEATS]\n");
        return 2;
    }
    World world;
    processFlags.processMetadata = withMetadata;
    std::unique_ptr<char, decltype(&std::free)> root(realpath(argv[optind], nullptr), std::free);
    if (!root) {
        std::perror(argv[optind]);
        return 1;
    }
    std::vector<Figures> all;
    for (int i = 0; i < repeats; i++) {
        all.push_back(scanOnce(FileURL(root.get())));
        const Figures& last = all.back();
        std::printf("seconds=%.4f items=%.0f bytes=%.1f\n", last.seconds, last.items, last.bytes);
    }
    if (repeats > 1)
        std::printf("seconds=%.4f items=%.0f bytes=%.1f\n", median(all, &Figures::seconds),
                    median(all, &Figures::items), median(all, &Figures::bytes));
}
