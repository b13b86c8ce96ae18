// The engine: evaluates the two functions of the host language that the library calls.
#include "foundation/orvakdata/TypedArray.hpp"
#include "rux/Factory.hpp"
#include "rux/RUX.hpp"
#include "standalone/DataArrays.hpp"
#include "standalone/SessionState.hpp"

#include <boost/exception_ptr.hpp>
#include <boost/thread/future.hpp>

#include <atomic>
#include <exception>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessgen::standalone {

namespace {

using foundation::orvakdata::Array;
using Arrays = std::vector<Array>;

Arrays callWhichString(const Arrays& arguments) {
    const foundation::orvakdata::StringArray argument(arguments.at(0));
    const std::u16string name = argument.begin().getRef();

    auto places = currentSession().find(name);
    foundation::orvakdata::StringElements lines;
    foundation::orvakdata::StringElements partners;
    lines.reserve(places.size());
    partners.reserve(places.size());
    for (auto& place : places) {
        lines.emplace_back(std::move(place.line));
        partners.emplace_back(std::move(place.partner));
    }
    Arrays outputs(2);
    outputs[0] = makeStringColumn(std::move(lines));
    outputs[1] = makeStringColumn(std::move(partners));
    return outputs;
}

Arrays getSupportPackageRoot() {
    const auto& root = currentSession().supportPackageRoot;
    return {root ? makeCharArray(*root) : Array()};
}

Arrays call(const std::string& function, const Arrays& arguments) {
    if (function == "tessapp.internal.screener.resolver.callWhichString") {
        return callWhichString(arguments);
    }
    if (function == "orvakshared.supportpkg.getSupportPackageRoot") {
        return getSupportPackageRoot();
    }
    throw std::invalid_argument("the stand-alone host has no function " + function);
}

// Evaluates at once, on the calling thread; the future is ready when it is handed out.
class Engine final : public rux::RUX {
public:
    rux::Future<Arrays> feval(const std::string& function, const Arrays& arguments, unsigned long /*outputCount*/,
                              cmddistributor::RunOptions /*options*/, bool /*flag*/,
                              foundation::msg_svc::exchange::IDType /*requestId*/) override {
        boost::promise<Arrays> promise;
        try {
            promise.set_value(call(function, arguments));
        } catch (...) {
            // Wrapped so that Boost rethrows the very same object, which its own capture would not.
            promise.set_exception(
                boost::copy_exception(boost::exception_detail::std_exception_ptr_wrapper(std::current_exception())));
        }
        return promise.get_future(); // last: a promise that leaves a future waiting ends the program if memory is out
    }
};

} // namespace

} // namespace tessgen::standalone

namespace rux {

std::shared_ptr<RUX> Factory::getCurrentLocalRUX() {
    thread_local const std::shared_ptr<RUX> engine = std::make_shared<tessgen::standalone::Engine>();
    return engine;
}

foundation::msg_svc::exchange::IDType RUX::createRequestID() {
    static std::atomic<foundation::msg_svc::exchange::IDType> last = 0;
    return ++last;
}

} // namespace rux
