#include "platform/linux/decoder/readText.h"

#include <QString>
#include <QStringDecoder>
#include <algorithm>

namespace {

constexpr qsizetype kMostLines = 1500, kMostOfLine = 2000;

bool isControl(char16_t unit) {
    return unit < 0x20 && unit != '\t' && unit != '\n' && unit != '\r' && unit != '\f';
}

bool looksLikeText(const QString& text) {
    const auto controls = std::count_if(text.begin(), text.end(),
                                        [](QChar unit) { return isControl(unit.unicode()); });
    return controls * 50 <= text.size();
}

/// Without a character that the end cuts in two.
std::string_view withoutTornEnd(std::string_view bytes) {
    size_t length = bytes.size(), back = 0;
    while (back < 3 && length > 0 && (bytes[length - 1] & 0xC0) == 0x80) length--, back++;
    if (length > 0 && (bytes[length - 1] & 0xC0) == 0xC0) length--;
    return length + 4 > bytes.size() ? bytes.substr(0, length) : bytes;
}

std::optional<QString> decoded(std::string_view bytes, bool isWhole) {
    using Encoding = QStringConverter::Encoding;
    const auto encoding = QStringConverter::encodingForData(
        QByteArrayView(bytes.data(), qsizetype(std::min<size_t>(bytes.size(), 4))));
    if (encoding == Encoding::Utf16LE || encoding == Encoding::Utf16BE) {
        QStringDecoder decoder(*encoding);
        return QString(decoder(QByteArrayView(bytes.data(), qsizetype(bytes.size() & ~size_t{1}))));
    }
    if (bytes.find('\0') != std::string_view::npos) return std::nullopt;
    if (!isWhole && (bytes.back() & 0x80)) bytes = withoutTornEnd(bytes);
    const QByteArrayView view(bytes.data(), qsizetype(bytes.size()));
    QStringDecoder utf8(Encoding::Utf8);
    QString text = utf8(view);
    if (!utf8.hasError()) return text;
    const auto high = std::count_if(bytes.begin(), bytes.end(), [](char c) { return c & 0x80; });
    if (size_t(high) * 3 > bytes.size()) return std::nullopt;
    return QString::fromLatin1(view);
}

}  // namespace

std::optional<ReadText> readText(std::string_view bytes, bool isWhole) {
    if (bytes.empty()) return std::nullopt;
    const auto text = decoded(bytes, isWhole);
    if (!text || !looksLikeText(*text)) return std::nullopt;
    ReadText result{{}, !isWhole};
    QString shown;
    qsizetype lines = 0, inLine = 0;
    for (const QChar unit : *text) {
        if (unit == u'\r') continue;
        if (unit == u'\n') {
            inLine = 0;
            if (++lines == kMostLines) {
                result.isCut = true;
                break;
            }
        } else if (++inLine > kMostOfLine) {
            result.isCut = true;
            continue;
        }
        const char16_t code = unit.unicode();
        shown += isControl(code) ? QChar(char16_t(0x2400 + code)) : unit;
    }
    result.text = shown.toStdString();
    return result;
}
