// The engine of the host interpreter: evaluates functions of the host language.
//
// Threads: an engine is used on the thread that it belongs to.
#pragma once

#include "cmddistributor/RunOptions.hpp"
#include "foundation/msg_svc/exchange/IDType.hpp"
#include "foundation/orvakdata/Array.hpp"
#include "rux/Future.hpp"

#include <string>
#include <vector>

namespace rux {

class RUX {
public:
    // Starts the evaluation of a host function, named by its full dotted name. The future holds at least
    // `outputCount` arrays, and the function's answer as the first one even when `outputCount` is 0.
    // Errors: what goes wrong in the function arrives through the future, as the very object that was thrown.
    virtual Future<std::vector<foundation::orvakdata::Array>>
    feval(const std::string& function, const std::vector<foundation::orvakdata::Array>& arguments,
          unsigned long outputCount, cmddistributor::RunOptions options, bool flag,
          foundation::msg_svc::exchange::IDType requestId) = 0;
    virtual ~RUX() = default;

    // An identifier that no other request of this process has. Threads: any.
    static foundation::msg_svc::exchange::IDType createRequestID();
};

} // namespace rux
