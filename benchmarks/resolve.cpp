// The library alone: a name with five candidates over collaborators in memory.
//
// Usage: bench_resolve [WHAT COUNT]    runs WHAT COUNT times, for a tool that counts instructions; without arguments,
// prints the compiler's version, and for each WHAT how many allocations it makes.
#include "host/Paths.hpp"
#include "standalone/Session.hpp"
#include "standalone/manifest/Installation.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"
#include "tests/support/FailingAllocator.hpp"

#include <array>
#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace tessgen::kelwhich;
using Record = std::shared_ptr<const SupportEntry>;

class Host final : public WhichResolver {
    std::vector<WhichResult> which(const std::u16string& name) const override {
        return {{u"/mine/@Shape/" + name + u".vk", WhichResultType::ORVAKPath},
                {u"/mine/" + name + u".vk", WhichResultType::ORVAKPath},
                {u"/host/library/signal/" + name + u".vkx", WhichResultType::ORVAKPath},
                {name, WhichResultType::ORVAKBuiltin}};
    }
};

class Metadata final : public MetadataResolver {
    std::optional<Record> findByPath(const std::u16string& path) const override {
        return path == record_->path ? std::optional(record_) : std::nullopt;
    }
    std::vector<Record> findBySymbol(const std::u16string& /*symbol*/) const override { return {record_}; }

    Record record_ = std::make_shared<const SupportEntry>(SupportEntry{
        .supportFlags = {true}, .symbol = u"wavelength", .path = u"/host/kel/wavelength.vk", .unsupportedSymbols = {}});
};

class Disk final : public FileSystem {
    bool exists(const std::u16string& /*path*/) const override { return false; }
    std::u16string orvakroot() const override { return u"/host/of/the/interpreter"; }
    std::optional<std::u16string> spkgroot() const override { return std::nullopt; }
    bool isOnKELPath(const std::u16string& path) const override { return path.starts_with(u"/host/kel/"); }
};

const KELWhichResolver& resolver() {
    static const KELWhichResolver made(std::make_unique<Host>(), std::make_unique<Metadata>(),
                                       std::make_unique<Disk>());
    return made;
}

const std::u16string name = u"wavelength";
const std::u16string path = u"/mine/+a/+b/+c/+d/+e/+f/+g/@Wavelength/private/Wavelength.vk";

struct What {
    std::string_view word;
    bool (*does)(); // whether it answered as it should
};

constexpr std::array whats{
    What{"resolve", [] { return resolver().resolve(name).size() == 5; }},
    What{"explain", [] { return resolver().explain(name).resolutions.front().candidates.size() == 5; }},
    What{"getClassFolderInfo", [] { return getClassFolderInfo(path)->className == u"Wavelength"; }},
    What{"packageRootFolder", [] { return packageRootFolder(path) == u"/mine"; }},
    What{"fileStem", [] { return fileStem(path) == u"Wavelength" && fileExtension(path) == u"vk"; }},
    What{"qualifiedNameForPath", [] { return qualifiedNameForPath(path) == u"a.b.c.d.e.f.g.Wavelength"; }},
};

} // namespace

int main(int count, char** words) {
    tessgen::standalone::Installation installation; // for the folders of host code, which the library asks the host
    installation.root = "/";
    installation.sourceCode = {{"host", "library"}, {"host", "toolbox"}};
    const tessgen::standalone::Session session(std::move(installation));
    bool isRight = true;
    if (count == 1) {
        std::cout << "compiler " << __VERSION__ << '\n';
    }
    for (const auto& what : whats) {
        if (count == 1) {
            isRight = what.does() && isRight; // what is made once
            const auto before = tessgen::test::Allocations::made();
            isRight = what.does() && isRight;
            std::cout << what.word << ' ' << tessgen::test::Allocations::made() - before << '\n';
        } else if (what.word == words[1]) {
            for (int left = std::atoi(words[2]); left > 0; --left) { // NOLINT(cert-err34-c): of our own script
                isRight = what.does() && isRight;
            }
        }
    }
    return isRight ? 0 : 2;
}
