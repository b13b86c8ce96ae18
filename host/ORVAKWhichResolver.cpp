#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"

#include "host/Evaluation.hpp"
#include "host/Paths.hpp"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

bool contains(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != std::u16string_view::npos;
}

// Reads one line of the host's answer: an absolute path is a file, any other text reports a built-in.
WhichResult classify(const std::u16string& name, std::u16string&& line) {
    if (beginsWith(line, u"/")) {
        return {std::move(line), WhichResultType::ORVAKPath};
    }
    return {name, contains(line, u" method") ? WhichResultType::ORVAKBuiltinMethod : WhichResultType::ORVAKBuiltin};
}

// Corrects a method to a plain built-in when its partner text says constructor.
void reclassify(WhichResult& result, std::u16string_view partner) {
    if (result.type == WhichResultType::ORVAKBuiltinMethod && contains(partner, u" constructor")) {
        result.type = WhichResultType::ORVAKBuiltin;
    }
}

} // namespace

std::vector<WhichResult> ORVAKWhichResolver::which(const std::u16string& name) const {
    static const std::string function = "tessapp.internal.screener.resolver.callWhichString";
    std::vector<foundation::orvakdata::Array> arguments;
    arguments.push_back(toStringArray(name));
    const auto outputs = evaluate(function, arguments, 2);

    std::vector<WhichResult> results;
    results.reserve(stringCount(outputs[0]));
    forEachString(outputs[0], [&](std::u16string&& line) { results.push_back(classify(name, std::move(line))); });
    auto result = results.begin(); // the one that the next partner text belongs to
    forEachString(outputs[1], [&](const std::u16string& partner) {
        if (result != results.end()) {
            reclassify(*result++, partner);
        }
    });
    results.erase(result, results.end());
    return results;
}

} // namespace tessgen::kelwhich
