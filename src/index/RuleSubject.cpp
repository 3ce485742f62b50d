#include "index/RuleSubject.h"

#include <algorithm>

#include "util/Unicode.h"

namespace {

/// A slash joins with nothing, so the parts of a path can be composed one by one.
void appendText(std::u16string& text, std::string_view bytes) {
    const size_t before = text.size();
    text.resize(before + bytes.size());
    char16_t* to = text.data() + before;
    unsigned all = 0;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        all |= byte;
        *to++ = byte;
    }
    if (all < 0x80) return;
    text.resize(before);
    text += ruleText(bytes);
}

}  // namespace

std::string_view relativePath(std::string_view folder, std::string_view path) {
    if (folder.ends_with('/')) folder.remove_suffix(1);  // the root
    return path.substr(std::min(folder.size(), path.size()));
}

RuleSubject::RuleSubject(std::string_view projectFolder, std::string_view folder) {
    appendText(text_, relativePath(projectFolder, folder));
    if (!text_.ends_with(u'/')) text_.push_back(u'/');
    folderLength_ = text_.size();
}

void RuleSubject::setName(std::string_view name) {
    text_.resize(folderLength_);
    appendText(text_, name);
}
