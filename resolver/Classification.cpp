#include "fl/filesystem.hpp"
#include "host/Paths.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tessgen::kelwhich {

namespace {

std::vector<std::u16string> absoluteSourceCodeDirs(const FileSystem& fileSystem) {
    const auto& entries = tessapp::util::foundation::getORVAKSourceCodeDirs();
    std::vector<std::u16string> dirs;
    dirs.reserve(entries.size());
    for (const auto& components : entries) {
        auto dir = fileSystem.orvakroot();
        for (const auto& component : components) {
            fl::filesystem::detail::concatenate_pathname(dir, component, false);
        }
        dirs.push_back(std::move(dir));
    }
    return dirs;
}

} // namespace

const std::vector<std::u16string>& KELWhichResolver::hostSourceCodeDirs() const {
    std::call_once(sourceCodeDirsOnce_, [this] { sourceCodeDirs_ = absoluteSourceCodeDirs(*fileSystem_); });
    return *sourceCodeDirs_;
}

bool KELWhichResolver::isUserResult(const WhichResult& result) const {
    if (result.type != WhichResultType::ORVAKPath) {
        return false;
    }
    const auto& hostDirs = hostSourceCodeDirs();
    const auto packages = fileSystem_->spkgroot();
    const auto holdsResult = [&](std::u16string_view dir) { return beginsWith(result.path, dir); };
    return std::none_of(hostDirs.begin(), hostDirs.end(), holdsResult) && !(packages && holdsResult(*packages));
}

bool KELWhichResolver::isSupportedForCodegen(const WhichResult& result, const std::u16string& name) const {
    switch (result.type) {
    case WhichResultType::ORVAKBuiltin:
    case WhichResultType::ORVAKBuiltinMethod:
        return false;
    case WhichResultType::KELBuiltin:
        return true;
    case WhichResultType::KELPath:
    case WhichResultType::ORVAKPath:
        break;
    }
    const auto entry = findByPath(result.path);
    if (!entry || !entry->supported) {
        return false;
    }
    const auto& unsupported = entry->entry->unsupportedSymbols;
    return std::find(unsupported.begin(), unsupported.end(), name) == unsupported.end();
}

} // namespace tessgen::kelwhich
