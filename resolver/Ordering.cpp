#include "resolver/Ordering.hpp"

#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace {

struct Judge {
    static WhichResultType type(const WhichResult& result) { return result.type; }
    static bool isBuiltinOrSourceFile(const WhichResult& result) { return kelwhich::isBuiltinOrSourceFile(result); }
    bool isSupported(const WhichResult& result) const { return resolver.isSupportedForCodegen(result, name); }
    bool isUser(const WhichResult& result) const { return resolver.isUserResult(result); }
    bool isDirect(const WhichResult& result) const { return !isIndirectResult(result, name); }

    const KELWhichResolver& resolver;
    const std::u16string& name;
};

} // namespace

std::vector<WhichResult> KELWhichResolver::resolveWithoutRedirect(const std::u16string& name) const {
    auto results = unorderedResolveWithoutRedirect(name);
    orderByPreference(results, Judge{*this, name});
    return results;
}

} // namespace tessgen::kelwhich
