// bench_language [-t THREADS] [-n REPEATS] ROOT QUERY...: indexes ROOT with metadata and prints for
// each QUERY "query<TAB>QUERY<TAB>matches<TAB>milliseconds" with the median.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <vector>

#include "index/FSScanner.h"
#include "platform/FileTypes.h"
#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RegexSearch.h"
#include "searchmodes/rankStringInSearchMode.h"
#include "support/PlainCache.h"
#include "util/ProcessFlags.h"
#include "util/Unicode.h"

namespace {

void scan(PlainCache& plain, const FileURL& root) {
    FSScanner& scanner = FSScanner::sharedInstance();
    auto end = ReverseSemaphore::initWithCount(1);
    scanner.contentsOfDirectory(
        root,
        {.projectSearchFolderURL = root, .cache = plain.cache, .projectFolderCountSemaphore = end});
    end->wait();
    scanner.scanDirectoryQ().waitUntilAllOperationsAreFinished();
}

/// As a key stroke has it: what is compiled and parsed is part of it.
double searchOnce(Cache& cache, std::u16string_view query, unsigned threads, int64_t& total) {
    const auto begin = std::chrono::steady_clock::now();
    RankRequest request;
    request.searchString = query;
    request.numberOfThreads = threads;
    request.processMetadata = true;
    request.makeRegexEngine = RegexSearch::maker(query, nullptr);
    request.makeMetadataEngine = MetaDataSearch::engineMaker(query, std::time(nullptr));
    cache.performBlockReadOnly([&](const ReadSection& section) {
        total = 0;
        rankStringInSearchMode(section, cache, request, total);
    });
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

}  // namespace

int main(int argc, char** argv) {
    unsigned threads = 2;
    int repeats = 5;
    for (int option; (option = getopt(argc, argv, "+t:n:")) != -1;) {
        if (option == 't')
            threads = static_cast<unsigned>(std::max(1, std::atoi(optarg)));
        else if (option == 'n')
            repeats = std::max(1, std::atoi(optarg));
        else
            return 2;
    }
    if (optind + 2 > argc) return 2;
    const std::unique_ptr<char, decltype(&std::free)> root(realpath(argv[optind], nullptr),
                                                           std::free);
    if (!root) {
        std::perror(argv[optind]);
        return 1;
    }
    PlainCache plain;
    processFlags.processMetadata = true;
    scan(plain, FileURL(root.get()));
    for (int i = optind + 1; i < argc; i++) {
        const std::u16string query = toUtf16Lenient(argv[i]);
        std::vector<double> times;
        int64_t total = 0;
        for (int j = 0; j < repeats; j++)
            times.push_back(searchOnce(*plain.cache, query, threads, total));
        std::sort(times.begin(), times.end());
        std::printf("query\t%s\t%lld\t%.3f\n", argv[i], static_cast<long long>(total),
                    times[times.size() / 2]);
    }
}
