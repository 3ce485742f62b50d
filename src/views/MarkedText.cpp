#include "views/MarkedText.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <numeric>

#include "util/Unicode.h"

namespace {

constexpr QChar kEllipsis(0x2026);
constexpr QChar kFirstStrongIsolate(0x2068), kPopDirectionalIsolate(0x2069);
constexpr QChar kFirstControlPicture(0x2400), kLastControlPicture(0x2421);
constexpr int kHead = 3, kTail = 5;  // letters at both ends that stay longer than others

/// A text cut into what a reader takes for one letter.
struct Letters {
    std::vector<qsizetype> begin;  // and, behind the last, the end of the text
    std::vector<bool> marked;
    size_t count() const { return marked.size(); }
};

Letters lettersOf(const MarkedText& whole) {
    Letters letters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, whole.text);
    auto mark = whole.marks.begin();
    for (qsizetype at = 0; at < whole.text.size();) {
        const qsizetype next = finder.toNextBoundary();
        const qsizetype end = next > at ? next : whole.text.size();
        while (mark != whole.marks.end() && mark->location + mark->length <= size_t(at)) ++mark;
        letters.begin.push_back(at);
        letters.marked.push_back(mark != whole.marks.end() && mark->location < size_t(end));
        at = end;
    }
    letters.begin.push_back(whole.text.size());
    return letters;
}

/// Indexes of the letters, those that must stay first. Around each mark and from both ends the kept
/// stretches grow evenly.
std::vector<size_t> byImportance(const Letters& letters) {
    const size_t n = letters.count();
    std::vector<size_t> far(n);
    for (size_t i = 0; i < n; ++i) {
        const size_t fromEnd = n - 1 - i;
        const size_t head = i < kHead ? 1 : i, tail = fromEnd < kTail ? 1 : fromEnd;
        far[i] = letters.marked[i] ? 0 : std::min(head, tail);
    }
    for (size_t i = 1; i < n; ++i) far[i] = std::min(far[i], std::max<size_t>(far[i - 1], 1) + 1);
    for (size_t i = n; i-- > 1;) far[i - 1] = std::min(far[i - 1], std::max<size_t>(far[i], 1) + 1);
    std::vector<size_t> order(n);
    std::iota(order.begin(), order.end(), size_t{0});
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return far[a] < far[b]; });
    return order;
}

void appendUnits(MarkedText& to, const MarkedText& from, qsizetype begin, qsizetype end) {
    const auto shift = to.text.size() - begin;
    to.text += QStringView(from.text).mid(begin, end - begin);
    for (const TextRange& mark : from.marks) {
        const auto low = std::max<qsizetype>(begin, qsizetype(mark.location));
        const auto high = std::min<qsizetype>(end, qsizetype(mark.location + mark.length));
        if (low < high) to.marks.push_back({size_t(low + shift), size_t(high - low)});
    }
}

/// The text with only some of its letters. A hole of one letter is closed: it would be no narrower.
MarkedText withLetters(const MarkedText& whole, const Letters& letters, std::vector<bool> keep) {
    const size_t n = letters.count();
    MarkedText result;
    for (size_t i = 0; i < n;) {
        size_t end = i + 1;
        while (end < n && keep[end] == keep[i]) ++end;
        if (keep[i] || (end == i + 1 && n > 1))
            appendUnits(result, whole, letters.begin[i], letters.begin[end]);
        else
            result.text += kEllipsis;
        i = end;
    }
    return result;
}

/// What most fonts have where they have no pictures of control characters.
QChar plainSign(QChar picture) {
    switch (picture.unicode()) {
        case u'\u2409':  // a tabulator
            return {u'\u21E5'};
        case u'\u240A':  // the ends of a line
        case u'\u240D':
            return {u'\u21B5'};
        default:
            return {u'\u00A4'};
    }
}

}  // namespace

QString plainText(const std::string& utf8, bool hasControlPictures) {
    QString text = QString::fromStdString(displayText(utf8));
    if (hasControlPictures) return text;
    for (QChar& c : text)
        if (c >= kFirstControlPicture && c <= kLastControlPicture) c = plainSign(c);
    return text;
}

QString plainLines(const std::string& utf8) {
    QString result;
    for (size_t begin = 0; begin <= utf8.size();) {
        const size_t end = std::min(utf8.find('\n', begin), utf8.size());
        if (begin > 0) result += QLatin1Char('\n');
        result += plainText(utf8.substr(begin, end - begin));
        begin = end + 1;
    }
    return result;
}

QString plainToolTip(const std::string& utf8) {
    if (utf8.empty()) return {};
    QString lines = plainLines(utf8).toHtmlEscaped();
    lines.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(lines);
}

MarkedText elidedAroundMarks(const MarkedText& whole, double width,
                             FunctionRef<double(const QString&)> widthOf) {
    if (whole.text.isEmpty() || widthOf(whole.text) <= width) return whole;
    const Letters letters = lettersOf(whole);
    const std::vector<size_t> order = byImportance(letters);
    const auto kept = [&](size_t count) {
        std::vector<bool> keep(letters.count(), false);
        for (size_t i = 0; i < count; ++i) keep[order[i]] = true;
        return withLetters(whole, letters, std::move(keep));
    };
    size_t fits = 0, tooMany = letters.count();
    MarkedText best = kept(0);
    while (tooMany - fits > 1) {
        const size_t middle = fits + (tooMany - fits) / 2;
        MarkedText candidate = kept(middle);
        if (widthOf(candidate.text) <= width) {
            fits = middle;
            best = std::move(candidate);
        } else {
            tooMany = middle;
        }
    }
    return best;
}

MarkedText isolatingPathComponents(const MarkedText& path) {
    if (!path.text.isRightToLeft() && std::none_of(path.text.begin(), path.text.end(), [](QChar c) {
            return c.direction() == QChar::DirR || c.direction() == QChar::DirAL;
        }))
        return path;
    MarkedText result;
    for (qsizetype begin = 0; begin <= path.text.size();) {
        const qsizetype slash = path.text.indexOf(QLatin1Char('/'), begin);
        const qsizetype end = slash < 0 ? path.text.size() : slash;
        result.text += kFirstStrongIsolate;
        appendUnits(result, path, begin, end);
        result.text += kPopDirectionalIsolate;
        if (slash < 0) break;
        appendUnits(result, path, slash, slash + 1);
        begin = slash + 1;
    }
    return result;
}
