#include "Console.h"

#include <algorithm>
#include <cstdio>

#include "LineReader.h"
#include "Ops.h"
#include "Session.h"
#include "Surrogates.h"

namespace {

/// The JSON library prints by recursion.
constexpr size_t kMaxDepth = 200;

bool isTooDeep(std::string_view line) {
    size_t depth = 0;
    bool inText = false;
    for (size_t at = 0; at < line.size(); at++) {
        const char c = line[at];
        if (inText) {
            if (c == '\\') at++;
            if (c == '"') inText = false;
        } else if (c == '"') {
            inText = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kMaxDepth) return true;
        } else if ((c == ']' || c == '}') && depth > 0) {
            depth--;
        }
    }
    return false;
}

json perform(std::string_view line, Session& session) {
    if (isTooDeep(line)) throw OpError("the line is nested too deeply");
    const json request = json::parse(carriedFromJson(line), nullptr, false);
    if (request.is_discarded()) throw OpError("the line is no JSON");
    if (!request.is_object()) throw OpError("the line is no JSON object");
    const Fields fields(request);
    const std::string name = fields.word("op");
    const auto ops = allOps();
    const auto entry = std::find_if(ops.begin(), ops.end(),
                                    [&name](const OpEntry& each) { return each.name == name; });
    if (entry == ops.end()) throw OpError("unknown op '" + name + "'");
    if (!entry->op) throw OpError("not built yet");
    json result = entry->op(fields, session);
    if (result.is_null()) result = json::object();
    result["ok"] = true;
    return result;
}

json failure(std::string_view text) {
    return {{"ok", false}, {"error", text}};
}

std::string printed(const json& reply) {
    return jsonFromCarried(reply.dump(-1, ' ', false, json::error_handler_t::replace));
}

}  // namespace

Console::Console() : session_(std::make_unique<Session>()) {}

Console::~Console() = default;

std::string Console::reply(std::string_view line) {
    try {
        return printed(perform(line, *session_));
    } catch (const OpError& error) {
        return printed(failure(error.what()));
    } catch (const std::exception& error) {
        return printed(failure(std::string("the op failed: ") + error.what()));
    }
}

void Console::run(int input, std::FILE* output) {
    LineReader lines(input);
    std::string line;
    for (;;) {
        const LineReader::Status status = lines.next(line);
        if (status == LineReader::Status::end) return;
        const std::string answer =
            (status == LineReader::Status::tooLong ? printed(failure("the line is too long"))
                                                   : reply(line)) +
            '\n';
        // Without anybody to read replies there is nothing left to do.
        if (std::fwrite(answer.data(), 1, answer.size(), output) != answer.size()) return;
        if (std::fflush(output) != 0) return;
        session_->runMainQueue();
    }
}
