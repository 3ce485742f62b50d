#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "screen/RowContent.h"
#include "searchmodes/IndexSet.h"

struct fs_item_metadata;

/// The lines below a row's path that show an item's metadata, and how many of them there are.
/// Attributes are numbers of metadata criteria.
/// Threads: any, but outside sections: users and groups may be asked for elsewhere. Units: ranges
/// in UTF-16 units; dates in the local time zone and the style of the locale of setlocale(LC_TIME).
/// Fails: never.

/// Values of the setting showMetadata; others show nothing.
enum ShowMetadata : int64_t { kShowNever = 0, kShowAlways = 1, kShowWhatIsQueried = 2 };

/// Names of users and groups, each looked up once. "(unnamed)" for an entry without a name,
/// "(unknown)" where there is none.
/// Owner:   who makes some rows; not kept, since names change. Threads: one.
class OwnerNames {
  public:
    const std::string& userName(uint32_t uid);
    const std::string& groupName(uint32_t gid);

  private:
    std::unordered_map<uint32_t, std::string> users_, groups_;
};

/// What decides about the lines of a mode, while some of its rows are made.
struct AttributeDisplay {
    int64_t showMetadata = kShowNever;
    IndexSet visibleAttributes = {};  // what the search text asks for
    std::shared_ptr<OwnerNames> owners = std::make_shared<OwnerNames>();
};

enum class AttributeRow { none, timestamps, sizeAndOwner };
AttributeRow attrRowTypeForCriterion(uint64_t criterion);

enum class IgnoreSettings : bool { no, yes };
bool shouldDisplayAttribute(const AttributeDisplay& display, uint64_t attribute,
                            IgnoreSettings ignoreSettings = IgnoreSettings::no);
/// 0 to 2 for a mode; modeIdentifier as ModeIdentifier.
unsigned requiredNumberOfRows(uint64_t modeIdentifier, const AttributeDisplay& display);

/// matchingCriterions are the item's own; null: none matched.
RowLine timestampsLine(const fs_item_metadata& metadata, const AttributeDisplay& display,
                       const IndexSet* matchingCriterions);
RowLine sizeAndOwnerLine(const fs_item_metadata& metadata, const AttributeDisplay& display);

/// Those of the lines that are displayed, in their order.
std::vector<RowLine> attributeLines(const fs_item_metadata& metadata,
                                    const AttributeDisplay& display,
                                    const IndexSet* matchingCriterions);
