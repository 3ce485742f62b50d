#include <unistd.h>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "Console.h"
#include "Ops.h"

/// trovast-probe: see Console.h. With --ops it prints the names of its ops.
int main(int count, char** arguments) {
    (void)std::setlocale(LC_ALL, "");
    tzset();
    if (count == 2 && std::strcmp(arguments[1], "--ops") == 0) {
        for (const OpEntry& entry : allOps())
            (void)std::printf("%.*s\n", static_cast<int>(entry.name.size()), entry.name.data());
        return 0;
    }
    if (count > 1) {
        (void)std::fputs("Usage: trovast-probe [--ops]\n", stderr);
        return 2;
    }
    Console().run(STDIN_FILENO, stdout);
    return 0;
}
