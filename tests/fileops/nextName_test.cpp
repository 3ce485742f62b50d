#include "fileops/nextName.h"

#include <gtest/gtest.h>

#include <array>

namespace {

struct Row {
    const char* path;
    const char* move;
    const char* duplicate;
    const char* alias;
};

TEST(NextName, CountsOnFromWhatTheNameEndsIn) {
    const std::array<Row, 13> rows = {{
        {"/d/a.txt", "/d/a 2.txt", "/d/a copy.txt", "/d/a alias.txt"},
        {"/d/a 2.txt", "/d/a 3.txt", "/d/a 2 copy.txt", "/d/a 2 alias.txt"},
        {"/d/Report 2019.txt", "/d/Report 2020.txt", "/d/Report 2019 copy.txt",
         "/d/Report 2019 alias.txt"},
        {"/d/a copy.txt", "/d/a copy 2.txt", "/d/a copy 2.txt", "/d/a copy alias.txt"},
        {"/d/a alias 9", "/d/a alias 10", "/d/a alias 9 copy", "/d/a alias 10"},
        {"/d/a copy 2", "/d/a copy 3", "/d/a copy 3", "/d/a copy 2 alias"},
        {"/d/a copy  2", "/d/a copy  3", "/d/a copy  2 copy", "/d/a copy  2 alias"},
        {"/d/acopy 2b", "/d/acopy 2b 2", "/d/acopy 2b copy", "/d/acopy 2b alias"},
        {"/d/v 2.5", "/d/v 3.5", "/d/v 2 copy.5", "/d/v 2 alias.5"},
        {"/d/.profile", "/d/.profile 2", "/d/.profile copy", "/d/.profile alias"},
        {"/d 4/x/", "/d 4/x 2", "/d 4/x copy", "/d 4/x alias"},
        {"/d/a 007", "/d/a 8", "/d/a 007 copy", "/d/a 007 alias"},
        {"/d/a 9223372036854775807", "/d/a 9223372036854775808", "/d/a 9223372036854775807 copy",
         "/d/a 9223372036854775807 alias"},
    }};
    for (const Row& row : rows) {
        const FileURL url(row.path);
        EXPECT_EQ(nextNameForDuplication(url, NameSeries::move).path(), row.move);
        EXPECT_EQ(nextNameForDuplication(url, NameSeries::duplicate).path(), row.duplicate);
        EXPECT_EQ(nextNameForDuplication(url, NameSeries::alias).path(), row.alias);
    }
}

TEST(NextName, KeepsBytesThatAreNoText) {
    const FileURL url("/\xC3\x28/b\xFF 9.t\xFE");
    EXPECT_EQ(nextNameForDuplication(url, NameSeries::move).path(), "/\xC3\x28/b\xFF 10.t\xFE");
    EXPECT_EQ(nextNameForDuplication(url, NameSeries::duplicate).path(),
              "/\xC3\x28/b\xFF 9 copy.t\xFE");
}

TEST(NextName, ReadsDigitsOfOtherScripts) {
    EXPECT_EQ(nextNameForDuplication(FileURL("/d/a \u0661\u0669"), NameSeries::move).path(),
              "/d/a 20");
}

TEST(NextName, DoesNotStopAtManyDigits) {
    const std::string nines(300, '9');
    EXPECT_EQ(nextNameForDuplication(FileURL("/d/a " + nines), NameSeries::move).path(),
              "/d/a 1" + std::string(300, '0'));
}

}  // namespace
