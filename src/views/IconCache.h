#pragma once
#include <QHash>
#include <QMimeDatabase>
#include <QObject>
#include <QPixmap>
#include <deque>
#include <functional>
#include <list>
#include <memory>

#include "util/Picture.h"

/// A picture made smaller to fit a place of so many logical pixels, never larger, for a screen of
/// the given scale.
QPixmap fitted(const Picture& picture, QSize place, double scale);

/// Pictures for freedesktop icon names: from the desktop's icon theme, there also by the generic
/// name of the media type, else drawn by ourselves.
/// Owner:   ResultTable, PreviewBody, RowMenu. Threads: main; the files of applications' pictures
/// are read on another, while there is a World.
class IconCache {
  public:
    /// A square picture of size logical pixels for a screen of the given scale.
    QPixmap pixmap(const std::string& iconName, int size, double scale);
    /// The same for whoever paints while somebody types: our own drawing until that of the theme
    /// has been loaded, which begins after the caller has painted.
    QPixmap pixmapAtOnce(const std::string& iconName, int size, double scale);
    /// Loads, one after another, what most lists show.
    void prepare(int size, double scale);
    /// Of an application: the name may be the path of a picture. Null where there is none, and
    /// until it has been loaded, which begins after the caller has painted.
    QPixmap applicationPixmap(const std::string& iconName, int size, double scale);
    /// Called whenever one that was asked for has come.
    void setLoadedBlock(std::function<void()> block) { loadedBlock_ = std::move(block); }
    /// A picture fitted into a square of size logical pixels.
    QPixmap pixmap(const std::shared_ptr<const Picture>& picture, int size, double scale);
    /// When the icon theme has changed.
    void clear() {
        pixmaps_.clear();
        wanted_.clear();
        applications_.clear();
    }

  private:
    struct Key {
        QString name;
        int size;
        double scale;
        friend bool operator==(const Key&, const Key&) = default;
        friend size_t qHash(const Key& key, size_t seed) {
            return qHashMulti(seed, key.name, key.size, key.scale);
        }
    };
    enum class Kind { item, application };
    struct Wanted {
        Key key;
        Kind kind;
        friend bool operator==(const Wanted&, const Wanted&) = default;
    };
    QPixmap ofTheme(const Key& key) const;
    QPixmap drawn(const Key& key) const;
    void want(const Key& key, Kind kind);
    void loadNext();
    void loadApplication(const Key& key);
    void readApplication(const Key& key);
    void keep(QHash<Key, QPixmap>& pixmaps, const Key& key, const QPixmap& pixmap);

    QHash<Key, QPixmap> pixmaps_;       // as many as there are icon names in use: some hundreds
    std::deque<Wanted> wanted_;         // still to be loaded
    QHash<Key, QPixmap> applications_;  // null: still to come, or there is none
    struct Small {
        std::shared_ptr<const Picture> picture;
        int size;
        double scale;
        QPixmap pixmap;
    };
    std::list<Small> smalls_;  // of pictures, the last used first
    QMimeDatabase mimeTypes_;
    std::function<void()> loadedBlock_ = {};
    QObject life_;  // what is loaded later comes while it lives
};
