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

// What one line of the host's answer stands for. Every text that is no absolute path is the report of a built-in.
WhichResult classify(const std::u16string& name, std::u16string&& line) {
    if (beginsWith(line, u"/")) {
        return {std::move(line), WhichResultType::ORVAKPath};
    }
    return {name, contains(line, u" method") ? WhichResultType::ORVAKBuiltinMethod : WhichResultType::ORVAKBuiltin};
}

// What the text beside its line says of it: one that makes objects of its class is no method of it.
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
    forEachString(outputs[0], [&](std::u16string&& line) { results.push_back(classify(name, std::move(line))); });
    auto result = results.begin(); // the one that the next partner stands beside
    forEachString(outputs[1], [&](const std::u16string& partner) {
        if (result != results.end()) {
            reclassify(*result++, partner);
        }
    });
    results.erase(result, results.end());
    return results;
}

} // namespace tessgen::kelwhich
