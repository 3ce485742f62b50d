#include <dirent.h>
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>

#include "searchmodes/MetaDataTermCheck.h"

namespace {

/// What the fuzzer has found worth keeping, one term a file.
TEST(MetaDataTerms, HoldForTheCorpus) {
    const std::string folder = TROVAST_FUZZ_CORPUS "/metadata_term/";
    DIR* entries = opendir(folder.c_str());
    ASSERT_TRUE(entries) << folder;
    size_t count = 0;
    while (const dirent* entry = readdir(entries)) {
        if (entry->d_name[0] == '.') continue;
        std::ifstream file(folder + entry->d_name, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(file)), {});
        EXPECT_EQ(troubleWithTerm(termFromBytes(bytes), 1 + static_cast<int>(count % 7)), "")
            << entry->d_name;
        count++;
    }
    closedir(entries);
    EXPECT_GT(count, 0u);
}

TEST(MetaDataTerms, HoldForRandomOnes) {
    constexpr std::u16string_view kUnits = u"\\!tbcma*slhugpyMdQwe<>=:kG0012359ax+\xD800";
    std::mt19937 random(5);
    for (int i = 0; i < 100000; i++) {
        std::u16string term = u"\\";
        if (i % 2) term += u"tm";
        for (size_t n = random() % 12; n > 0; n--) term += kUnits[random() % kUnits.size()];
        ASSERT_EQ(troubleWithTerm(term, 1 + i % 7), "") << toUtf8(term);
    }
}

}  // namespace
