// bench_rank [-pcu] [-t THREADS] [-n REPEATS] LIST QUERIES: builds a Cache from the paths in
// LIST (one a line, folders with a slash at the end, parents first), types the lines of QUERIES in
// their order and prints "query<TAB>QUERY<TAB>matches<TAB>milliseconds" with the median of each,
// then a line of NAME=VALUE words. -p: whole paths. -c: compares each result with the plainest way.
// -u: processor time of all workers together, for a machine that has other things to do.
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <vector>

#include "searchmodes/rankStringInSearchMode.h"
#include "support/LiteralRanking.h"
#include "support/PlainCache.h"
#include "util/queues/OperationQueue.h"

namespace {

std::vector<std::string> linesOf(const char* path) {
    std::ifstream file(path);
    std::vector<std::string> lines;
    for (std::string line; std::getline(file, line);)
        if (!line.empty()) lines.push_back(line);
    return lines;
}

void fill(PlainCache& cache, const char* list) {
    cache.add("/home", ITEM_DIRECTORY);
    for (std::string& line : linesOf(list)) {
        const bool folder = line.back() == '/';
        if (folder) line.pop_back();
        if (line.starts_with("./")) line.erase(0, 2);
        cache.add("/home/" + line, folder ? ITEM_DIRECTORY : ITEM_FILE);
    }
}

double milliseconds(bool processorTime) {
    timespec time;
    clock_gettime(processorTime ? CLOCK_PROCESS_CPUTIME_ID : CLOCK_MONOTONIC, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) * 1e-6;
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// How long a running search goes on once a newer one wants to begin: the worst of many.
double worstAbort(const Cache& cache, RankRequest request) {
    Relaxed<bool> abort = false;
    request.abortSearch = &abort;
    request.searchString = u"e a";
    double worst = 0;
    OperationQueue queue("searchQ", 1, Qos::userInteractive);
    for (int i = 0; i < 30; i++) {
        abort = false;
        queue.addBlock([&] {
            const_cast<Cache&>(cache).performBlockReadOnly([&](const ReadSection& section) {
                int64_t total = 0;
                rankStringInSearchMode(section, cache, request, total);
            });
        });
        std::this_thread::sleep_for(std::chrono::microseconds(300 * (i % 10)));
        const auto begin = std::chrono::steady_clock::now();
        abort = true;
        queue.waitUntilAllOperationsAreFinished();
        const std::chrono::duration<double, std::milli> time =
            std::chrono::steady_clock::now() - begin;
        worst = std::max(worst, time.count());
    }
    return worst;
}

}  // namespace

int main(int argc, char** argv) {
    RankRequest request;
    request.numberOfThreads = 2;
    int repeats = 5;
    bool check = false, processorTime = false;
    for (int option; (option = getopt(argc, argv, "pcut:n:")) != -1;) switch (option) {
            case 'p':
                request.filenameOnly = false;
                break;
            case 'c':
                check = true;
                break;
            case 'u':
                processorTime = true;
                break;
            case 't':
                request.numberOfThreads = static_cast<unsigned>(std::atoi(optarg));
                break;
            case 'n':
                repeats = std::max(1, std::atoi(optarg));
                break;
            default:
                return 2;
        }
    if (optind + 2 > argc) return 2;
    PlainCache cache;
    fill(cache, argv[optind]);
    std::vector<double> medians;
    bool same = true;
    for (const std::string& query : linesOf(argv[optind + 1])) {
        request.searchString = toUtf16Lenient(query);
        std::vector<double> times;
        int64_t total = 0;
        for (int i = 0; i < repeats; i++) {
            cache.cache->performBlockReadOnly([&](const ReadSection& section) {
                total = 0;
                const double begin = milliseconds(processorTime);
                const auto rows = rankStringInSearchMode(section, *cache.cache, request, total);
                times.push_back(milliseconds(processorTime) - begin);
                if (!check || i > 0) return;
                const std::string difference =
                    differenceOf(LiteralRanking(section, *cache.cache, request), *rows, total);
                if (difference.empty()) return;
                same = false;
                std::printf("DIFFERS %s: %s\n", query.c_str(), difference.c_str());
            });
        }
        medians.push_back(median(times));
        std::printf("query\t%s\t%lld\t%.3f\n", query.c_str(), static_cast<long long>(total),
                    medians.back());
    }
    std::printf("median_ms=%.2f worst_ms=%.2f abort_ms=%.2f same=%d\n", median(medians),
                *std::max_element(medians.begin(), medians.end()),
                worstAbort(*cache.cache, request), same);
    return same ? 0 : 1;
}
