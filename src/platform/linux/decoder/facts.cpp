#include "platform/linux/decoder/facts.h"

#include <pwd.h>

#include <QDateTime>
#include <QLocale>
#include <QMimeDatabase>

#include "util/permissionString.h"

namespace {

std::string kindText(const std::string& path, mode_t mode) {
    if (S_ISDIR(mode)) return "Folder";
    if (!S_ISREG(mode)) return {};
    const std::string name = path.substr(path.rfind('/') + 1);
    const QMimeType type = QMimeDatabase().mimeTypeForFile(
        QString::fromUtf8(name.data(), qsizetype(name.size())), QMimeDatabase::MatchExtension);
    if (type.isDefault()) return {};
    QString text = type.comment();
    if (!text.isEmpty()) text[0] = text[0].toUpper();
    return text.toStdString();
}

std::string dateText(std::time_t seconds) {
    return QLocale()
        .toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat)
        .toStdString();
}

std::string ownerText(uid_t user) {
    const passwd* const entry = getpwuid(user);
    return entry && entry->pw_name ? entry->pw_name : std::to_string(user);
}

}  // namespace

std::string sizeText(int64_t bytes) {
    return QLocale().formattedDataSize(bytes, bytes < 1024 ? 0 : 1).toStdString();
}

std::string numberText(int64_t number) {
    return QLocale().toString(qint64(number)).toStdString();
}

std::string dimensionsText(int64_t width, int64_t height) {
    return std::to_string(width) + " × " + std::to_string(height);
}

std::vector<Preview::Fact> factsOf(const std::string& path, const OpenedItem& item) {
    std::vector<Preview::Fact> facts;
    const auto add = [&facts](const char* name, std::string value) {
        if (!value.empty()) facts.push_back({name, std::move(value)});
    };
    add("Link to", item.linkTarget);
    if (!item.exists) return facts;
    add("Kind", kindText(path, item.info.st_mode));
    if (S_ISREG(item.info.st_mode)) add("Size", sizeText(item.info.st_size));
    add("Modified", dateText(item.info.st_mtime));
    add("Owner", ownerText(item.info.st_uid));
    add("Permissions", permissionString(item.info.st_mode));
    return facts;
}
