#include "tessgen/kelwhich/invoke.hpp"

#include "matrix/array.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"
#include "zelt/enumeration.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::kelwhich {

namespace {

// The host's enumeration has four members; a built-in method counts as a built-in.
std::string_view memberName(WhichResultType type) {
    switch (type) {
    case WhichResultType::KELPath:
        return "KELPath";
    case WhichResultType::KELBuiltin:
        return "KELBuiltin";
    case WhichResultType::ORVAKPath:
        return "ORVAKPath";
    case WhichResultType::ORVAKBuiltin:
    case WhichResultType::ORVAKBuiltinMethod:
        return "ORVAKBuiltin";
    }
    return {};
}

qxArray* pathsForHost(const std::vector<WhichResult>& results) {
    std::vector<std::u16string> paths;
    paths.reserve(results.size());
    for (const auto& result : results) {
        paths.push_back(result.path);
    }
    const auto strings = String::mustBeString(matrix::create_cell(paths));
    return matrix::to_orvak(strings);
}

qxArray* kindsForHost(const std::vector<WhichResult>& results) {
    using zelt::internal::Interned;
    using zelt::internal::makeInterned;
    const Interned className = makeInterned("tessapp.internal.screener.WhichResultType");
    matrix::ArrayPtr kinds(omCreateZELTEnumerationMatrix(1, results.size(), className));
    for (std::size_t i = 0; i < results.size(); ++i) {
        const auto name = memberName(results[i].type);
        const Interned member = name.empty() ? zelt::internal::nullValue : makeInterned(name);
        omSetEnumerationElement(kinds.get(), i, member);
    }
    return kinds.release();
}

} // namespace

void invoke(int outputCount, qxArray** outputs, int /*inputCount*/, qxArray** inputs) {
    // The text belongs to the host. Without a text the pointer is null, and the string's constructor throws.
    const std::u16string name(matrix::detail::noninlined::qx_array_api::qxArrayToString_UTF16(inputs[0]));
    const auto results = kelwhich(name);
    outputs[0] = pathsForHost(results);
    if (outputCount > 1) {
        outputs[1] = kindsForHost(results);
    }
}

} // namespace tessgen::kelwhich
