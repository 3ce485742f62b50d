#include <cstdio>
#include <cstdlib>

#include "searchmodes/RegexTermCheck.h"
#include "searchmodes/corpus.h"

/// A regular expression, a line feed, and a name to find it in.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const auto [pattern, text] =
        lineAndRest(textFromBytes({reinterpret_cast<const char*>(data), size}));
    const std::string trouble = troubleWithPattern(pattern, text);
    if (!trouble.empty()) {
        (void)std::fprintf(stderr, "%s\n", trouble.c_str());
        std::abort();
    }
    return 0;
}
