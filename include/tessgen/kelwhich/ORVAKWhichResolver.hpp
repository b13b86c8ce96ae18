// Asks the running host interpreter where it finds a name.
//
// Each call evaluates one host function on the engine of the calling thread and waits for its end.
// Threads: any thread that has an engine; there is no state.
#pragma once

#include "tessgen/kelwhich/WhichResolver.hpp"

namespace tessgen::kelwhich {

class KELWHICH_EXPORT ORVAKWhichResolver final : public WhichResolver {
public:
    // One candidate for each place that the host reports: a file for an absolute path, else a built-in or a
    // built-in method whose path is `name` itself. Nothing is sorted or merged.
    // Errors: the host's own, unchanged; a missing string in the host's answer.
    [[nodiscard]] std::vector<WhichResult> which(const std::u16string& name) const override;
};

} // namespace tessgen::kelwhich
