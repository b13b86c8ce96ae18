// The gateway through which host-language code calls the library.
#pragma once

#include "tessgen/kelwhich/export.hpp"

struct qxArray;

namespace tessgen::kelwhich {

// Resolves the name in `inputs[0]`, a character array or a string; further inputs are ignored.
// `outputs[0]` receives a string array of the candidates' paths, whatever `outputCount` is; `outputs[1]`, only when
// `outputCount` is above 1, a 1-by-N array of "tessapp.internal.screener.WhichResultType" whose element i is the kind
// of path i. Host built-ins and host built-in methods share the member "ORVAKBuiltin". The caller owns the outputs.
// Threads: any thread that has an engine of the host.
// Errors: those of `kelwhich` and of the host's array services, unchanged; std::logic_error when the name is no text.
// Arrays that were made and not yet written to `outputs` are then released. `outputs[0]` is written only when it is
// complete, and stays written when the kinds fail. No handle is checked: a null one goes to the host's array services
// as it is, and `inputs` or `outputs` that are null end the process.
KELWHICH_EXPORT void invoke(int outputCount, qxArray** outputs, int inputCount, qxArray** inputs);

} // namespace tessgen::kelwhich
