#include "fl/filesystem.hpp"
#include "host/Paths.hpp"
#include "resolver/Judgements.hpp"
#include "tessapp/internal/screener/meta/SupportEntry.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/kelwhich/KELWhichResolver.hpp"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
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

KELWhichResolver::OwnershipJudgement KELWhichResolver::ownershipOf(const WhichResult& result) const {
    using Ownership = Explanation::Ownership;
    if (result.type != WhichResultType::ORVAKPath) {
        return {Ownership::noHostFile, 0};
    }
    const auto& hostDirs = hostSourceCodeDirs();
    const auto packages = fileSystem_->spkgroot();
    for (const auto& dir : hostDirs) {
        if (beginsWith(result.path, dir)) {
            return {Ownership::sourceCode, dir.size()};
        }
    }
    if (packages && beginsWith(result.path, *packages)) {
        return {Ownership::supportPackage, packages->size()};
    }
    return {Ownership::user, 0};
}

KELWhichResolver::SupportJudgement KELWhichResolver::supportOf(const WhichResult& result,
                                                               const std::u16string& name) const {
    using Support = Explanation::Support;
    switch (result.type) {
    case WhichResultType::ORVAKBuiltin:
    case WhichResultType::ORVAKBuiltinMethod:
        return {Support::hostBuiltin, nullptr};
    case WhichResultType::KELBuiltin:
        return {Support::KELBuiltin, nullptr};
    case WhichResultType::KELPath:
    case WhichResultType::ORVAKPath:
        break;
    }
    auto entry = findByPath(result.path);
    if (!entry) {
        return {Support::noRecord, nullptr};
    }
    const auto& unsupported = entry->entry->unsupportedSymbols;
    const auto support = !entry->supported ? Support::noFlag
                         : std::find(unsupported.begin(), unsupported.end(), name) != unsupported.end()
                             ? Support::unsupportedName
                             : Support::recorded;
    return {support, std::move(entry->entry)};
}

bool KELWhichResolver::isUserResult(const WhichResult& result) const {
    return static_cast<bool>(ownershipOf(result));
}

bool KELWhichResolver::isSupportedForCodegen(const WhichResult& result, const std::u16string& name) const {
    return static_cast<bool>(supportOf(result, name));
}

} // namespace tessgen::kelwhich
