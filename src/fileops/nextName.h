#pragma once
#include "util/FileURL.h"

/// Which series of names nextNameForDuplication counts on.
enum class NameSeries {
    move,       // "a.txt", "a 2.txt", "a 3.txt"; "Report 2019.txt" is followed by "Report 2020.txt"
    duplicate,  // "a.txt", "a copy.txt", "a copy 2.txt", "a copy 3.txt"
    alias,      // the same with "alias"
};

/// The next name to try for what must not replace a file that is there. Callers ask again with the
/// answer until lstat knows no such file.
/// Threads: any. The disk is not touched.
/// Units:   a name may be any bytes; its extension is set aside and put back. A number may have any
///          length, so the answer always differs from the question.
FileURL nextNameForDuplication(const FileURL& url, NameSeries series);
