#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "searchmodes/MetaDataTermCheck.h"

/// One metadata term: parsed, printed, parsed again, matched.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::string trouble =
        troubleWithTerm(termFromBytes(bytes), 1 + static_cast<int>(size % 7));
    if (!trouble.empty()) {
        std::fprintf(stderr, "%s\n", trouble.c_str());
        std::abort();
    }
    return 0;
}
