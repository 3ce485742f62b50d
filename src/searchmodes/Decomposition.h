#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "searchmodes/IndexSet.h"
#include "searchmodes/RangeMessages.h"
#include "util/FunctionRef.h"

/// What the parser of metadata queries makes of a term that begins with a backslash. Neither a
/// query nor an error nor a suggestion: the term is none of its own.
struct ParsedQueryTerm {
    struct Query {
        uint64_t criterion = 0;
    };
    struct Suggestion {
        std::string token, description;
    };
    std::optional<Query> query;
    std::optional<std::string> errorString;
    /// A place in the term. Above 0: what stands there is wrong; else the term is incomplete from
    /// the absolute value on.
    std::optional<int64_t> errorLocation;
    std::vector<Suggestion> suggestions;
};
using QueryTermParser = FunctionRef<ParsedQueryTerm(std::u16string_view term)>;

enum class TermStyle : uint8_t { plain, regexp, error, incomplete };

struct StyledRange {
    TextRange range;
    TermStyle style;
    friend bool operator==(const StyledRange&, const StyledRange&) = default;
};

struct Decomposition {
    std::vector<StyledRange> styles;  // ascending, not overlapping; between them it is plain
    RangeMessages rangeMessages;
    IndexSet visibleAttributes;  // criteria of the queries
};

struct DecompositionOptions {
    bool processMetadata;
    bool listsFiles;         // the mode's rows are files, which queries can look at
    QueryTermParser parser;  // asked only when both hold
};

/// How the search field shows its text: what each term is, what is wrong with it and what may come
/// next. Looks at the text alone, never at an index.
/// Threads: any, no state. Units: UTF-16 units of the precomposed text.
Decomposition decompose(std::u16string_view text, const DecompositionOptions& options);
