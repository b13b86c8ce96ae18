// Assembles a resolver of one's own: the library's collaborators for the host and the metadata, remembered answers,
// and a file system that knows of one unsaved file in an editor.
//
//     own_resolver INSTALLATION UNSAVED-FILE NAME...
#include <standalone/Session.hpp>
#include <tessgen/kelwhich/CachedFileSystemAdaptor.hpp>
#include <tessgen/kelwhich/CachedWhichResolverAdaptor.hpp>
#include <tessgen/kelwhich/KELWhichResolver.hpp>
#include <tessgen/kelwhich/ORVAKWhichResolver.hpp>
#include <tessgen/kelwhich/RealFileSystem.hpp>
#include <tessgen/kelwhich/ScreenerMetadataResolver.hpp>

#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>

namespace kelwhich = tessgen::kelwhich;

namespace {

// A collaborator of one's own: the disk, and one file that is not on it yet.
class EditorFileSystem final : public kelwhich::FileSystem {
public:
    EditorFileSystem(std::unique_ptr<kelwhich::FileSystem> disk, std::u16string unsaved)
        : disk_(std::move(disk)), unsaved_(std::move(unsaved)) {}

    bool exists(const std::u16string& path) const override { return path == unsaved_ || disk_->exists(path); }
    std::u16string orvakroot() const override { return disk_->orvakroot(); }
    std::optional<std::u16string> spkgroot() const override { return disk_->spkgroot(); }
    bool isOnKELPath(const std::u16string& path) const override { return disk_->isOnKELPath(path); }

private:
    std::unique_ptr<kelwhich::FileSystem> disk_;
    std::u16string unsaved_;
};

std::u16string wide(const char* text) {
    return std::filesystem::path(text).u16string();
}

void answer(const kelwhich::KELWhichResolver& resolver, const std::u16string& name) {
    for (const auto& candidate : resolver.resolve(name)) {
        std::cout << static_cast<unsigned>(candidate.type) << ' ' << std::filesystem::path(candidate.path).string()
                  << '\n';
    }
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::cerr << "usage: own_resolver INSTALLATION UNSAVED-FILE NAME...\n";
        return 2;
    }
    try {
        const tessgen::standalone::Session session(argv[1]);
        auto which =
            std::make_unique<kelwhich::CachedWhichResolverAdaptor>(std::make_unique<kelwhich::ORVAKWhichResolver>());
        auto disk = std::make_unique<kelwhich::CachedFileSystemAdaptor>(std::make_unique<kelwhich::RealFileSystem>());
        const kelwhich::KELWhichResolver resolver(std::move(which),
                                                  std::make_unique<kelwhich::ScreenerMetadataResolver>(),
                                                  std::make_unique<EditorFileSystem>(std::move(disk), wide(argv[2])));
        for (int i = 3; i < argc; ++i) {
            answer(resolver, wide(argv[i]));
        }
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "own_resolver: " << error.what() << '\n';
        return 2;
    }
}
