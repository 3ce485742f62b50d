#include "index/fsEventFlagNames.h"

#include "platform/FileEvents.h"

namespace {

constexpr std::string_view kPrefix = "kFSEventStreamEventFlag";

struct Flag {
    std::string_view name;
    uint32_t value;
};
#define FLAG(name)                           \
    Flag {                                   \
#name, kFSEventStreamEventFlag##name \
    }
constexpr Flag kFlags[] = {
    FLAG(MustScanSubDirs),
    FLAG(UserDropped),
    FLAG(KernelDropped),
    FLAG(EventIdsWrapped),
    FLAG(HistoryDone),
    FLAG(RootChanged),
    FLAG(Mount),
    FLAG(Unmount),
    FLAG(ItemCreated),
    FLAG(ItemRemoved),
    FLAG(ItemInodeMetaMod),
    FLAG(ItemRenamed),
    FLAG(ItemModified),
    FLAG(ItemFinderInfoMod),
    FLAG(ItemChangeOwner),
    FLAG(ItemXattrMod),
    FLAG(ItemIsFile),
    FLAG(ItemIsDir),
    FLAG(ItemIsSymlink),
    FLAG(OwnEvent),
    FLAG(ItemIsHardlink),
    FLAG(ItemIsLastHardlink),
    FLAG(ItemCloned),
};
#undef FLAG

}  // namespace

std::string fsEventFlagNames(uint32_t flags) {
    std::string names;
    for (const Flag& flag : kFlags) {
        if (!(flags & flag.value)) continue;
        if (!names.empty()) names += ", ";
        (names += kPrefix) += flag.name;
    }
    return names;
}

uint32_t fsEventFlagWithName(std::string_view name) {
    for (const Flag& flag : kFlags)
        if (flag.name == name) return flag.value;
    return 0;
}
