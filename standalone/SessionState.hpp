// What an open session answers from.
//
// Threads: immutable; its members allow concurrent const use.
#pragma once

#include "standalone/FileTree.hpp"
#include "standalone/Installation.hpp"
#include "standalone/NameSearch.hpp"
#include "standalone/SupportStore.hpp"

#include <optional>
#include <string>
#include <vector>

namespace tessgen::standalone {

struct SessionState {
    explicit SessionState(Installation opened);
    SessionState(const SessionState&) = delete;
    SessionState& operator=(const SessionState&) = delete;
    ~SessionState() = default;

    const Installation installation;
    const RealFileTree files;
    const NameSearch search;
    const std::optional<SupportStore> store;

    // The installation's folders as the services hand them out, in UTF-16.
    const std::u16string root;
    const std::optional<std::u16string> supportPackageRoot;
    const std::vector<std::u16string> kelPath;
    const std::vector<std::vector<std::u16string>> sourceCodeDirs;
};

// The state of the open session.
// Errors: std::logic_error outside a session.
const SessionState& currentSession();

} // namespace tessgen::standalone
