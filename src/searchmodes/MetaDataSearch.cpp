#include "searchmodes/MetaDataSearch.h"

#include <sys/stat.h>

#include <algorithm>

#include "index/fs_item.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataParser.h"
#include "searchmodes/RankedItem.h"
#include "searchmodes/SearchTerms.h"
#include "searchmodes/itemComparators.h"

using enum MetaDataQuery::Criterion;

namespace {

template <class T>
int ascending(T a, T b) {
    return (a > b) - (a < b);
}

/// The earliest or latest of the dates that matched.
int64_t dateOf(const fs_item_metadata& metadata, uint16_t criterions, bool latest) {
    int64_t date = 0;
    bool isFirst = true;
    const auto take = [&](uint16_t criterion, int64_t epoch) {
        if (!(criterions & criterion)) return;
        date = isFirst ? epoch : latest ? std::max(date, epoch) : std::min(date, epoch);
        isFirst = false;
    };
    take(kBirthTime, metadata.btime);
    take(kContentModified, metadata.mtime);
    take(kAttributesModified, metadata.ctime);
    take(kAccessed, metadata.atime);
    return date;
}

/// By what stands in the metadata, ascending.
int compareMetadata(const MetaDataSortKey& key, const RankedItem& a, const RankedItem& b) {
    const fs_item_metadata *x = a.item->metadata, *y = b.item->metadata;
    if (!x || !y) return 0;
    const bool latest = key.sortOrderType == MetaDataQuery::kDescending;
    switch (key.criterion) {
        case kBirthTime:
            return ascending(x->btime, y->btime);
        case kContentModified:
            return ascending(x->mtime, y->mtime);
        case kAttributesModified:
            return ascending(x->ctime, y->ctime);
        case kAccessed:
            return ascending(x->atime, y->atime);
        case kAnyTime:
            return ascending(dateOf(*x, a.criterions, latest), dateOf(*y, b.criterions, latest));
        case kSize:
            return ascending(x->size, y->size);
        case kSymlink:
            return ascending(S_ISLNK(x->mode), S_ISLNK(y->mode));
        case kLinkCount:
            return ascending(x->nlink, y->nlink);
        case kUser:
            return ascending(x->uid, y->uid);
        case kGroup:
            return ascending(x->gid, y->gid);
        default:
            return 0;
    }
}

int compareByKey(const MetaDataSortKey& key, const RankedItem& a, const RankedItem& b) {
    switch (key.criterion) {
        case kPathName:
            return lastPathComponentComperator(a.item, b.item);
        case kPathAbsolute:
            return fs_item_path_compare(a.item, b.item);
        case kPathExtension:
            return filenameExtensionComperator(a.item, b.item);
        default:
            return compareMetadata(key, a, b);
    }
}

}  // namespace

MetaDataContext MetaDataContext::at(int64_t now) {
    return {.now = now, .firstWeekday = metaDataCalendar::currentFirstWeekday()};
}

MetaDataSearch::MetaDataSearch(std::u16string_view searchString, const MetaDataContext& context) {
    for (const std::u16string& term : componentsSeparatedByUnescapedWhitespace(searchString)) {
        if (term.size() < 2 || term[0] != u'\\') continue;
        MetaDataParse parse = parseWord(term, context.firstWeekday);
        if (!parse.query) continue;
        const MetaDataQuery& query = *parse.query;
        tests_.emplace_back(query, context);
        if (query.sortOrderType != MetaDataQuery::kUnsorted)
            sortKeys_.push_back({query.criterion, query.valueType, query.sortOrderType});
        queries_.push_back(std::move(*parse.query));
    }
}

std::function<std::unique_ptr<MetadataEngine>(std::u16string_view)> MetaDataSearch::engineMaker(
    std::u16string_view searchString, int64_t now) {
    return [search = MetaDataSearch(searchString, MetaDataContext::at(now))](std::u16string_view) {
        return std::make_unique<MetaDataSearch>(search);
    };
}

MetaDataParse MetaDataSearch::parseWord(std::u16string_view word, int firstWeekday) {
    return MetaDataParser(word, firstWeekday).parseWord();
}

bool MetaDataSearch::match(const fs_item_metadata* metadata, IndexSet& matchingCriterions) {
    if (!metadata) return false;
    for (const MetaDataTest& test : tests_) {
        if (test.isForSortingOnly())
            test.record(matchingCriterions);
        else if (test.match(*metadata, matchingCriterions) == test.isNegative())
            return false;
    }
    return true;
}

int MetaDataSearch::compare(const RankedItem& a, const RankedItem& b) const {
    for (const MetaDataSortKey& key : sortKeys_) {
        const int order = compareByKey(key, a, b);
        if (order != 0) return key.sortOrderType == MetaDataQuery::kDescending ? -order : order;
    }
    return 0;
}
