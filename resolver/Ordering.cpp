#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <algorithm>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace {

// Moves the candidates for which `holds` is true to the front; both groups keep their order.
template <typename Predicate>
void preferWhere(std::vector<WhichResult>& results, Predicate holds) {
    std::stable_partition(results.begin(), results.end(), holds);
}

void stablePartitionByType(std::vector<WhichResult>& results, WhichResultType type) {
    preferWhere(results, [type](const WhichResult& result) { return result.type == type; });
}

} // namespace

// The last partition is the most significant key; what ties on all of them stays in gathering order.
std::vector<WhichResult> KELWhichResolver::resolveWithoutRedirect(const std::u16string& name) const {
    auto results = unorderedResolveWithoutRedirect(name);
    stablePartitionByType(results, WhichResultType::KELPath);
    stablePartitionByType(results, WhichResultType::KELBuiltin);
    preferWhere(results, isBuiltinOrSourceFile);
    preferWhere(results, [&](const WhichResult& result) { return isSupportedForCodegen(result, name); });
    preferWhere(results, [&](const WhichResult& result) { return isUserResult(result); });
    preferWhere(results, [&](const WhichResult& result) { return !isIndirectResult(result, name); });
    return results;
}

} // namespace tessgen::kelwhich
