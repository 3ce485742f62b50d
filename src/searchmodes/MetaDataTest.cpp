#include "searchmodes/MetaDataTest.h"

#include <sys/stat.h>

#include <algorithm>
#include <utility>

#include "index/fs_item.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataSearch.h"

using enum MetaDataQuery::Criterion;
using enum MetaDataQuery::Operator;
using enum MetaDataQuery::ValueType;

namespace {

/// The point in time that is as old as the query says. A day that its month does not have is the
/// month's last one.
int64_t cutOff(int64_t now, uint64_t valueType, int64_t age) {
    constexpr int64_t kFar = INT64_MAX / 2;  // no age leads from there past what a number can hold
    now = std::clamp(now, -kFar, kFar);
    switch (valueType) {
        case kAgeDays:
            return now - age * 86400;
        case kAgeHours:
            return now - age * 3600;
        case kAgeMinutes:
            return now - age * 60;
        case kAgeSeconds:
            return now - age;
        default:
            break;
    }
    const auto fields = metaDataCalendar::fieldsOf(now);
    const int64_t months =
        fields.year * 12 + fields.month - 1 - (valueType == kAgeYears ? age * 12 : age);
    const int64_t month = (months % 12 + 12) % 12 + 1, year = (months - (month - 1)) / 12;
    const int64_t day = std::min<int64_t>(fields.day, metaDataCalendar::daysInMonth(year, month));
    return metaDataCalendar::epochOf(year, month, day) + fields.secondOfDay;
}

/// Kept: a year that begins with the first day of the week has no week 1.
int64_t weekOf(const metaDataCalendar::Fields& fields, int firstWeekday) {
    const int newYear = ((fields.weekday - fields.dayOfYear) % 7 + 7) % 7;
    const int first = (firstWeekday - 1 - newYear + 7) % 7;
    return fields.dayOfYear < first ? 1 : (fields.dayOfYear - first) / 7 + 2;
}

}  // namespace

MetaDataTest::MetaDataTest(const MetaDataQuery& query, const MetaDataContext& context)
    : isNegative_(query.isNegative),
      criterion_(static_cast<uint16_t>(query.criterion)),
      operator_(static_cast<uint8_t>(query.operator_)),
      valueType_(static_cast<uint8_t>(query.valueType)),
      firstWeekday_(context.firstWeekday),
      from_(query.integerValue1),
      to_(query.integerValue1) {
    if (valueType_ >= kAgeYears && valueType_ <= kAgeSeconds) {
        from_ = cutOff(context.now, valueType_, query.integerValue1);
    } else if (valueType_ == kYear || valueType_ == kMonth || valueType_ == kDay) {
        from_ = static_cast<int64_t>(query.fromEpoch);
        to_ = static_cast<int64_t>(query.toEpoch);
    } else if (valueType_ == kYearQuarter) {
        from_ += query.integerValue2 * 10;
    } else if (valueType_ == kYearWeek) {
        from_ += query.integerValue2 * 100;
    }
}

bool MetaDataTest::compareValues(int64_t value, int64_t with) const {
    switch (operator_) {
        case kEqual:
            return value == with;
        case kLess:
            return value < with;
        case kGreater:
            return value > with;
        case kAtMost:
            return value <= with;
        case kAtLeast:
            return value >= with;
        default:
            return false;
    }
}

/// What the size of a folder or link says is nothing that a user asks for.
bool MetaDataTest::compareSize(const fs_item_metadata& metadata) const {
    constexpr uint64_t kMax = INT64_MAX;
    return compareValues(static_cast<int64_t>(std::min(metadata.size, kMax)), from_);
}

int64_t MetaDataTest::fieldOf(int64_t epoch) const {
    const auto fields = metaDataCalendar::fieldsOf(epoch);
    const int quarter = (fields.month - 1) / 3 + 1;
    switch (valueType_) {
        case kMonthOfYear:
            return fields.month;
        case kDayOfMonth:
            return fields.day;
        case kQuarter:
            return quarter;
        case kYearQuarter:
            return quarter + fields.year * 10;
        case kWeek:
            return weekOf(fields, firstWeekday_);
        case kYearWeek:
            return weekOf(fields, firstWeekday_) + fields.year * 100;
        default:
            return fields.weekday == 0 ? 7 : fields.weekday;
    }
}

bool MetaDataTest::matchEpoch(int64_t epoch) const {
    switch (valueType_) {
        case kAgeYears:
        case kAgeMonths:
        case kAgeDays:
        case kAgeHours:
        case kAgeMinutes:
        case kAgeSeconds:
            return compareValues(from_, epoch);
        case kYear:
        case kMonth:
        case kDay:
            if (operator_ == kEqual) return epoch >= from_ && epoch <= to_;
            return compareValues(epoch, operator_ == kLess || operator_ == kAtLeast ? from_ : to_);
        case kNoDate:
            return false;
        default:
            return compareValues(fieldOf(epoch), from_);
    }
}

void MetaDataTest::record(IndexSet& matchingCriterions) const {
    if (criterion_ != kAnyTime) return matchingCriterions.add(criterion_);
    for (const uint64_t date : {kBirthTime, kContentModified, kAttributesModified, kAccessed})
        matchingCriterions.add(date);
}

bool MetaDataTest::match(const fs_item_metadata& metadata, IndexSet& matchingCriterions) const {
    const auto noted = [&](bool matches) {
        if (matches) matchingCriterions.add(criterion_);
        return matches;
    };
    switch (criterion_) {
        case kBirthTime:
            return noted(matchEpoch(metadata.btime));
        case kContentModified:
            return noted(matchEpoch(metadata.mtime));
        case kAttributesModified:
            return noted(matchEpoch(metadata.ctime));
        case kAccessed:
            return noted(matchEpoch(metadata.atime));
        case kAnyTime: {
            bool any = false;
            for (const auto& [date, epoch] : {std::pair(kBirthTime, metadata.btime),
                                              std::pair(kContentModified, metadata.mtime),
                                              std::pair(kAttributesModified, metadata.ctime),
                                              std::pair(kAccessed, metadata.atime)}) {
                if (!matchEpoch(epoch)) continue;
                matchingCriterions.add(date);
                any = true;
            }
            return any;
        }
        case kSize:
            // A folder or link is no match for the negated query either.
            if (S_ISDIR(metadata.mode) || S_ISLNK(metadata.mode)) return isNegative_;
            return noted(compareSize(metadata));
        case kSymlink:
            return noted(S_ISLNK(metadata.mode) == (operator_ == kEqual));
        case kLinkCount:
            return noted(compareValues(metadata.nlink, from_));
        case kUser:
            return noted(compareValues(metadata.uid, from_));
        case kGroup:
            return noted(compareValues(metadata.gid, from_));
        case kPathName:
        case kPathAbsolute:
        case kPathExtension:
            return noted(true);
        default:
            return false;  // names of attributes too: no item has any
    }
}
