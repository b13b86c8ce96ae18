// The engine: evaluates the two functions of the host language that the library calls.
#include "rux/Factory.hpp"
#include "rux/RUX.hpp"
#include "standalone/services/DataArrays.hpp"
#include "standalone/services/SessionState.hpp"

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
using foundation::orvakdata::StringElements;
using Arrays = std::vector<Array>;

// Moves one of the texts out of each place.
Array columnOf(std::vector<FoundPlace>& places, std::u16string FoundPlace::*text) {
    StringElements elements;
    elements.reserve(places.size());
    for (auto& place : places) {
        elements.emplace_back(std::move(place.*text));
    }
    return makeStringColumn(std::move(elements));
}

Arrays callWhichString(const Arrays& arguments) {
    auto places = currentSession().find(firstString(arguments.at(0)));
    Arrays outputs(2);
    outputs[0] = columnOf(places, &FoundPlace::line);
    if (places.size() == 1 && places.front().partner.empty()) { // the usual case
        thread_local const Array noPartner = makeStringColumn(StringElements(1, std::u16string()));
        outputs[1] = noPartner;
    } else {
        outputs[1] = columnOf(places, &FoundPlace::partner);
    }
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

// Evaluates at once, on the calling thread; the future is ready when it is returned.
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
        // Take the future last: destroying a promise with a waiting future allocates and would terminate.
        return promise.get_future();
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
