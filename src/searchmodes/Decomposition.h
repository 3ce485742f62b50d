#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "searchmodes/IndexSet.h"
#include "searchmodes/MetaDataQuery.h"
#include "searchmodes/RangeMessages.h"
#include "util/FunctionRef.h"

/// Called at once, for each term that begins with a backslash.
using QueryTermParser = FunctionRef<MetaDataParse(std::u16string_view term)>;

struct Decomposition {
    std::vector<StyledRange> styles;  // ascending, not overlapping; between them it is plain
    RangeMessages rangeMessages;
    IndexSet visibleAttributes;  // criteria of the queries
    bool needsMetadata = false;  // a term has the form of a query, and queries are off
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
