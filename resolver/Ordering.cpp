#include "resolver/Ordering.hpp"

#include "resolver/Predicates.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

namespace {

// Of a candidate that stands alone, nothing is found out but what the collaborators are asked, as they are of each.
struct Judge {
    static WhichResultType type(const WhichResult& result) { return result.type; }
    bool isBuiltinOrSourceFile(const WhichResult& result) const {
        return isAlone || kelwhich::isBuiltinOrSourceFile(result);
    }
    bool isSupported(const WhichResult& result) const { return resolver.isSupportedForCodegen(result, name); }
    bool isUser(const WhichResult& result) const { return resolver.isUserResult(result); }
    bool isDirect(const WhichResult& result) const { return isAlone || !isIndirectResult(result, name); }

    const KELWhichResolver& resolver;
    const std::u16string& name;
    bool isAlone;
};

} // namespace

std::vector<WhichResult> KELWhichResolver::resolveWithoutRedirect(const std::u16string& name) const {
    auto results = unorderedResolveWithoutRedirect(name);
    orderByPreference(results, Judge{*this, name, results.size() == 1});
    return results;
}

} // namespace tessgen::kelwhich
