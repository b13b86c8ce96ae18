#include "tessgen/kelwhich/RealFileSystem.hpp"

#include "fl/filesystem.hpp"
#include "foundation/orvakdata/CharArray.hpp"
#include "host/Evaluation.hpp"
#include "host/Paths.hpp"
#include "tessgen/datalists.hpp"

#include <filesystem>
#include <mutex>
#include <optional>
#include <string>

namespace tessgen::kelwhich {

RealFileSystem::RealFileSystem() = default;

bool RealFileSystem::exists(const std::u16string& path) const {
    // Tested before the conversion, which throws on malformed UTF-16: names are asked for, too.
    if (!beginsWith(path, u"/")) {
        return false;
    }
    return std::filesystem::exists(std::filesystem::status(path));
}

std::u16string RealFileSystem::orvakroot() const {
    return fl::filesystem::get_install_path();
}

std::optional<std::u16string> RealFileSystem::spkgroot() const {
    // With no output requested, the host still delivers the answer as the first one.
    const auto outputs = evaluate("orvakshared.supportpkg.getSupportPackageRoot", {}, 0);
    const auto& answer = outputs[0];
    if (answer.isEmpty()) {
        return std::nullopt;
    }
    return foundation::orvakdata::CharArray(answer).toUTF16();
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): callers use it as a member
RealFileSystem::FolderSet RealFileSystem::getKELPathDirs() const {
    const auto& folders = datalists::kelPathFolders();
    return {folders.begin(), folders.end()};
}

bool RealFileSystem::isOnKELPath(const std::u16string& path) const {
    std::call_once(kelPathDirsOnce_, [this] { kelPathDirs_ = getKELPathDirs(); });
    return kelPathDirs_->contains(packageRootFolder(path));
}

} // namespace tessgen::kelwhich
