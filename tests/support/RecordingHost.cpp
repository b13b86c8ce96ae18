#include "tests/support/RecordingHost.hpp"

#include "fl/filesystem.hpp"
#include "rux/Factory.hpp"
#include "tessapp/internal/screener/meta/search.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/datalists.hpp"

#include <boost/exception_ptr.hpp>

#include <utility>

namespace tessgen::test {

namespace {

class RecordingEngine final : public rux::RUX {
public:
    rux::Future<std::vector<foundation::orvakdata::Array>>
    feval(const std::string& function, const std::vector<foundation::orvakdata::Array>& arguments,
          unsigned long outputCount, cmddistributor::RunOptions options, bool flag,
          foundation::msg_svc::exchange::IDType requestId) override {
        auto& host = RecordingHost::instance();
        host.evaluations.push_back({function, arguments, outputCount, options, flag, requestId});
        boost::promise<std::vector<foundation::orvakdata::Array>> promise;
        try {
            Faults::ask();
            promise.set_value(host.answer(host.evaluations.back()));
        } catch (...) {
            promise.set_exception(
                boost::copy_exception(boost::exception_detail::std_exception_ptr_wrapper(std::current_exception())));
        }
        return promise.get_future();
    }
};

const FakeMetadataResolver& metadata() {
    static const FakeMetadataResolver fake(RecordingHost::instance().metadata);
    return fake;
}

} // namespace

RecordingHost& RecordingHost::instance() {
    static RecordingHost host;
    return host;
}

RecordingHost& RecordingHost::reset() {
    return instance() = RecordingHost();
}

} // namespace tessgen::test

using tessgen::test::Faults;
using tessgen::test::RecordingHost;

std::shared_ptr<rux::RUX> rux::Factory::getCurrentLocalRUX() {
    Faults::ask();
    return std::make_shared<tessgen::test::RecordingEngine>();
}

foundation::msg_svc::exchange::IDType rux::RUX::createRequestID() {
    Faults::ask();
    static foundation::msg_svc::exchange::IDType last = 0;
    return ++last;
}

std::u16string fl::filesystem::get_install_path() {
    Faults::ask();
    return RecordingHost::instance().root;
}

void fl::filesystem::detail::concatenate_pathname(std::u16string& base, const std::u16string& component, bool flag) {
    Faults::ask();
    base += (flag ? u"!" : u"/") + component;
}

const std::vector<std::u16string>& tessgen::datalists::kelPathFolders() {
    auto& host = RecordingHost::instance();
    ++host.kelPathAsked;
    Faults::ask();
    return host.kelPath;
}

const std::vector<std::vector<std::u16string>>& tessapp::util::foundation::getORVAKSourceCodeDirs() {
    auto& host = RecordingHost::instance();
    ++host.sourceCodeDirsAsked;
    Faults::ask();
    return host.sourceCodeDirs;
}

namespace tessapp::internal::screener::meta {

std::optional<std::shared_ptr<const SupportEntry>> searchByPath(const std::u16string& path) {
    return tessgen::test::metadata().findByPath(path);
}

std::vector<std::shared_ptr<const SupportEntry>> searchBySymbol(const std::u16string& symbol) {
    return tessgen::test::metadata().findBySymbol(symbol);
}

} // namespace tessapp::internal::screener::meta
