#include "views/rowSpeech.h"

#include <QStringList>

#include "views/MarkedText.h"

namespace {

struct Sign {
    const char* sign;
    const char* words;
};
constexpr Sign kSigns[] = {
    {"✨", "Created:"},
    {"✏️", "Content changed:"},
    {"📎", "Attributes changed:"},
    {"👁️", "Opened:"},
    {"⚖️", "Size:"},
    {"👤", "Owner:"},
    {"👥", "Group:"},
    {"🔒", "Permissions:"},
    {"🔗", "Hard links:"},
};

QString inWords(const RowLine& line) {
    QString text = plainText(line.text, true);
    for (const Sign& each : kSigns) {
        const QString sign = QString::fromUtf8(each.sign);
        const qsizetype at = text.indexOf(sign);
        if (at < 0) continue;
        const QString words = QString::fromUtf8(each.words);
        text.replace(at, sign.size(), at > 0 ? QLatin1Char('\n') + words : words);
    }
    QStringList parts = text.split(QLatin1Char('\n'));
    for (QString& part : parts) part = part.trimmed();
    return parts.join(QLatin1Char('\n'));
}

QStringList lines(const RowContent& row) {
    QStringList all;
    if (!row.path.empty()) all << plainText(row.path, true);
    for (const RowLine& line : row.attributes) all << inWords(line).split(QLatin1Char('\n'));
    return all;
}

}  // namespace

QString rowSpeech::name(const RowContent& row, bool isBrokenLink) {
    QString text = plainText(row.name, true);
    if (row.isLink && isBrokenLink)
        text += QStringLiteral(", broken link");
    else if (row.isLink)
        text += QStringLiteral(", link");
    if (row.source == RowContent::Source::copy)
        text += QStringLiteral(", to be copied");
    else if (row.source == RowContent::Source::move)
        text += QStringLiteral(", to be moved");
    else if (row.isMarked)
        text += QStringLiteral(", marked");
    return text;
}

QString rowSpeech::details(const RowContent& row) {
    return lines(row).join(QStringLiteral(", "));
}

QString rowSpeech::action(const RowAction& action) {
    return QStringLiteral("Return: ") + plainText(action.label, true);
}

QString rowSpeech::toolTip(const RowContent& row) {
    QStringList all = lines(row);
    all.prepend(plainText(row.name, true));
    QString text;
    for (const QString& line : all) {
        if (!text.isEmpty()) text += QStringLiteral("<br>");
        text += line.toHtmlEscaped();
    }
    return QStringLiteral("<p style='white-space:pre'>%1</p>").arg(text);
}
