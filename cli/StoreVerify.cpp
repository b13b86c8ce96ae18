#include "cli/Commands.hpp"
#include "cli/Manifest.hpp"
#include "cli/Verified.hpp"
#include "standalone/Installation.hpp"
#include "standalone/SupportStore.hpp"
#include "standalone/SupportStoreCheck.hpp"
#include "standalone/SupportStoreFormat.hpp"

#include <string>

namespace tessgen::cli {

int storeVerify(const Request& request) {
    const auto file = findStore(request);
    if (request.operands.empty()) { // then it must be the one of the installation
        const standalone::SupportStore store(file, standalone::readInstallation(findManifest(request)).root);
    }
    return tellVerified(file, standalone::checkSupportStore(file), standalone::supportStoreKind, "record");
}

} // namespace tessgen::cli
