#include "tessgen/kelwhich/ORVAKWhichResolver.hpp"

#include "host/Evaluation.hpp"
#include "host/Paths.hpp"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::kelwhich {

namespace {

bool contains(std::u16string_view text, std::u16string_view part) {
    return text.find(part) != std::u16string_view::npos;
}

// What one line of the host's answer stands for. Every text that is no absolute path is the report of a built-in.
WhichResult classify(const std::u16string& name, std::u16string&& line, std::u16string_view partner) {
    if (beginsWith(line, u"/")) {
        return {std::move(line), WhichResultType::ORVAKPath};
    }
    const bool isMethod = contains(line, u" method") && !contains(partner, u" constructor");
    return {name, isMethod ? WhichResultType::ORVAKBuiltinMethod : WhichResultType::ORVAKBuiltin};
}

} // namespace

std::vector<WhichResult> ORVAKWhichResolver::which(const std::u16string& name) const {
    static const std::string function = "tessapp.internal.screener.resolver.callWhichString";
    const auto outputs = evaluate(function, {toStringArray(name)}, 2);
    auto lines = toStrings(outputs[0]);
    const auto partners = toStrings(outputs[1]);

    const auto count = std::min(lines.size(), partners.size());
    std::vector<WhichResult> results;
    results.reserve(count);
    for (std::size_t i = 0; i < count; ++i) {
        results.push_back(classify(name, std::move(lines[i]), partners[i]));
    }
    return results;
}

} // namespace tessgen::kelwhich
