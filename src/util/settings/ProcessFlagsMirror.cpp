#include "util/settings/ProcessFlagsMirror.h"

#include "util/ProcessFlags.h"
#include "util/log.h"
#include "util/settings/OVUserDefaults.h"

namespace {

struct MirroredFlag {
    const char* key;
    Relaxed<bool> ProcessFlags::*flag;
};

constexpr MirroredFlag kFlags[] = {
    {"processMetadata", &ProcessFlags::processMetadata},
    {"swapControlAndOption", &ProcessFlags::swapControlAndOption},
    {"debugFsEvents", &ProcessFlags::debugFsEvents},
    {"debugSearch", &ProcessFlags::debugSearch},
    {"debugScan", &ProcessFlags::debugScan},
    {"debugRules", &ProcessFlags::debugRules},
    {"debugCache", &ProcessFlags::debugCache},
    {"dumpCache", &ProcessFlags::dumpCache},
    {"debugPerformance", &ProcessFlags::debugPerformance},
    {"debugSelection", &ProcessFlags::debugSelection},
    {"debugFilePromises", &ProcessFlags::debugFilePromises},
};

}  // namespace

ProcessFlagsMirror::ProcessFlagsMirror(OVUserDefaults& settings) {
    const auto mirror = [&](const char* key, auto take) {
        take();
        subscriptions_.push_back(settings.addObserver(key, [take](auto&, auto&) { take(); }));
    };
    for (const MirroredFlag& mirrored : kFlags)
        mirror(mirrored.key, [&settings, mirrored] {
            processFlags.*mirrored.flag = settings.boolForKey(mirrored.key);
        });
    mirror("logLevel", [&settings] {
        logging::setLevel(static_cast<unsigned>(settings.integerForKey("logLevel")));
    });
}
