#include "platform/linux/decoder/ThumbnailStore.h"

#include <QCryptographicHash>
#include <string_view>

#include "util/FileURL.h"
#include "util/UserFolders.h"

namespace thumbnailStore {

std::string folder() {
    return userFolders::cache().appending("thumbnails").path();
}

std::string uriOf(const std::string& path) {
    constexpr std::string_view kPlain = "/-_.!~*'():@&=+$,";
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isAlphanumeric =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        if (isAlphanumeric || kPlain.find(c) != std::string_view::npos)
            uri += c;
        else
            (uri += '%') += {kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return uri;
}

std::string nameOf(const std::string& uri) {
    const QByteArray bytes(uri.data(), qsizetype(uri.size()));
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5).toHex().toStdString() + ".png";
}

bool isInside(const std::string& store, const std::string& path) {
    return FileURL(path).isAtOrBelow(FileURL(store));
}

}  // namespace thumbnailStore
