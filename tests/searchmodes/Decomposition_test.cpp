#include "searchmodes/Decomposition.h"

#include "searchmodes/DecompositionCheck.h"
#include "searchmodes/corpus.h"
#include "util/TestSupport.h"
#include "util/Unicode.h"

namespace {

/// Knows a few terms, as the parser of queries answers them.
MetaDataParse parse(std::u16string_view term) {
    if (term == u"\\") return {{}, "Incomplete query.", 0, {{"s", "Size"}}};
    if (term == u"\\t")
        return {{}, "Missing timestamp specifier.", -1, {{"b", "Birth"}, {"*", "Any"}}};
    if (term == u"\\s9x") return {{}, "Invalid unit provided for size.", 3, {}};
    if (term == u"\\?") return {{}, {}, {}, {{"t", "Timestamp"}}};
    if (term == u"\\far") return {{}, "Far.", INT64_MAX, {}};
    if (term == u"\\near") return {{}, "Near.", INT64_MIN, {}};
    if (term == u"\\l") return {MetaDataQuery{.criterion = 32}, {}, {}, {}};
    if (term == u"\\s9")
        return {MetaDataQuery{.criterion = 16}, {}, {}, {{"k", "kiB"}, {":", "Sort by size"}}};
    return {};
}

/// "style location+length" and "type location+length text", in their order.
using Lines = std::vector<std::string>;
std::string place(TextRange range) {
    return std::to_string(range.location) + "+" + std::to_string(range.length);
}
Lines stylesOf(const Decomposition& made) {
    const char* names[] = {"plain ", "regexp ", "error ", "incomplete "};
    Lines lines;
    for (const auto& [range, style] : made.styles)
        lines.push_back(names[static_cast<int>(style)] + place(range));
    return lines;
}
Lines messagesOf(const Decomposition& made) {
    Lines lines;
    for (const auto& [range, message] : made.rangeMessages.all())
        lines.push_back((message.messageType == RangeMessage::kError ? "error " : "info ") +
                        place(range) + " " + plainText(message.message));
    return lines;
}

enum Setting { kQueries, kQueriesOff, kNoFiles };
Decomposition decomposed(std::u16string_view text, Setting setting = kQueries) {
    return decompose(text, {.processMetadata = setting != kQueriesOff,
                            .listsFiles = setting != kNoFiles,
                            .parser = [](std::u16string_view term) { return parse(term); }});
}

TEST(Decomposition, TellsEachTermByItsBeginning) {
    struct Case {
        const char16_t* text;
        Lines styles, messages;
    };
    const Case cases[] = {
        {u"", {}, {}},
        {u" a  b\\ c\t+x ", {}, {}},
        {u"a +b.* -c", {"regexp 3+3", "regexp 8+1"}, {}},
        {u"+a\\ b c", {"regexp 1+4"}, {}},
        {u"\\+x \\-( \\\\y", {}, {}},
        {u"+", {"incomplete 0+1"}, {"info 0+1 Missing regular expression."}},
        {u"a - +",
         {"incomplete 2+1", "incomplete 4+1"},
         {"info 2+1 Missing regular expression.", "info 4+1 Missing regular expression."}},
        {u"+(", {"error 1+1"}, {"error 1+1 Incorrectly nested parentheses in regexp pattern."}},
        {u"-[\\W][\\W][\\W][\\W] +c",
         {"error 1+16", "regexp 19+1"},
         {"error 1+16 Pattern exceeds limits on size or complexity."}},
        {u"x -[ab +c",
         {"error 3+3", "regexp 8+1"},
         {"error 3+3 Missing closing bracket on a bracket expression."}},
        {u"\\", {"incomplete 0+1"}, {"info 0+1 Incomplete query. Expecting: s Size"}},
        {u"a \\t",
         {"incomplete 3+1"},
         {"info 3+1 Missing timestamp specifier. Expecting: b Birth * Any"}},
        {u"\\s9x b", {"error 3+1"}, {"info 3+1 Invalid unit provided for size."}},
        {u"\\? b", {"incomplete 0+2"}, {"info 0+2 Expecting: t Timestamp"}},
        {u"\\l", {}, {}},
        {u"a \\s9 b", {}, {"info 5+0 Accepting: k kiB : Sort by size"}},
        // A place beyond the term is its end.
        {u"\\far", {}, {"info 4+0 Far."}},
        {u"\\near b", {}, {"info 5+0 Near."}},
    };
    for (const Case& c : cases) {
        const Decomposition made = decomposed(c.text);
        EXPECT_EQ(stylesOf(made), c.styles) << toUtf8(c.text);
        EXPECT_EQ(messagesOf(made), c.messages) << toUtf8(c.text);
    }
    EXPECT_EQ(decomposed(u"\\s9 \\l \\t \\l").visibleAttributes.items(),
              (std::vector<uint64_t>{16, 32}));
}

TEST(Decomposition, WithoutQueriesABackslashOnlyProtects) {
    const char16_t* text = u"\\ \\t \\+x \\-y \\\\z +a";
    const Decomposition made = decomposed(u"\\t \\+x \\-y \\\\z +a \\", kQueriesOff);
    EXPECT_EQ(stylesOf(made), (Lines{"error 1+1", "regexp 16+1", "incomplete 18+1"}));
    EXPECT_EQ(messagesOf(made), (Lines{"info 1+1 Invalid escape sequence. Expecting: [\\+-] [\\+-]",
                                       "info 18+1 Incomplete query. Expecting: [\\+-] [\\+-]"}));
    EXPECT_TRUE(made.visibleAttributes.empty());
    EXPECT_EQ(stylesOf(decomposed(text, kNoFiles)), Lines{"regexp 18+1"}) << "no rows to look at";
}

TEST(Decomposition, OnlyWhatIsFollowedByChoicesIsBold) {
    using Look = StyledSpan::Look;
    const auto message = [](const char16_t* text, Setting setting) {
        return decomposed(text, setting).rangeMessages.all().front().second.message;
    };
    EXPECT_EQ(message(u"\\t", kQueries),
              (StyledText{{"Missing timestamp specifier. ", Look::strong},
                          {"Expecting: ", Look::plain},
                          {"b", Look::token},
                          {" Birth ", Look::plain},
                          {"*", Look::token},
                          {" Any", Look::plain}}));
    EXPECT_EQ(message(u"\\s9x", kQueries),
              (StyledText{{"Invalid unit provided for size.", Look::plain}}));
    EXPECT_EQ(message(u"\\", kQueriesOff).front(),
              (StyledSpan{"Incomplete query. ", Look::strong}));
}

TEST(Decomposition, WhatTheFuzzerFoundHolds) {
    int count = 0;
    for (const std::string& bytes : contentsOfFolder(TROVAST_FUZZ_CORPUS "/decomposition")) {
        count++;
        for (const bool files : {false, true}) {
            const std::u16string text = textFromBytes(bytes);
            EXPECT_EQ(troubleWithSearchText(text, true, files), "") << bytes;
            EXPECT_EQ(troubleWithSearchText(text, false, files), "") << bytes;
        }
    }
    EXPECT_GT(count, 10);
}

TEST(RangeMessages, TheFirstRangeAtTheSelectionSpeaks) {
    const Decomposition made = decomposed(u"+( a \\s9 \\t");  // 1+1, 8+0, 10+1
    struct Case {
        TextRange selection;
        const char* text;
    };
    const Case cases[] = {
        {{0, 0}, nullptr},  {{1, 0}, "Incorr"},  {{2, 0}, "Incorr"}, {{3, 0}, nullptr},
        {{7, 0}, nullptr},  {{8, 0}, "Accept"},  {{9, 0}, nullptr},  {{11, 0}, "Missin"},
        {{0, 1}, "Incorr"}, {{3, 5}, "Accept"},  {{8, 3}, "Accept"}, {{0, 11}, nullptr},
        {{3, 9}, nullptr},  {{0, 10}, "Missin"},
    };
    for (const Case& c : cases) {
        const RangeMessage* message = made.rangeMessages.messageToShow(c.selection, 11);
        ASSERT_EQ(message != nullptr, c.text != nullptr) << place(c.selection);
        if (message) {
            EXPECT_EQ(plainText(message->message).substr(0, 6), c.text);
        }
    }
    EXPECT_NE(made.rangeMessages.messageForRange({0, 11}), nullptr);
}

TEST(RangeMessages, ARangeHasOneMessageAndAnEmptyOneIsLogged) {
    const LogLines log;
    RangeMessages messages;
    messages.addRangeWithInfo({1, 2}, {{"old"}});
    messages.addRangeWithError({1, 2}, {{"new"}});
    messages.addRangeWithError({5, 1}, {});
    messages.addRangeWithInfo({5, 1}, {});
    ASSERT_EQ(messages.all().size(), 1u);
    EXPECT_EQ(plainText(messages.all()[0].second.message), "new");
    EXPECT_EQ(log.count("Missing error message") + log.count("Missing info message"), 2u);
    messages.clearMessageRanges();
    EXPECT_EQ(messages.messageForRange({1, 0}), nullptr);
}

}  // namespace
