#include <cstdio>
#include <cstdlib>

#include "searchmodes/DecompositionCheck.h"
#include "searchmodes/corpus.h"

/// The text of the search field: split, told apart, styled, with its messages.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::u16string text = textFromBytes({reinterpret_cast<const char*>(data), size});
    for (const unsigned setting : {0u, 1u, 3u}) {
        const std::string trouble =
            troubleWithSearchText(text, (setting & 1) != 0, (setting & 2) != 0);
        if (trouble.empty()) continue;
        (void)std::fprintf(stderr, "%s\n", trouble.c_str());
        std::abort();
    }
    return 0;
}
