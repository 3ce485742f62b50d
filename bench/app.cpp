// bench_app ROOT WHAT: the whole application on the simulated desktop, ROOT as its one project, on
// the real disk. Prints a line of NAME=VALUE words. WHAT is
//   takeover  how long a newer key stroke waits for the search that runs
//   switches  memory before and after 50 changes of project
//   live      from a change on the disk to the index
//   fire      key strokes for 60 s while another process makes 2,000 changes a second
//   browse    into a folder of 100,000 entries, and key strokes that filter it
//   modes     from one mode to another
//   arrows    an arrow key that is held down in a list of 100,000 rows
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

#include "AppSession.h"
#include "support/TemporaryFolder.h"

namespace {

using namespace std::chrono_literals;

double now() {
    return std::chrono::duration<double, std::milli>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double quantile(std::vector<double> values, double q) {
    std::sort(values.begin(), values.end());
    return values[size_t(q * double(values.size() - 1))];
}

double residentMegabytes() {
    std::ifstream file("/proc/self/statm");
    double all = 0, resident = 0;
    file >> all >> resident;
    return resident * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

nlohmann::json project(const std::string& path) {
    return {{"uuid", path},
            {"name", "bench"},
            {"enabled", true},
            {"matchFilenameOnly", true},
            {"folders",
             {{{"path", path},
               {"ignoreGlobalFolderRules", true},
               {"ignoreGlobalFoldersToSkip", true}}}}};
}

struct Bench {
    Bench(const std::string& root, bool followsDisk) {
        begin = now();
        session = std::make_unique<AppSession>(
            AppSession::Start{.home = home.url(),
                              .settings = {{"projects", {project(root)}}, {"currentProject", root}},
                              .followsDisk = followsDisk});
        session->app().window().toggleMainWindow();
        session->settle(300);
        started = now() - begin;
    }
    TRVSearchMode& mode() { return session->app().searchMode(); }
    SimulatedField& field() { return session->screen().field; }
    void run() { session->world().mainQueue().runPending(); }
    bool has(const FileURL& url) {
        Cache& cache = *mode().currentCache();
        return cache.performBlockReadOnly(
            [&](const ReadSection& section) { return cache.existsFsItemWithPath(section, url); });
    }
    /// Milliseconds from a key stroke until the table has its rows.
    double keyStroke(std::u16string_view text) {
        field().setText({});
        for (int i = 0; i < 200; i++) {
            run();
            std::this_thread::sleep_for(100us);
        }
        session->screen().table.takeChanges();
        const double begun = now();
        field().type(text);
        while (session->screen().table.takeChanges().empty() && now() - begun < 10000) {
            run();
            std::this_thread::sleep_for(50us);
        }
        return now() - begun;
    }

    TemporaryFolder home;
    std::unique_ptr<AppSession> session;
    double begin = 0, started = 0;
};

void takeover(const std::string& root) {
    Bench bench(root, false);
    std::vector<double> waits;
    for (int i = 0; i < 40; i++) {
        bench.field().type(u"e");
        std::this_thread::sleep_for(std::chrono::milliseconds(i % 12));
        const double begun = now();
        bench.field().type(u"a");
        while (bench.mode().abortSearch()) std::this_thread::sleep_for(20us);
        waits.push_back(now() - begun);
        bench.session->settle(60);
        bench.field().setText({});
        bench.session->settle(60);
    }
    std::printf("items=%llu median_ms=%.2f worst_ms=%.2f\n",
                static_cast<unsigned long long>(bench.mode().currentCache()->count()),
                quantile(waits, 0.5), quantile(waits, 1));
}

void switches(const std::string& root) {
    Bench bench(root, true);
    const auto change = [&](const FileURL& url) {
        TRVMode::switchModeQueue().async(
            [&bench, url] { bench.mode().createVirtualProjectFromPath(url); });
        bench.session->settle(300);
    };
    const FileURL one(root), other = FileURL(root).deletingLastPathComponent();
    change(one);
    change(other);
    change(one);
    const double before = residentMegabytes();
    for (int i = 0; i < 25; i++) {
        change(other);
        change(one);
    }
    const double after = residentMegabytes();
    std::printf("before_mb=%.1f after_mb=%.1f grown=%.3f\n", before, after, after / before - 1);
}

/// A process that makes `count` files.
pid_t maker(const std::string& folder, int count) {
    const pid_t child = fork();
    if (child != 0) return child;
    for (int i = 0; i < count; i++)
        std::fclose(std::fopen((folder + "/made " + std::to_string(i)).c_str(), "w"));
    _exit(0);
}

/// A process that makes, renames and removes files, so many changes a second.
pid_t changer(const std::string& folder, int perSecond, std::chrono::seconds time) {
    const pid_t child = fork();
    if (child != 0) return child;
    const auto begin = std::chrono::steady_clock::now();
    for (int i = 0;; i++) {
        const auto due = begin + i * (3'000'000us / perSecond);
        if (due - begin > time) break;
        std::this_thread::sleep_until(due);
        const std::string path = folder + "/made " + std::to_string(i);
        std::fclose(std::fopen(path.c_str(), "w"));
        std::rename(path.c_str(), (path + " named").c_str());
        unlink((folder + "/made " + std::to_string(i - 1000) + " named").c_str());
    }
    _exit(0);
}

void live(const std::string& root) {
    Bench bench(root, true);
    const std::string folder = root + "/bench-live";
    mkdir(folder.c_str(), 0700);
    std::vector<double> delays;
    for (int i = 0; i < 40; i++) {
        const FileURL url(folder + "/one " + std::to_string(i));
        const double begun = now();
        if (std::system(("touch '" + url.path() + "'").c_str()) != 0) std::abort();
        while (!bench.has(url) && now() - begun < 5000) {
            bench.run();
            std::this_thread::sleep_for(200us);
        }
        delays.push_back(now() - begun);
    }
    const pid_t child = maker(folder, 100'000);
    waitpid(child, nullptr, 0);
    const double made = now();
    const uint64_t expected = 100'000;
    const FileURL last(folder + "/made " + std::to_string(expected - 1));
    while (!bench.has(last) && now() - made < 60000) {
        bench.run();
        std::this_thread::sleep_for(1ms);
    }
    bench.session->settle(60);
    const double equal = now() - made;
    if (std::system(("rm -rf '" + folder + "'").c_str()) != 0) std::abort();
    std::printf("start_s=%.1f index_median_ms=%.1f index_worst_ms=%.1f many_ms=%.0f\n",
                bench.started / 1000, quantile(delays, 0.5), quantile(delays, 1), equal);
}

/// What the machine itself does to the time of unchanging work: arithmetic alone, about as long as
/// a key stroke.
double arithmetic() {
    uint64_t bits = 1;
    const double begun = now();
    for (int i = 0; i < 20'000'000; i++) {
        bits ^= bits << 13;
        bits ^= bits >> 7;
        bits ^= bits << 17;
    }
    const volatile uint64_t kept = bits;  // so that it is not left out
    static_cast<void>(kept);
    return now() - begun;
}

void fire(const std::string& root) {
    Bench bench(root, true);
    std::vector<double> machine, calm, strokes;
    for (int i = 0; i < 300; i++) {
        calm.push_back(bench.keyStroke(u"rep"));
        machine.push_back(arithmetic());
    }
    const std::string folder = root + "/bench-fire";
    mkdir(folder.c_str(), 0700);
    const pid_t child = changer(folder, 2000, 60s);
    while (waitpid(child, nullptr, WNOHANG) == 0) strokes.push_back(bench.keyStroke(u"rep"));
    bench.session->settle(60);
    if (std::system(("rm -rf '" + folder + "'").c_str()) != 0) std::abort();
    const auto print = [](const char* name, const std::vector<double>& times) {
        std::printf("%s_median_ms=%.1f %s_p99_ms=%.1f ", name, quantile(times, 0.5), name,
                    quantile(times, 0.99));
    };
    print("arithmetic", machine);
    print("calm", calm);
    print("fire", strokes);
    std::printf("strokes=%zu\n", strokes.size());
}

// ---- The file modes

constexpr size_t kManyFiles = 100'000;
constexpr uint64_t kArrow = kModifierNumericPad | kModifierFunction;

/// Files with names as people give them, in a folder of their own.
FileURL manyFiles(TemporaryFolder& home) {
    constexpr const char* kWords[] = {"report", "draft",  "Invoice", "photo", "meeting",
                                      "notes",  "budget", "Letter",  "scan",  "backup"};
    constexpr const char* kExtensions[] = {"txt", "pdf", "jpg", "odt", "cpp"};
    const FileURL folder = home.folder("many");
    for (size_t i = 0; i < kManyFiles; i++) {
        const std::string name = std::string(kWords[i % 10]) + " " + kWords[i / 10 % 10] + " " +
                                 std::to_string(i) + "." + kExtensions[i % 5];
        std::fclose(std::fopen(folder.appending(name).c_str(), "w"));
    }
    return folder;
}

struct ModesBench : Bench {
    explicit ModesBench(const std::string& root) : Bench(root, false), many(manyFiles(home)) {}
    /// Runs the main queue until this is so. In milliseconds.
    template <class Condition>
    double until(double begun, const Condition& condition) {
        while (!condition() && now() - begun < 10000) {
            run();
            std::this_thread::sleep_for(50us);
        }
        return now() - begun;
    }
    SimulatedTable& table() { return session->screen().table; }
    TRVBrowserMode& browser() { return session->app().browserMode(); }
    double enter(TRVMode& mode) {
        table().takeChanges();
        const double begun = now();
        session->app().modeSwitcher().switchToMode(mode);
        return until(begun, [&] { return mode.isActive() && !table().takeChanges().empty(); });
    }
    double browse(const FileURL& folder, size_t rows) {
        const double begun = now();
        browser().browseSelection({folder});
        return until(begun, [&] { return table().numberOfRows() == rows; });
    }
    FileURL many;
};

void browse(const std::string& root) {
    ModesBench bench(root);
    bench.enter(bench.browser());
    bench.session->settle(10);
    const size_t atHome = bench.table().numberOfRows();
    std::vector<double> shown, strokes;
    for (int i = 0; i < 10; i++) {
        shown.push_back(bench.browse(bench.many, kManyFiles));
        bench.session->settle(10);
        for (const char16_t* text : {u"e", u"re", u"note", u"report 99", u"zzz", u"etf", u"*.pdf"})
            strokes.push_back(bench.keyStroke(text));
        bench.field().setText({});
        bench.session->settle(10);
        bench.browse(bench.home.url(), atHome);
        bench.session->settle(10);
    }
    std::printf(
        "shown_median_ms=%.1f shown_worst_ms=%.1f stroke_median_ms=%.1f "
        "stroke_worst_ms=%.1f\n",
        quantile(shown, 0.5), quantile(shown, 1), quantile(strokes, 0.5), quantile(strokes, 1));
}

void modes(const std::string& root) {
    ModesBench bench(root);
    AppDelegate& app = bench.session->app();
    for (const auto& [place, folder] :
         {std::pair("home", bench.home.url()), {"many", bench.many}}) {
        bench.enter(app.browserMode());
        bench.browser().browseSelection({folder});
        bench.session->settle(10);
        std::vector<double> times;
        for (int i = 0; i < 10; i++)
            for (TRVMode* mode : std::vector<TRVMode*>{&app.searchMode(), &app.browserMode(),
                                                       &app.recentMode(), &app.markedItemsMode()}) {
                times.push_back(bench.enter(*mode));
                bench.session->settle(10);
            }
        std::printf("%s_median_ms=%.1f %s_worst_ms=%.1f ", place, quantile(times, 0.5), place,
                    quantile(times, 1));
    }
    std::printf("\n");
}

void arrows(const std::string& root) {
    ModesBench bench(root);
    bench.enter(bench.browser());
    bench.browse(bench.many, kManyFiles);
    bench.session->settle(10);
    constexpr int kKeys = 300;
    std::vector<double> times;
    const size_t first = bench.table().selectedRow().value_or(0);
    const double begun = now();
    for (int i = 0; i < kKeys; i++) {
        const double due = begun + i * 1000.0 / 30;
        bench.until(now(), [&] { return now() >= due; });
        bench.session->screen().send(
            {.keyCode = kKeyDown, .modifierFlags = kArrow, .isRepeat = i > 0});
        times.push_back(
            bench.until(due, [&] { return bench.table().selectedRow() == first + size_t(i) + 1; }));
    }
    std::printf("rows_a_second=%.1f median_ms=%.2f worst_ms=%.2f\n",
                (kKeys - 1) * 1000.0 / (now() - begun), quantile(times, 0.5), quantile(times, 1));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) return 2;
    const std::string root = argv[1], what = argv[2];
    if (what == "takeover")
        takeover(root);
    else if (what == "switches")
        switches(root);
    else if (what == "live")
        live(root);
    else if (what == "fire")
        fire(root);
    else if (what == "browse")
        browse(root);
    else if (what == "modes")
        modes(root);
    else if (what == "arrows")
        arrows(root);
    else
        return 2;
    return 0;
}
