#include <atomic>
#include <optional>

#include "Ops.h"
#include "Surrogates.h"
#include "index/LivePathFilter.h"
#include "modes/framework/ModeIdentifier.h"
#include "searchmodes/Decomposition.h"
#include "searchmodes/MetaDataCalendar.h"
#include "searchmodes/MetaDataSearch.h"
#include "searchmodes/RegexSearch.h"
#include "util/Unicode.h"
#include "util/World.h"
#include "util/queues/OperationQueue.h"

/// Regular expressions, what the search field shows of its text, and the live path filter.
namespace ops {

json regex(const Fields& request, Session&) {
    const std::u16string candidate = request.text("candidate");
    if (candidate.size() > UINT16_MAX) request.illTyped("candidate", "of at most 65535 units");
    RegexSearch search(request.text("search"));
    IndexSet indexes;
    double score = 0;
    const bool match = search.match(candidate, indexes, score);
    return {{"match", match},
            {"score", score},
            {"indexes", indexes.items()},
            {"positive", search.inLen()},
            {"negative", search.exLen()},
            {"excludingOnly", search.didExcludingSearchOnly()}};
}

namespace {

json jsonFrom(const StyledText& text) {
    return carriedFromUnits(toUtf16Lenient(plainText(text)));
}

json jsonFrom(const TextRange& range) {
    return {range.location, range.length};
}

/// text: precomposed.
Decomposition decomposed(std::u16string_view text, const Fields& request) {
    return ::decompose(
        text,
        {.processMetadata = request.boolean("processMetadata", true),
         .listsFiles = (request.integer<unsigned>("mode", 1) & kFileModes) != 0,
         .parser = [weekday = metaDataCalendar::currentFirstWeekday()](std::u16string_view term) {
             return MetaDataSearch::parseWord(term, weekday);
         }});
}

}  // namespace

json decompose(const Fields& request, Session&) {
    constexpr const char* kStyles[] = {"plain", "regexp", "error", "incomplete"};
    const Decomposition made = decomposed(nfc(request.text("text")), request);
    json styles = json::array(), messages = json::array();
    for (const auto& [range, style] : made.styles)
        styles.push_back({{"range", jsonFrom(range)}, {"style", kStyles[static_cast<int>(style)]}});
    for (const auto& [range, message] : made.rangeMessages.all())
        messages.push_back({{"range", jsonFrom(range)},
                            {"type", static_cast<uint64_t>(message.messageType)},
                            {"text", jsonFrom(message.message)}});
    return {{"styles", std::move(styles)},
            {"messages", std::move(messages)},
            {"visibleAttributes", made.visibleAttributes.items()}};
}

json messageAt(const Fields& request, Session&) {
    const std::u16string text = nfc(request.text("text"));
    const json& selection = request.list("selection");
    if (selection.size() != 2 || !selection[0].is_number_unsigned() ||
        !selection[1].is_number_unsigned())
        request.illTyped("selection", "a range");
    const TextRange range{selection[0].get<size_t>(), selection[1].get<size_t>()};
    if (range.location > text.size() || range.length > text.size() - range.location)
        request.illTyped("selection", "a range of the text");
    const Decomposition made = decomposed(text, request);
    const RangeMessage* message = made.rangeMessages.messageToShow(range, text.size());
    json shown;
    if (message) shown = jsonFrom(message->message);
    return {{"text", std::move(shown)}};
}

namespace {

using Step = std::function<void(LivePathFilter&)>;

FileURL urlFrom(const json& path, const char* name, const Fields& request) {
    const std::optional<FileURL> url = pathFromJson(path);
    if (!url || !url->isAbsolute()) request.illTyped(name, "with absolute paths");
    return FileURL::standardized(url->path());
}

Step stepFrom(const json& step, const Fields& request) {
    const auto isWord = [&](const char* word) { return step[0] == word; };
    if (step.is_array() && step.size() == 1 && isWord("reset"))
        return [](LivePathFilter& filter) { filter.reset(); };
    if (!step.is_array() || step.size() != 2 || !(isWord("include") || isWord("exclude")))
        request.illTyped("steps", "steps");
    const auto rule =
        isWord("include") ? LivePathFilter::Rule::included : LivePathFilter::Rule::excluded;
    return [url = urlFrom(step[1], "steps", request), rule](LivePathFilter& filter) {
        filter.addPath(url, rule);
    };
}

/// The rules change on a queue, as in the program, while this thread serves the main queue.
void takeSteps(LivePathFilter& filter, const std::vector<Step>& steps) {
    std::optional<World> own;
    if (!World::exists()) own.emplace();
    SerialQueue queue("pathFilterQ", Qos::userInitiated);
    std::atomic<bool> over = false;
    queue.async([&] {
        for (const Step& step : steps) step(filter);
        over = true;
    });
    while (!over) World::current().mainQueue().runPending();
}

}  // namespace

json pathfilter(const Fields& request, Session&) {
    std::vector<Step> steps;
    for (const json& step : request.list("steps")) steps.push_back(stepFrom(step, request));
    LivePathFilter filter;
    takeSteps(filter, steps);
    json excluded = json::array(), active = json::array();
    for (const json& path : request.list("test"))
        excluded.push_back(filter.isPathExcluded(urlFrom(path, "test", request)));
    for (const std::string& each : filter.activePaths()) active.push_back(carriedFromPath(each));
    return {{"excluded", std::move(excluded)},
            {"active", std::move(active)},
            {"exclusive", filter.exclusive()},
            {"hasRules", filter.hasRules()}};
}

}  // namespace ops
