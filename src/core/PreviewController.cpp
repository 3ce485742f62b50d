#include "core/PreviewController.h"

#include "index/fs_item.h"
#include "platform/FileTypes.h"
#include "util/Unicode.h"

using namespace std::chrono_literals;

namespace {

constexpr auto kUntilFollowed = 80ms;
constexpr auto kUntilLoading = 250ms;  // the old content stays meanwhile: most files are quicker

PreviewContent::Kind kindOf(Preview::Kind kind) {
    switch (kind) {
        case Preview::Kind::text:
            return PreviewContent::Kind::text;
        case Preview::Kind::picture:
            return PreviewContent::Kind::picture;
        case Preview::Kind::folder:
            return PreviewContent::Kind::folder;
        case Preview::Kind::properties:
            break;
    }
    return PreviewContent::Kind::properties;
}

}  // namespace

bool PreviewController::togglePreviewPanel() {
    if (isVisible()) {
        close();
        return true;
    }
    if (parts_.selection().empty()) {
        parts_.error("No item selected");
        return false;
    }
    shown_.reset();
    parts_.view.show();
    follow();
    return true;
}

void PreviewController::close() {
    follow_.stop();
    loading_.stop();
    parts_.previews.cancel();
    shown_.reset();
    if (isVisible()) parts_.view.hide();
}

void PreviewController::selectionMayHaveChanged() {
    if (isVisible() && !follow_.isRunning()) follow_.start(kUntilFollowed, [this] { follow(); });
}

void PreviewController::follow() {
    if (!isVisible()) return;
    const std::vector<FileURL> selected = parts_.selection();
    if (selected.size() != 1) {
        showNone(selected.size());
    } else if (shown_ != selected.front()) {
        request(selected.front());
    }
}

void PreviewController::showNone(size_t selected) {
    parts_.previews.cancel();
    loading_.stop();
    shown_.reset();
    PreviewContent content;
    if (selected == 0)
        content.message = "Nothing is selected.";
    else
        content.name = std::to_string(selected) + " items are selected";
    parts_.view.setContent(content);
}

void PreviewController::request(const FileURL& url) {
    shown_ = url;
    loading_.start(kUntilLoading, [this, url] {
        PreviewContent content = contentFor(url, false);
        content.kind = PreviewContent::Kind::loading;
        parts_.view.setContent(content);
    });
    parts_.previews.request({.url = url, .pixels = parts_.view.picturePixels()},
                            [this, url](const Preview& preview) { show(url, preview); });
}

void PreviewController::show(const FileURL& url, const Preview& preview) {
    if (shown_ != url) return;
    loading_.stop();
    PreviewContent content = contentFor(url, preview.isFolder);
    content.kind = kindOf(preview.kind);
    content.text = preview.text;
    content.picture = preview.picture;
    content.message = preview.message;
    for (const Preview::Fact& fact : preview.facts)
        content.facts.push_back({fact.name, displayText(fact.value)});
    for (const Preview::Entry& entry : preview.entries) {
        const uint8_t type = entry.isFolder ? ITEM_DIRECTORY : ITEM_FILE;
        content.entries.push_back(
            {parts_.fileTypes.iconNameForItem(url.appending(entry.name), type),
             displayText(entry.name)});
    }
    parts_.view.setContent(content);
}

PreviewContent PreviewController::contentFor(const FileURL& url, bool isFolder) const {
    PreviewContent content;
    content.name = displayText(url.lastPathComponent());
    content.iconName = parts_.fileTypes.iconNameForItem(url, isFolder ? ITEM_DIRECTORY : ITEM_FILE);
    return content;
}
