// The host's services that are not functions of the host language. Each answers from the open session.
#include "fl/filesystem.hpp"
#include "standalone/services/SessionState.hpp"
#include "tessapp/internal/screener/meta/search.hpp"
#include "tessapp/util/foundation.hpp"
#include "tessgen/datalists.hpp"

#include <memory>
#include <optional>
#include <string>
#include <vector>

using tessgen::standalone::currentSession;

namespace fl::filesystem {

std::u16string get_install_path() {
    return currentSession().root;
}

void detail::concatenate_pathname(std::u16string& base, const std::u16string& component, bool /*flag*/) {
    if (!base.empty() && base.back() != u'/') {
        base.push_back(u'/');
    }
    base.append(component);
}

} // namespace fl::filesystem

const std::vector<std::u16string>& tessgen::datalists::kelPathFolders() {
    return currentSession().kelPath;
}

const std::vector<std::vector<std::u16string>>& tessapp::util::foundation::getORVAKSourceCodeDirs() {
    return currentSession().sourceCodeDirs;
}

namespace tessapp::internal::screener::meta {

std::optional<std::shared_ptr<const SupportEntry>> searchByPath(const std::u16string& path) {
    const auto store = currentSession().supportStore();
    return store ? store->findByPath(path) : std::nullopt;
}

std::vector<std::shared_ptr<const SupportEntry>> searchBySymbol(const std::u16string& symbol) {
    const auto store = currentSession().supportStore();
    return store ? store->findBySymbol(symbol) : std::vector<std::shared_ptr<const SupportEntry>>();
}

} // namespace tessapp::internal::screener::meta
