#include "modes/framework/attributeLines.h"

#include <grp.h>
#include <pwd.h>
#include <unicode/udat.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

#include "index/fs_item.h"
#include "modes/framework/TRVMode.h"
#include "modes/framework/attributeTexts.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataQuery.h"
#include "util/Unicode.h"
#include "util/permissionString.h"

using enum MetaDataQuery::Criterion;

namespace {

constexpr size_t kEntrySize = 1024;

struct CloseFormat {
    void operator()(UDateFormat* format) const { udat_close(format); }
};
using Format = std::unique_ptr<UDateFormat, CloseFormat>;

Format openDateFormat() {
    UErrorCode status = U_ZERO_ERROR;
    Format format(udat_open(UDAT_SHORT, UDAT_MEDIUM, metaDataCalendar::currentLocale().c_str(),
                            nullptr, 0, nullptr, 0, &status));
    return U_SUCCESS(status) ? std::move(format) : nullptr;
}

/// Opening a format costs far more than using it, and each row shows four dates.
UDateFormat* dateFormat() {
    static thread_local const Format format = openDateFormat();
    return format.get();
}

std::string dateText(int64_t epoch) {
    if (!dateFormat()) return {};
    std::array<char16_t, 128> text;
    UErrorCode status = U_ZERO_ERROR;
    const int32_t length = udat_format(dateFormat(), static_cast<double>(epoch) * 1000, text.data(),
                                       static_cast<int32_t>(text.size()), nullptr, &status);
    return U_SUCCESS(status) ? toUtf8({text.data(), static_cast<size_t>(length)}) : std::string();
}

class LineBuilder {
  public:
    void add(const char* label, const std::string& value, bool isHighlighted) {
        append(label);
        const size_t start = length_;
        append(value);
        if (isHighlighted) line_.highlights.push_back({start, length_ - start});
    }
    RowLine take() { return std::move(line_); }

  private:
    void append(const std::string& text) {
        line_.text += text;
        length_ += toUtf16Lenient(text).size();
    }

    RowLine line_;
    size_t length_ = 0;
};

bool isQueried(const AttributeDisplay& display, uint64_t attribute) {
    return shouldDisplayAttribute(display, attribute, IgnoreSettings::yes);
}

bool isDisplayed(const AttributeDisplay& display, AttributeRow row) {
    if (display.showMetadata == kShowAlways) return true;
    const auto& attributes = display.visibleAttributes.items();
    return std::any_of(attributes.begin(), attributes.end(), [&](uint64_t attribute) {
        return attrRowTypeForCriterion(attribute) == row &&
               shouldDisplayAttribute(display, attribute);
    });
}

std::string shownName(const char* name) {
    return name && *name ? displayText(name) : "(unnamed)";
}

std::string nameOfUser(uint32_t uid) {
    std::array<char, kEntrySize> buffer;
    passwd entry, *found = nullptr;
    if (getpwuid_r(uid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return "(unknown)";
    return shownName(found->pw_name);
}

// Kept: a group whose members take more room than the buffer has counts as unknown.
std::string nameOfGroup(uint32_t gid) {
    std::array<char, kEntrySize> buffer;
    group entry, *found = nullptr;
    if (getgrgid_r(gid, &entry, buffer.data(), buffer.size(), &found) != 0 || !found)
        return "(unknown)";
    return shownName(found->gr_name);
}

}  // namespace

AttributeRow attrRowTypeForCriterion(uint64_t criterion) {
    switch (criterion) {
        case kBirthTime:
        case kContentModified:
        case kAttributesModified:
        case kAccessed:
        case kAnyTime:
            return AttributeRow::timestamps;
        case kSize:
        case kLinkCount:
        case kUser:
        case kGroup:
            return AttributeRow::sizeAndOwner;
        default:
            return AttributeRow::none;
    }
}

bool shouldDisplayAttribute(const AttributeDisplay& display, uint64_t attribute,
                            IgnoreSettings ignoreSettings) {
    if (ignoreSettings == IgnoreSettings::no) {
        if (display.showMetadata == kShowAlways) return true;
        if (display.showMetadata != kShowWhatIsQueried) return false;
    }
    return display.visibleAttributes.contains(attribute);
}

unsigned requiredNumberOfRows(uint64_t modeIdentifier, const AttributeDisplay& display) {
    if (!(modeIdentifier & kFileModes)) return 0;
    return unsigned{isDisplayed(display, AttributeRow::timestamps)} +
           unsigned{isDisplayed(display, AttributeRow::sizeAndOwner)};
}

std::vector<RowLine> attributeLines(const fs_item_metadata& metadata,
                                    const AttributeDisplay& display,
                                    const IndexSet* matchingCriterions) {
    std::vector<RowLine> lines;
    if (isDisplayed(display, AttributeRow::timestamps))
        lines.push_back(timestampsLine(metadata, display, matchingCriterions));
    if (isDisplayed(display, AttributeRow::sizeAndOwner))
        lines.push_back(sizeAndOwnerLine(metadata, display));
    return lines;
}

RowLine timestampsLine(const fs_item_metadata& metadata, const AttributeDisplay& display,
                       const IndexSet* matchingCriterions) {
    struct Date {
        const char* label;
        uint64_t criterion;
        int64_t epoch;
    };
    const std::array<Date, 4> dates = {{{"✨ ", kBirthTime, metadata.btime},
                                        {" ✏️ ", kContentModified, metadata.mtime},
                                        {" 📎 ", kAttributesModified, metadata.ctime},
                                        {" 👁️ ", kAccessed, metadata.atime}}};
    const bool anyQueried = matchingCriterions && isQueried(display, kAnyTime);
    LineBuilder line;
    for (const Date& date : dates)
        line.add(date.label, dateText(date.epoch),
                 isQueried(display, date.criterion) ||
                     (anyQueried && matchingCriterions->contains(date.criterion)));
    return line.take();
}

RowLine sizeAndOwnerLine(const fs_item_metadata& metadata, const AttributeDisplay& display) {
    LineBuilder line;
    line.add("⚖️ ", sizeText(metadata.size, metadata.mode), isQueried(display, kSize));
    line.add(" 👤 ", display.owners->userName(metadata.uid), isQueried(display, kUser));
    line.add(" 👥 ", display.owners->groupName(metadata.gid), isQueried(display, kGroup));
    line.add(" 🔒 ", permissionString(metadata.mode), false);
    line.add(" 🔗 ", std::to_string(metadata.nlink), isQueried(display, kLinkCount));
    return line.take();
}

const std::string& OwnerNames::userName(uint32_t uid) {
    const auto [place, isNew] = users_.try_emplace(uid);
    if (isNew) place->second = nameOfUser(uid);
    return place->second;
}

const std::string& OwnerNames::groupName(uint32_t gid) {
    const auto [place, isNew] = groups_.try_emplace(gid);
    if (isNew) place->second = nameOfGroup(gid);
    return place->second;
}
