#include "shell/fixedKeys.h"

#include "modes/framework/ModeIdentifier.h"
#include "screen/KeyEvent.h"

namespace {

constexpr uint64_t kEverywhere = 255, kFiles = kFileModes;
constexpr uint64_t kDigitModes = kSearchMode + kRecentMode + kProjectMode + kBrowserMode;
constexpr uint64_t kShift = kModifierShift, kControl = kModifierControl, kOption = kModifierOption,
                   kCommand = kModifierCommand;
constexpr uint64_t kSlash = 44;
constexpr FixedKeys::Combination kNone;
constexpr bool kOfSelection = true;

constexpr FixedKeys kKeys[] = {
    {kListSection, "Next or Previous Item", kEverywhere, {0, kKeyDown}, {0, kKeyUp}},
    {kListSection, "A Page Further", kEverywhere, {0, kKeyPageDown}, {0, kKeyPageUp}},
    {kListSection, "First or Last Item", kEverywhere, {0, kKeyHome}, {0, kKeyEnd}},
    {kListSection, "Extend the Selection", kEverywhere, {kShift, kKeyDown}, {kShift, kKeyUp}},
    {kListSection, "Extend It to the End", kEverywhere, {kShift, kKeyHome}, {kShift, kKeyEnd}},
    {kListSection, "Scroll a Page", kEverywhere, {kCommand, kKeyPageDown}, {kCommand, kKeyPageUp}},
    {kListSection, "Scroll to the End", kEverywhere, {kCommand, kKeyHome}, {kCommand, kKeyEnd}},
    {"Switching modes", "SwitchToBrowserMode", kSearchMode, {0, kKeyTab}},
    {"Switching modes", "SwitchToSearchMode", kEverywhere - kSearchMode, {0, kKeyTab}},
    {"Switching modes", "First to Ninth Project", kDigitModes, {kCommand, kNoKeyCode, "1–9"}},
    {"Switching modes",
     "Move Current Project to This Position",
     kDigitModes - kBrowserMode,
     {kCommand + kShift, kNoKeyCode, "1–9"}},
    {"General", "Empty Search Field, Then Close Window", kEverywhere, {0, kKeyEscape}},
    {"General",
     "Delete Word before Cursor",
     kEverywhere,
     {kCommand, kKeyDelete},
     {kControl, kKeyW}},
    {"General", "Show Keys for Selection (Hold)", kEverywhere, {kCommand}},
    {"General", "Quit (Hold)", kEverywhere, {kCommand, kKeyQ}},
    {"Selection", "Open", kFiles, {0, kKeyReturn}, kNone, kOfSelection},
    {"Selection",
     "Open in Frontmost Application",
     kFiles,
     {kShift, kKeyReturn},
     kNone,
     kOfSelection},
    {"Selection", "Copy Path to Clipboard", kFiles, {kOption, kKeyReturn}, kNone, kOfSelection},
    {"Selection",
     "Copy Filename to Clipboard",
     kFiles,
     {kOption + kShift, kKeyReturn},
     kNone,
     kOfSelection},
    {"Selection",
     "Copy File Content to Clipboard",
     kFiles,
     {kControl + kOption, kKeyReturn},
     kNone,
     kOfSelection},
    {"Selection", "Type Path", kFiles, {kCommand, kKeyReturn}, kNone, kOfSelection},
    {"Selection", "Type Filename", kFiles, {kCommand + kShift, kKeyReturn}, kNone, kOfSelection},
    {"Selection", "BrowseSelection", kFiles - kBrowserMode, {kCommand, kKeyDown}},
    {"Selection", "BrowseSelection", kBrowserMode, {kCommand, kKeyDown}, {0, kSlash}},
    {"File Management",
     "Rename",
     kFiles + kProjectMode,
     {kControl, kKeyReturn},
     kNone,
     kOfSelection},
    {"File Management",
     "Move to Trash",
     kFiles,
     {kCommand, kKeyForwardDelete},
     kNone,
     kOfSelection},
    {"Search Mode", "Search Parent Folder", kSearchMode, {kCommand, kKeyUp}},
    {"Browser Mode", "Browse Parent Folder", kBrowserMode, {kCommand, kKeyUp}},
};

}  // namespace

std::span<const FixedKeys> fixedKeys() {
    return kKeys;
}
