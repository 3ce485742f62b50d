// make_tree: makes a deterministic tree of empty files and folders that looks like a developer's
// home folder.
//   make_tree COUNT TARGET            create COUNT entries (files + folders) below TARGET (created
//   if missing) make_tree COUNT -                 print the paths instead, one a line, folders with
//   a trailing "/"
// Same COUNT, same tree, on every machine. About 1 entry in 15 is a folder; mean depth about 7;
// about 3.5 % of the names are not ASCII, half of them in decomposed form. Build: g++ -O2
// -std=c++20 -o make_tree make_tree.cpp
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <unordered_set>
#include <vector>
using std::string;

static uint64_t state = 0x243F6A8885A308D3ull;
static uint64_t next() {
    uint64_t z = (state += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}
static unsigned below(unsigned n) {
    return unsigned(next() % n);
}
static bool chance(unsigned percent) {
    return below(100) < percent;
}

static const char* const CODE[] = {
    "access",    "account",    "action",     "adapter",   "address",   "agent",     "alert",
    "analysis",  "api",        "app",        "archive",   "array",     "assert",    "asset",
    "async",     "audio",      "auth",       "backend",   "balance",   "base",      "batch",
    "binary",    "block",      "board",      "bridge",    "browser",   "buffer",    "build",
    "button",    "cache",      "calendar",   "call",      "canvas",    "card",      "catalog",
    "chain",     "channel",    "chart",      "check",     "child",     "chunk",     "class",
    "client",    "clock",      "cloud",      "cluster",   "code",      "codec",     "collection",
    "color",     "column",     "command",    "common",    "compare",   "compiler",  "component",
    "config",    "connection", "console",    "constant",  "container", "content",   "context",
    "control",   "convert",    "cookie",     "core",      "counter",   "crypto",    "cursor",
    "daemon",    "data",       "database",   "date",      "debug",     "decoder",   "default",
    "delegate",  "device",     "dialog",     "diff",      "digest",    "directory", "dispatch",
    "display",   "document",   "domain",     "driver",    "dynamic",   "edge",      "editor",
    "element",   "encoder",    "engine",     "entity",    "entry",     "env",       "error",
    "event",     "example",    "executor",   "export",    "factory",   "feature",   "field",
    "file",      "filter",     "flags",      "font",      "form",      "format",    "frame",
    "function",  "gateway",    "global",     "graph",     "grid",      "group",     "handler",
    "hash",      "header",     "helper",     "history",   "hook",      "host",      "http",
    "icon",      "image",      "import",     "index",     "info",      "init",      "input",
    "inspector", "instance",   "interface",  "internal",  "invoice",   "item",      "iterator",
    "job",       "json",       "kernel",     "key",       "keyboard",  "label",     "language",
    "layer",     "layout",     "legacy",     "library",   "license",   "link",      "list",
    "listener",  "loader",     "local",      "lock",      "log",       "logger",    "login",
    "machine",   "main",       "manager",    "manifest",  "map",       "market",    "mask",
    "master",    "matrix",     "media",      "memory",    "menu",      "message",   "meta",
    "method",    "metrics",    "middleware", "migration", "mock",      "model",     "module",
    "monitor",   "mouse",      "native",     "network",   "node",      "note",      "object",
    "observer",  "offset",     "option",     "order",     "output",    "package",   "page",
    "panel",     "parser",     "patch",      "path",      "pattern",   "payment",   "pipeline",
    "pixel",     "platform",   "player",     "plugin",    "pointer",   "policy",    "pool",
    "port",      "preview",    "print",      "process",   "product",   "profile",   "project",
    "protocol",  "provider",   "proxy",      "query",     "queue",     "range",     "reader",
    "record",    "registry",   "release",    "render",    "report",    "request",   "resolver",
    "resource",  "response",   "result",     "router",    "rule",      "runner",    "runtime",
    "sample",    "scanner",    "schedule",   "schema",    "scope",     "script",    "search",
    "section",   "security",   "select",     "serial",    "server",    "service",   "session",
    "settings",  "shader",     "shape",      "shared",    "shell",     "signal",    "size",
    "socket",    "sort",       "source",     "spec",      "stack",     "state",     "static",
    "status",    "storage",    "store",      "stream",    "string",    "style",     "symbol",
    "sync",      "system",     "table",      "target",    "task",      "template",  "terminal",
    "test",      "text",       "theme",      "thread",    "ticket",    "timer",     "token",
    "tool",      "trace",      "transform",  "tree",      "trigger",   "type",      "unit",
    "update",    "upload",     "user",       "util",      "validator", "value",     "vector",
    "vendor",    "version",    "video",      "view",      "virtual",   "visitor",   "widget",
    "window",    "worker",     "wrapper",    "writer",    "zone"};
static const char* const DOCW[] = {
    "Annual",  "Report",    "Meeting",      "Notes",    "Invoice",  "Contract",  "Draft",
    "Final",   "Budget",    "Plan",         "Letter",   "Tax",      "Insurance", "Travel",
    "Receipt", "Summary",   "Proposal",     "Schedule", "Review",   "Minutes",   "Agenda",
    "Team",    "Project",   "Offer",        "Summer",   "Winter",   "Holiday",   "Birthday",
    "Family",  "House",     "Car",          "School",   "Guide",    "Manual",    "Recipe",
    "List",    "Overview",  "Presentation", "Workshop", "Backup",   "Copy",      "of",
    "and",     "the",       "for",          "with",     "to",       "in",        "Berlin",
    "Rome",    "Paris",     "London",       "Client",   "Customer", "Order",     "Delivery",
    "Bank",    "Statement", "Application",  "Form",     "Policy",   "Signed",    "Scan",
    "Version", "Old",       "New",          "Q1",       "Q2",       "Q3",        "Q4",
    "2017",    "2018",      "2019",         "2020",     "2021",     "2022",      "2023",
    "2024"};
// Precomposed; the decomposed form of each stands at the same place in the second list.
static const char* const ACC[] = {"Résumé",  "Müller", "Übersicht", "Café",     "Año",
                                  "Größe",   "naïve",  "Système",   "Prüfung",  "Gebühren",
                                  "Déjà vu", "Façade", "Señor",     "Brontë",   "Zürich",
                                  "Åse",     "Søren",  "Łódź",      "Київ",     "東京",
                                  "写真",    "Ελλάδα", "Çelik",     "Ångström", "Noël"};
static const char* const DEC[] = {"Re\u0301sume\u0301",
                                  "Mu\u0308ller",
                                  "U\u0308bersicht",
                                  "Cafe\u0301",
                                  "An\u0303o",
                                  "Gro\u0308ße",
                                  "nai\u0308ve",
                                  "Syste\u0300me",
                                  "Pru\u0308fung",
                                  "Gebu\u0308hren",
                                  "De\u0301ja\u0300 vu",
                                  "Fac\u0327ade",
                                  "Sen\u0303or",
                                  "Bronte\u0308",
                                  "Zu\u0308rich",
                                  "A\u030Ase",
                                  "Søren",
                                  "Ło\u0301dz\u0301",
                                  "Киі\u0308в",
                                  "東京",
                                  "写真",
                                  "Ελλα\u0301δα",
                                  "C\u0327elik",
                                  "A\u030Angstro\u0308m",
                                  "Noe\u0308l"};
static const char* const SRCEXT[] = {".c",   ".h",    ".cpp",  ".hpp",  ".cc",  ".py",
                                     ".js",  ".ts",   ".tsx",  ".rs",   ".go",  ".java",
                                     ".md",  ".json", ".yaml", ".toml", ".txt", ".sh",
                                     ".css", ".html", ".sql",  ".svg",  ".png"};
static const char* const OBJEXT[] = {".o",   ".d",     ".obj",   ".a",     ".so",
                                     ".map", ".cmake", ".stamp", ".class", ".pyc"};
static const char* const DOCEXT[] = {".pdf",  ".docx", ".odt",   ".txt", ".xlsx",
                                     ".pptx", ".md",   ".pages", ".csv", ".eml"};
#define PICK(a) a[below(sizeof a / sizeof *a)]

static string code_word() {
    return PICK(CODE);
}
static string cap(string s) {
    if (!s.empty() && s[0] >= 'a' && s[0] <= 'z') s[0] -= 32;
    return s;
}
static string number(unsigned n, int digits) {
    char b[32];
    snprintf(b, sizeof b, "%0*u", digits, n);
    return b;
}
static string hex(int n) {
    string s;
    for (int i = 0; i < n; i++) s += "0123456789abcdef"[below(16)];
    return s;
}
static string accented() {
    return chance(50) ? PICK(ACC) : PICK(DEC);
}

static string ident(unsigned style) {  // one to three words, in the style of one project
    unsigned n = 1 + (below(10) > 2) + (below(10) > 6);
    string s;
    for (unsigned i = 0; i < n; i++) {
        string w = code_word();
        switch (style % 4) {
            case 0:
                s += (i ? "_" : "") + w;
                break;
            case 1:
                s += (i ? "-" : "") + w;
                break;
            case 2:
                s += cap(w);
                break;
            default:
                s += i ? cap(w) : w;
        }
    }
    return s;
}
static string doc_name() {
    string s;
    unsigned n = 1 + below(4);
    for (unsigned i = 0; i < n; i++) {
        if (i) s += chance(80) ? " " : "_";
        s += chance(15) ? accented() : string(PICK(DOCW));
    }
    if (chance(15)) s += " (" + number(1 + below(9), 1) + ")";
    if (chance(20))
        s = "20" + number(10 + below(15), 2) + "-" + number(1 + below(12), 2) + "-" +
            number(1 + below(28), 2) + " " + s;
    return s;
}

static long left;
static FILE* out;  // set: print paths; else create
struct Dir {
    int fd;
    string path;
    std::unordered_set<string> names;
};
static Dir enter(Dir& parent, string name, bool& ok);

static bool claim(Dir& d, string& name) {  // makes the name unique in its folder
    if (name.size() > 250) name.resize(250);
    string base = name;
    for (int k = 2; !d.names.insert(name).second; k++) {
        size_t dot = base.rfind('.');
        if (dot == string::npos || dot == 0)
            name = base + "-" + std::to_string(k);
        else
            name = base.substr(0, dot) + "-" + std::to_string(k) + base.substr(dot);
    }
    return true;
}
static void file(Dir& d, string name) {
    if (left <= 0) return;
    claim(d, name);
    left--;
    if (out) {
        fprintf(out, "%s/%s\n", d.path.c_str(), name.c_str());
        return;
    }
    int fd = openat(d.fd, name.c_str(), O_CREAT | O_WRONLY | O_EXCL | O_CLOEXEC, 0644);
    if (fd < 0) {
        perror(name.c_str());
        exit(1);
    }
    close(fd);
}
static void done(Dir& d) {
    if (d.fd >= 0) close(d.fd);
}
static Dir enter(Dir& parent, string name, bool& ok) {
    Dir d{-1, {}, {}};
    ok = left > 0;
    if (!ok) return d;
    claim(parent, name);
    left--;
    d.path = parent.path + "/" + name;
    if (out) {
        fprintf(out, "%s/\n", d.path.c_str());
        return d;
    }
    if (mkdirat(parent.fd, name.c_str(), 0755)) {
        perror(name.c_str());
        exit(1);
    }
    d.fd = openat(parent.fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (d.fd < 0) {
        perror(name.c_str());
        exit(1);
    }
    return d;
}
template <class F>
static void sub(Dir& parent, const string& name, F&& body) {
    bool ok;
    Dir d = enter(parent, name, ok);
    if (ok) {
        body(d);
        done(d);
    }
}

static unsigned fanout() {  // files per folder: mostly few, sometimes hundreds
    unsigned r = below(100);
    if (r < 25) return 1 + below(3);
    if (r < 75) return 3 + below(9);
    if (r < 96) return 10 + below(30);
    if (r < 99) return 40 + below(120);
    return 150 + below(600);
}
static void code_tree(Dir& d, unsigned depth, unsigned style, const char* const* ext,
                      unsigned next_count) {
    for (unsigned i = 0, n = fanout(); i < n; i++) {
        string base = ident(style);
        if (chance(12)) base = (style & 1 ? "test-" : "test_") + base;
        file(d, base + ext[below(next_count)]);
    }
    if (depth == 0) return;
    for (unsigned i = 0, n = below(4) + (depth > 3); i < n; i++)
        sub(d, chance(70) ? code_word() : ident(style),
            [&](Dir& c) { code_tree(c, depth - 1, style, ext, next_count); });
}
static void git_folder(Dir& d) {
    sub(d, ".git", [](Dir& g) {
        for (const char* n : {"HEAD", "config", "description", "index", "packed-refs",
                              "COMMIT_EDITMSG", "ORIG_HEAD"})
            file(g, n);
        sub(g, "hooks", [](Dir& h) {
            for (const char* n :
                 {"pre-commit.sample", "post-update.sample", "update.sample", "commit-msg.sample"})
                file(h, n);
        });
        sub(g, "objects", [](Dir& o) {
            for (unsigned i = 0, n = 4 + below(60); i < n; i++)
                sub(o, hex(2), [](Dir& x) {
                    for (unsigned k = 0, m = 1 + below(5); k < m; k++) file(x, hex(38));
                });
            sub(o, "pack", [](Dir& p) {
                for (unsigned k = 0, m = 1 + below(3); k < m; k++) {
                    string h = "pack-" + hex(40);
                    file(p, h + ".idx");
                    file(p, h + ".pack");
                }
            });
        });
        sub(g, "refs", [](Dir& r) {
            sub(r, "heads", [](Dir& h) {
                file(h, "main");
                for (unsigned k = below(6); k; k--) file(h, ident(1));
            });
        });
    });
}
static void npm_package(Dir& parent, const string& name, unsigned depth) {
    sub(parent, name, [&](Dir& p) {
        for (const char* n : {"package.json", "README.md", "LICENSE", "index.js"}) file(p, n);
        if (chance(50)) file(p, "CHANGELOG.md");
        if (chance(40)) file(p, "index.d.ts");
        static const char* const JS[] = {".js", ".js.map", ".d.ts", ".mjs", ".cjs"};
        for (const char* n : {"lib", "dist", "src"})
            if (chance(45)) sub(p, n, [&](Dir& c) { code_tree(c, below(3), 3, JS, 5); });
        if (depth && chance(8))
            sub(p, "node_modules", [&](Dir& m) {
                for (unsigned k = 1 + below(5); k; k--) npm_package(m, ident(1), depth - 1);
            });
    });
}
static void project(Dir& parent) {
    unsigned style = below(4);
    sub(parent, chance(85) ? ident(1) : cap(code_word()), [&](Dir& p) {
        for (const char* n :
             {"README.md", "LICENSE", ".gitignore", "Makefile", "CMakeLists.txt", ".editorconfig"})
            if (chance(75)) file(p, n);
        git_folder(p);
        for (const char* n : {"src", "include", "tests", "docs", "tools", "examples"})
            if (chance(65))
                sub(p, n, [&](Dir& c) {
                    code_tree(c, 1 + below(5), style, SRCEXT, sizeof SRCEXT / sizeof *SRCEXT);
                });
        if (chance(40))
            sub(p, "build", [&](Dir& c) {
                sub(c, "CMakeFiles", [&](Dir& e) {
                    code_tree(e, 2 + below(3), style, OBJEXT, sizeof OBJEXT / sizeof *OBJEXT);
                });
            });
        if (chance(35))
            sub(p, "node_modules", [&](Dir& m) {
                for (unsigned k = 10 + below(60); k; k--) {
                    if (chance(15))
                        sub(m, "@" + code_word(), [&](Dir& s) {
                            for (unsigned q = 1 + below(6); q; q--) npm_package(s, ident(1), 2);
                        });
                    else
                        npm_package(m, ident(1), 2);
                }
            });
    });
}
static void photos(Dir& parent) {
    sub(parent,
        "20" + number(10 + below(15), 2) + "-" + number(1 + below(12), 2) +
            (chance(60) ? " " + doc_name() : ""),
        [](Dir& d) {
            unsigned first = below(9000);
            for (unsigned i = 0, n = 20 + below(300); i < n; i++) {
                unsigned k = first + i;
                file(d, chance(70)   ? "IMG_" + number(k, 4) + ".JPG"
                        : chance(50) ? "IMG_" + number(k, 4) + ".CR2"
                                     : "DSC" + number(k, 5) + ".jpg");
            }
        });
}
static void documents(Dir& parent, unsigned depth) {
    sub(parent, doc_name(), [&](Dir& d) {
        for (unsigned i = 0, n = fanout(); i < n; i++) file(d, doc_name() + PICK(DOCEXT));
        if (depth)
            for (unsigned k = below(4); k; k--) documents(d, depth - 1);
    });
}
static void music(Dir& parent) {
    sub(parent, chance(20) ? accented() : cap(code_word()) + " " + cap(code_word()),
        [](Dir& artist) {
            for (unsigned a = 1 + below(5); a; a--)
                sub(artist, doc_name(), [](Dir& album) {
                    for (unsigned t = 1, n = 8 + below(8); t <= n; t++)
                        file(album,
                             number(t, 2) + " " +
                                 (chance(10) ? accented() : string(PICK(DOCW)) + " " + PICK(DOCW)) +
                                 (chance(50) ? ".mp3" : ".flac"));
                    file(album, "cover.jpg");
                });
        });
}
static void caches(Dir& parent) {
    sub(parent, ident(1), [](Dir& d) {
        for (unsigned k = 1 + below(12); k; k--)
            sub(d, chance(60) ? hex(2) : code_word(), [](Dir& c) {
                for (unsigned i = 0, n = 5 + below(60); i < n; i++)
                    file(c, chance(70) ? hex(32)
                                       : hex(8) + "-" + hex(4) + "-" + hex(4) + "-" + hex(4) + "-" +
                                             hex(12) + ".tmp");
            });
    });
}
static void dotconfig(Dir& parent) {
    sub(parent, chance(50) ? cap(code_word()) : ident(1), [](Dir& d) {
        for (unsigned i = 0, n = 1 + below(8); i < n; i++)
            file(d, ident(1) + (chance(50) ? ".conf" : chance(50) ? ".json" : "rc"));
        if (chance(40))
            sub(d, "User Data", [](Dir& u) {
                for (unsigned k = 2 + below(20); k; k--)
                    file(u, cap(code_word()) + " " + cap(code_word()));
            });
    });
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: make_tree COUNT TARGET|-\n");
        return 2;
    }
    const long total = atol(argv[1]);
    Dir home{-1, "", {}};
    if (!strcmp(argv[2], "-")) {
        out = stdout;
        home.path = ".";
    } else {
        mkdir(argv[2], 0755);
        home.fd = open(argv[2], O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (home.fd < 0) {
            perror(argv[2]);
            return 1;
        }
    }
    struct Area {
        const char* path[3];
        unsigned share;
        void (*make)(Dir&);
    };
    static const Area areas[] = {
        {{"src", nullptr}, 48, project},
        {{"work", "clients", nullptr}, 20, project},
        {{".cache", nullptr}, 8, caches},
        {{"Pictures", nullptr}, 8, photos},
        {{"Documents", nullptr}, 10, [](Dir& d) { documents(d, 4); }},
        {{"Music", nullptr}, 3, music},
        {{".config", nullptr}, 2, dotconfig},
        {{".local", "share", nullptr}, 1, dotconfig},
    };
    long given = 0, made = 0;
    for (size_t i = 0; i < sizeof areas / sizeof *areas; i++) {
        bool last = i + 1 == sizeof areas / sizeof *areas;
        long quota = last ? total - given : total * areas[i].share / 100;
        given += quota;
        left = quota;
        sub(home, areas[i].path[0], [&](Dir& a) {
            if (areas[i].path[1])
                sub(a, areas[i].path[1], [&](Dir& b) {
                    while (left > 0) areas[i].make(b);
                });
            else
                while (left > 0) areas[i].make(a);
        });
        made += quota - left;
    }
    fprintf(stderr, "%ld entries\n", made);
    return made == total ? 0 : 1;
}
