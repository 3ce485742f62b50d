#pragma once
#include <functional>
#include <list>
#include <unordered_map>

#include "platform/Thumbnails.h"
#include "screen/ResultTableView.h"
#include "util/queues/MainQueue.h"

class ModeHost;
class ResultTableController;

/// The pictures that stand for the icons of rows with pictures, documents and films. They are asked
/// for when the window has been quiet for a moment, and only for the rows in sight.
/// Owner:   AppDelegate. Threads: main.
class RowThumbnails {
  public:
    struct Parts {
        Thumbnails& thumbnails;
        ResultTableView& table;
        const ResultTableController& rows;
        ModeHost& host;
        /// Takes out what the user wants nothing known of: it is never looked into.
        std::function<void(std::vector<FileURL>&)> dropExcluded;
    };
    explicit RowThumbnails(const Parts& parts) : parts_(parts) {}
    ~RowThumbnails() { parts_.thumbnails.cancel(); }

    /// Puts the picture into a row that has one, by the row's number.
    void addTo(RowContent& content, size_t row) const;
    /// The user types, scrolls or selects: all work stops, and begins again in a moment.
    void somethingHappened();

  private:
    void requestRowsInSight();
    void keep(const FileURL& url, const std::shared_ptr<const Picture>& picture);
    static bool mayHaveOne(const RowContent& content);

    struct Kept {
        FileURL url;
        std::shared_ptr<const Picture> picture;
        Clock::TimePoint since;
    };
    std::list<Kept>::const_iterator find(const FileURL& url) const;

    const Parts parts_;
    std::list<Kept> kept_;  // the newest first
    std::unordered_map<FileURL, std::list<Kept>::iterator> places_;
    OneShotTimer quiet_;
};
