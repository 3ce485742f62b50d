#include "searchmodes/StringRanker.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "searchmodes/AsciiText.h"
#include "searchmodes/NaiveRanker.h"
#include "searchmodes/RankTerm.h"
#include "searchmodes/WideText.h"
#include "util/Unicode.h"

namespace {

using Positions = std::vector<uint64_t>;

double rank(std::u16string_view candidate, std::u16string_view filter, IndexSet* indexes,
            bool unifyCase = true) {
    const std::u16string lower = lowerCasedUnits(filter);
    return StringRanker::rankString(
        candidate, {.usingFilter = filter, .usingLcFilter = lower, .unifyCase = unifyCase},
        indexes);
}

TEST(StringRanker, ScoresByRunsThenWordStartsThenPlace) {
    struct Case {
        const char16_t *candidate, *filter;
        double score;
        Positions positions;
    };
    const Case cases[] = {
        {u"ab", u"AB", 1.0, {0, 1}},
        {u"ab", u"ba", -1.0, {}},
        {u"src/main.c", u"main", 0.6357142857, {4, 5, 6, 7}},
        {u"src/main.c", u"sm", 0.2178571429, {0, 4}},
        {u"src/main.c", u"SM", 0.9678571429, {0, 4}},
        {u"README.md", u"RM", 0.9444444444, {0, 4}},
        {u"foo bar", u"FB", 0.9693877551, {0, 4}},
        {u"foo.bar", u"FB", 0.3979591837, {0, 4}},
        {u"abcabc", u"abc", 0.5817307692, {0, 1, 2}},
        {u"abc-xx", u"abc", 0.5817307692, {0, 1, 2}},
        {u"abc-bc",
         u"abc",
         0.3509615385,
         {0, 1, 2}},  // a short term is cut where a word could begin
        {u"abcd-bcd", u"abcd", 0.6458333333, {0, 1, 2, 3}},
        {u"fxoxo", u"foo", 0.1211538462, {0, 2, 4}},
        {u"abc", u"", 0.0, {}},
        {u"ab", u"abc", -1.0, {}},
    };
    for (const Case& c : cases) {
        IndexSet indexes;
        EXPECT_NEAR(rank(c.candidate, c.filter, &indexes), c.score, 5e-11) << toUtf8(c.candidate);
        EXPECT_EQ(indexes.items(), c.positions) << toUtf8(c.candidate);
    }
}

TEST(StringRanker, WithoutPositionsTheScoreFollowsFromTheLengths) {
    const double l = 3, n = 7, d = l * l + l + 1;
    EXPECT_DOUBLE_EQ(rank(u"abcxxxx", u"abc", nullptr),
                     (l * l + 1) / d + 1 / (2 * d) + (l / n) / (8 * d));
    EXPECT_EQ(rank(u"abxxxxx", u"abc", nullptr), -1);
}

TEST(StringRanker, CaseCountsWhenItIsNotUnified) {
    IndexSet indexes;
    EXPECT_EQ(rank(u"xABC", u"abc", &indexes, false), -1);
    EXPECT_TRUE(indexes.empty());
    EXPECT_GT(rank(u"xabc", u"abc", &indexes, false), 0);
}

TEST(StringRanker, HalvesOfAPairAreNoReasonToRefuse) {
    IndexSet indexes;
    EXPECT_GT(rank(u"x😀y", u"😀", &indexes), 0);
    EXPECT_EQ(indexes.items(), (Positions{1, 2}));
    EXPECT_EQ(rank(u"x😀y", u"😁", &indexes), -1);
}

TEST(StringRanker, KeepsTheByteFillOfItsBoundsAtMultiplesOf256) {
    // There a bound of zero lets the "b" in front of the "a" be chosen, which refuses the match.
    for (const size_t length : {255u, 256u, 257u, 512u}) {
        std::u16string candidate(length, u'x');
        candidate[1] = candidate[103] = u'b';
        candidate[100] = u'a';
        IndexSet indexes;
        const double score = rank(candidate, u"ab", &indexes);
        if (length % 256 == 0) {
            EXPECT_EQ(score, -1) << length;
            EXPECT_TRUE(indexes.empty());
        } else {
            EXPECT_GT(score, 0) << length;
            EXPECT_EQ(indexes.items(), (Positions{100, 103})) << length;
        }
    }
}

TEST(StringRanker, LongTextsAndTermsNeedNoStack) {
    const std::u16string candidate(20000, u'a');
    IndexSet indexes;
    EXPECT_GT(rank(candidate, std::u16string(600, u'a'), &indexes), 0);
    EXPECT_EQ(indexes.count(), 600u);
    EXPECT_EQ(rank(candidate, std::u16string(30000, u'a'), &indexes), -1);
}

/// RankTerm's ways of finding out, all of which must say the same as StringRanker.
template <class Text>
void expectSame(const RankTerm& term, const Text& text, double score, const IndexSet& expected) {
    using Bits = typename Text::BitsType;
    RankTerm::Rows<Text> rows;
    RankCounts counts;
    Bits chosen(0);
    double found = -1;
    if (term.findRows(text, rows)) {
        const Bits starts = text.wordStarts();
        counts.wordStarts = unitBits::count(starts);
        if (term.chooseRuns(rows, starts, counts, chosen)) {
            found = rankScore(term.length(), text.length(), counts);
            EXPECT_NEAR(term.roughScore(text.length(), counts), found, 1e-12);
        } else {
            chosen = Bits(0);
        }
    } else {
        chosen = Bits(0);
    }
    ASSERT_EQ(found, score) << toUtf8(term.text());
    IndexSet positions;
    for (; bool(chosen); unitBits::clearLowest(chosen)) positions.add(unitBits::lowest(chosen));
    ASSERT_EQ(positions, expected) << toUtf8(term.text());
}

void compareAll(const std::u16string& candidate, const RankTerm& term) {
    SCOPED_TRACE(toUtf8(candidate));
    IndexSet expected;
    const double score = rank(candidate, term.text(), &expected);
    if (term.isPlain() && candidate.size() > term.length()) {
        const NaiveRanker naive(candidate, term.text());
        ASSERT_EQ(naive.score, score) << toUtf8(term.text());
        ASSERT_EQ(Positions(naive.positions.begin(), naive.positions.end()), expected.items());
    }
    IndexSet fast;
    ASSERT_EQ(term.rank(candidate, &fast), score) << toUtf8(term.text());
    ASSERT_EQ(fast, expected) << toUtf8(term.text());
    if (!term.isPlain() || candidate.size() <= term.length() || candidate.size() > 255) return;
    const WideText<UnitBits256> wide(candidate);
    expectSame(term, wide, score, expected);
    std::string bytes = toUtf8(candidate);
    if (bytes.size() != candidate.size()) return;
    bytes.append(300, 'x');  // what a wide load reads behind the end
    const auto length = static_cast<unsigned>(candidate.size());
    const AsciiText<UnitBits256> ascii(bytes.data(), length);
    expectSame(term, ascii, score, expected);
    if (length <= 64) {
        const AsciiText<uint64_t> narrow(bytes.data(), length);
        expectSame(term, narrow, score, expected);
    }
    if (length <= 128) {
        const AsciiText<UnitBits128> middle(bytes.data(), length);
        expectSame(term, middle, score, expected);
    }
}

TEST(RankTerm, AllRankersAgreeOnAllSmallTexts) {
    const std::u16string units = u"aB-";
    auto all = [&](size_t longest) {
        std::vector<std::u16string> texts{u""};
        for (size_t at = 0; at < texts.size(); at++) {
            if (texts[at].size() == longest) break;
            for (const char16_t unit : units) texts.push_back(texts[at] + unit);
        }
        texts.erase(texts.begin());
        return texts;
    };
    for (const std::u16string& filter : all(5)) {
        const RankTerm term(filter);
        for (const std::u16string& candidate : all(6)) compareAll(candidate, term);
        if (HasFatalFailure()) return;
    }
}

TEST(RankTerm, AllRankersAgreeOnRandomTexts) {
    std::mt19937 random(20240607);
    auto below = [&](size_t n) { return random() % n; };
    const std::u16string sets[] = {u"ab",       u"abAB",
                                   u"abcABC_.", u"abcdefgh-_. 'ABCDEFGH012",
                                   u"aA.'-",    u"aé\u0130ıſKßs\u212A\u03A3\u03C3-",
                                   u"a😀b\u6771"};
    for (int round = 0; round < 30000 && !HasFatalFailure(); round++) {
        const std::u16string& set = sets[below(std::size(sets))];
        std::u16string candidate, filter;
        const size_t length = 1 + below(below(8) ? 24 : 300);
        while (candidate.size() < length) candidate += set[below(set.size())];
        const size_t wanted = 1 + below(below(4) ? 5 : 12);
        if (below(2)) {
            while (filter.size() < wanted) filter += set[below(set.size())];
        } else {  // what surely occurs
            for (size_t i = below(3); i < length && filter.size() < wanted;
                 i += 1 + (below(3) ? 0 : below(5)))
                filter += candidate[i];
        }
        if (!filter.empty()) compareAll(candidate, RankTerm(filter));
    }
}

TEST(RankTerm, NeedsOnlyLettersThatAMatchingNameHas) {
    std::mt19937 random(7);
    const std::u16string set = u"abAB.9_\u212Aſßüs";
    for (int round = 0; round < 20000; round++) {
        std::u16string candidate, filter;
        for (size_t i = 1 + random() % 6; i > 0; i--) candidate += set[random() % set.size()];
        for (size_t i = 1 + random() % 3; i > 0; i--) filter += set[random() % set.size()];
        const RankTerm term(nfc(filter));
        IndexSet indexes;
        if (term.rank(nfc(candidate), &indexes) > 0) {
            EXPECT_EQ(term.need() & ~presenceOfName(toUtf8(candidate)), 0u)
                << toUtf8(filter) << " in " << toUtf8(candidate);
        }
    }
}

}  // namespace
