#include "resolver/Redirects.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <string>
#include <vector>

namespace tessgen::kelwhich {

std::vector<WhichResult> KELWhichResolver::resolve(const std::u16string& name) const {
    NoRecorder none;
    return Pipeline(*this, none).resolve(name);
}

std::vector<WhichResult> KELWhichResolver::resolveWithoutRedirect(const std::u16string& name) const {
    NoRecorder none;
    return Pipeline(*this, none).resolveWithoutRedirect(name);
}

std::vector<WhichResult> KELWhichResolver::unorderedResolveWithoutRedirect(const std::u16string& name) const {
    NoRecorder none;
    return Pipeline(*this, none).gather(name);
}

} // namespace tessgen::kelwhich
