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

void failIfAsked(RecordingHost& host) {
    if (auto failure = std::exchange(host.failOnce, nullptr)) {
        std::rethrow_exception(failure);
    }
}

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
            promise.set_value(host.answer(host.evaluations.back()));
        } catch (...) {
            promise.set_exception(
                boost::copy_exception(boost::exception_detail::std_exception_ptr_wrapper(std::current_exception())));
        }
        return promise.get_future();
    }
};

} // namespace

RecordingHost& RecordingHost::instance() {
    static RecordingHost host;
    return host;
}

RecordingHost& RecordingHost::reset() {
    return instance() = RecordingHost();
}

} // namespace tessgen::test

using tessgen::test::RecordingHost;

std::shared_ptr<rux::RUX> rux::Factory::getCurrentLocalRUX() {
    return std::make_shared<tessgen::test::RecordingEngine>();
}

foundation::msg_svc::exchange::IDType rux::RUX::createRequestID() {
    static foundation::msg_svc::exchange::IDType last = 0;
    return ++last;
}

std::u16string fl::filesystem::get_install_path() {
    return RecordingHost::instance().root;
}

void fl::filesystem::detail::concatenate_pathname(std::u16string& base, const std::u16string& component, bool flag) {
    base += (flag ? u"!" : u"/") + component;
}

const std::vector<std::u16string>& tessgen::datalists::kelPathFolders() {
    auto& host = RecordingHost::instance();
    ++host.kelPathAsked;
    tessgen::test::failIfAsked(host);
    return host.kelPath;
}

const std::vector<std::vector<std::u16string>>& tessapp::util::foundation::getORVAKSourceCodeDirs() {
    auto& host = RecordingHost::instance();
    ++host.sourceCodeDirsAsked;
    tessgen::test::failIfAsked(host);
    return host.sourceCodeDirs;
}

namespace tessapp::internal::screener::meta {

std::optional<std::shared_ptr<const SupportEntry>> searchByPath(const std::u16string& path) {
    return tessgen::test::FakeMetadataResolver(RecordingHost::instance().metadata).findByPath(path);
}

std::vector<std::shared_ptr<const SupportEntry>> searchBySymbol(const std::u16string& symbol) {
    return tessgen::test::FakeMetadataResolver(RecordingHost::instance().metadata).findBySymbol(symbol);
}

} // namespace tessapp::internal::screener::meta
