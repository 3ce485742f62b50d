#include "platform/linux/decoder/listFolder.h"

#include <dirent.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <tuple>

#include "platform/linux/decoder/PreviewMessage.h"
#include "platform/linux/decoder/facts.h"

namespace {

constexpr size_t kMostRead = 20'000;

bool comesBefore(const Preview::Entry& a, const Preview::Entry& b) {
    const auto rank = [](const Preview::Entry& entry) {
        return std::tuple(entry.name.front() == '.', !entry.isFolder);
    };
    if (rank(a) != rank(b)) return rank(a) < rank(b);
    const int order = strcasecmp(a.name.c_str(), b.name.c_str());
    return order != 0 ? order < 0 : a.name < b.name;
}

}  // namespace

void listFolder(int handle, Preview& preview) {
    preview.kind = Preview::Kind::folder;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(fdopendir(dup(handle)), &closedir);
    if (!folder) {
        preview.message = "You may not read it.";
        return;
    }
    std::vector<Preview::Entry>& entries = preview.entries;
    const dirent* found = nullptr;
    while (entries.size() < kMostRead && (found = readdir(folder.get()))) {
        const std::string name = found->d_name;
        if (name != "." && name != "..") entries.push_back({name, found->d_type == DT_DIR});
    }
    const size_t count = entries.size();
    const std::string number = numberText(static_cast<int64_t>(count));
    preview.facts.insert(preview.facts.begin(),
                         {"Items", count < kMostRead ? number : "more than " + number});
    if (count == 0) preview.message = "The folder is empty.";
    const size_t shown = std::min(count, previewMessage::kMostEntries);
    std::partial_sort(entries.begin(), entries.begin() + static_cast<ptrdiff_t>(shown),
                      entries.end(), comesBefore);
    entries.resize(shown);
}
