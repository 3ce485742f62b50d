#include "Ops.h"
#include "Surrogates.h"
#include "index/exclusionStatus.h"
#include "util/Unicode.h"

/// Rules that say which items a project has.
namespace ops {

namespace {

MatchingRule ruleFrom(const Fields& fields) {
    MatchingRule rule;
    rule.originalPattern = toUtf8(fields.text("pattern"));
    rule.originalPatternType = fields.integer<uint8_t>("patternType");
    rule.fileType = fields.integer<uint8_t>("fsItemType", rule.fileType);
    rule.type = fields.integer<uint8_t>("type", rule.type);
    rule.preprocess();
    return rule;
}

}  // namespace

json rulePrepare(const Fields& request, Session&) {
    const MatchingRule rule = ruleFrom(request);
    json pattern;
    if (rule.pattern) pattern = carriedFromUnits(*rule.pattern);
    json slash;
    if (rule.patternSlashLocation != kNotFound) slash = rule.patternSlashLocation;
    return {{"patternType", rule.patternType},
            {"pattern", std::move(pattern)},
            {"slash", std::move(slash)},
            {"compiled", rule.regexp != nullptr}};
}

json ruleStatus(const Fields& request, Session&) {
    MatchingRules rules;
    for (const Fields& rule : request.objects("rules")) rules.push_back(ruleFrom(rule));
    const std::u16string path = ruleText(request.path("path").path());
    const size_t name = path.rfind(u'/') + 1;  // 0 where there is no slash
    return {{"status", exclusionStatus(path, name, request.integer<uint8_t>("typeMask"), rules)}};
}

}  // namespace ops
