#include "modes/framework/attributeTexts.h"
#include "util/permissionString.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unicode/uloc.h>

#include <array>

namespace {

TEST(AttributeTexts, SizesAreGivenInTheLargestUnitThatFits) {
    // Digits are not grouped, and the decimal sign is a point, whatever the user's locale is.
    UErrorCode status = U_ZERO_ERROR;
    uloc_setDefault("en_US_POSIX", &status);
    struct Row {
        uint64_t size;
        const char* text;
    };
    const std::array<Row, 12> rows = {{
        {0, "0 Bytes"},
        {1023, "1023 Bytes"},
        {1024, "1 kiB (1024 Bytes)"},
        {1536, "1.5 kiB (1536 Bytes)"},
        {1025, "1.001 kiB (1025 Bytes)"},
        {(1u << 20) - 1, "1023.999 kiB (1048575 Bytes)"},
        {1u << 20, "1 MiB (1048576 Bytes)"},
        {(1u << 30) - 1, "1024 MiB (1073741823 Bytes)"},
        {1u << 30, "1 GiB (1073741824 Bytes)"},
        {1ull << 40, "1 TiB (1099511627776 Bytes)"},
        {1ull << 52, "4096 TiB (4503599627370496 Bytes)"},
        {~0ull, "16777216 TiB (18446744073709551615 Bytes)"},
    }};
    for (const Row& row : rows) EXPECT_EQ(sizeText(row.size, S_IFREG | 0644), row.text);
    EXPECT_EQ(sizeText(~0ull, S_IFDIR | 0755), "n/a");
    EXPECT_EQ(sizeText(5, S_IFLNK | 0777), "5 Bytes");
}

TEST(AttributeTexts, EachPermissionBitHasItsLetter) {
    EXPECT_EQ(permissionString(S_IFREG | 0), "--- --- ---");
    EXPECT_EQ(permissionString(S_IFREG | 0754), "rwx r-x r--");
    EXPECT_EQ(permissionString(04421), "r-- -w- --x");
    EXPECT_EQ(permissionString(0777), "rwx rwx rwx");
}

TEST(AttributeTexts, MasksOfKindsAreShortenedWhereSeveralAreSet) {
    const std::array<const char*, 8> texts = {"",       "File",  "Folder", "Fi/Fo",
                                              "Bundle", "Fi/Bu", "Fo/Bu",  "Any"};
    for (uint8_t mask = 0; mask < texts.size(); mask++)
        EXPECT_EQ(fileTypeMaskToString(mask), texts[mask]);
    EXPECT_EQ(fileTypeMaskToString(9), "File");
}

}  // namespace
