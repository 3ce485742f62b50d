#include "platform/linux/LinuxFileTypes.h"

#include <QMimeDatabase>

namespace {
constexpr uint8_t kFolderTypes = 2 | 4;  // bits of an item type: a folder, or one taken for a file
}

bool LinuxFileTypes::isFilePackageAtPath(const FileURL&) const {
    return false;
}

std::string LinuxFileTypes::iconNameForItem(const FileURL& url, uint8_t itemType) const {
    if (itemType & kFolderTypes) return "folder";
    const std::string_view name = url.lastPathComponent();
    // Bytes that are no text are replaced; what the rules look at, the extension, stays.
    const QString text = QString::fromUtf8(name.data(), qsizetype(name.size()));
    const QMimeType type = QMimeDatabase().mimeTypeForFile(text, QMimeDatabase::MatchExtension);
    if (!type.isValid() || type.isDefault()) return "unknown";
    return type.iconName().toStdString();
}
