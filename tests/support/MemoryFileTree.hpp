// A file tree in memory, which writes down what it is asked.
#pragma once

#include "standalone/files/FileTree.hpp"
#include "standalone/text/PathText.hpp"

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace tessgen::test {

class MemoryFileTree final : public standalone::FileTree {
public:
    // A tree that holds the folder `top` with these files below it.
    explicit MemoryFileTree(const std::string& top = "/", const std::vector<std::string>& files = {}) {
        if (top != "/") {
            add(top, Kind::folder);
        }
        for (const auto& file : files) {
            add(standalone::joinPath(top, file), Kind::file);
        }
    }

    // Folders above `path` are made as needed. Paths are absolute, without "." and "..".
    void add(const std::string& path, Kind kind) {
        for (auto end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1)) {
            nodes_.try_emplace(path.substr(0, end), Node{Kind::folder, ""});
        }
        nodes_[path] = {kind, ""};
    }
    void link(const std::string& path, const std::string& target) {
        add(path, Kind::link);
        nodes_[path].target = target;
    }
    // From now on a listing tells of each entry only that it is there, as some disks do.
    void hideKinds(bool areHidden = true) { kindsHidden_ = areHidden; }
    // From now on the system fails with `error` when `path` is asked for.
    void fail(const std::string& path, int error) { failures_[path] = error; }
    void mend() { failures_.clear(); }

    std::map<std::string, Kind> kinds() const {
        std::map<std::string, Kind> all;
        for (const auto& [path, node] : nodes_) {
            all[path] = node.kind;
        }
        return all;
    }

    // "list FOLDER" and "kind PATH", in the order of the calls.
    std::vector<std::string> takeQuestions() { return std::exchange(questions_, {}); }

    std::optional<std::vector<Entry>> entries(const std::string& folder,
                                              const standalone::EntryFilter& wanted) const override {
        note("list ", folder);
        const auto real = resolve(folder);
        if (!real || kindAt(*real) != Kind::folder) {
            return std::nullopt;
        }
        std::vector<Entry> found;
        const std::string above = *real + "/";
        for (auto node = nodes_.lower_bound(above); node != nodes_.end() && node->first.starts_with(above); ++node) {
            const std::string name = node->first.substr(above.size());
            if (name.find('/') == std::string::npos && wanted.accepts(name)) {
                found.push_back({name, kindsHidden_ ? Kind::link : node->second.kind});
            }
        }
        std::reverse(found.begin(), found.end()); // no disk promises an order
        return found;
    }
    std::optional<Kind> kindOf(const std::string& path) const override {
        note("kind ", path);
        const auto real = resolve(path);
        return real ? std::optional(kindAt(*real)) : std::nullopt;
    }
    std::optional<std::string> realPath(const std::string& path) const {
        const auto real = resolve(path);
        return real && real->empty() ? "/" : real;
    }

private:
    struct Node {
        Kind kind;
        std::string target; // of a link
    };

    void note(const char* question, const std::string& path) const {
        questions_.push_back(question + path);
        if (const auto failure = failures_.find(path); failure != failures_.end()) {
            throw std::system_error(failure->second, std::generic_category(), path);
        }
    }

    // The path without links, the root as ""; nothing when nothing is there, or after too many links.
    std::optional<std::string> resolve(const std::string& path, int linksLeft = 40) const {
        std::string real;
        for (std::size_t begin = 1; begin < path.size();) {
            const auto end = std::min(path.find('/', begin), path.size());
            const std::string next = real + "/" + path.substr(begin, end - begin);
            const auto node = nodes_.find(next);
            if (node == nodes_.end()) {
                return std::nullopt;
            }
            std::optional<std::string> target = next;
            if (node->second.kind == Kind::link) {
                target = linksLeft == 0 ? std::nullopt
                                        : resolve(standalone::absolutePath(node->second.target, real), linksLeft - 1);
            }
            if (!target) {
                return std::nullopt;
            }
            real = *target;
            begin = end + 1;
        }
        return real;
    }

    Kind kindAt(const std::string& real) const { return real.empty() ? Kind::folder : nodes_.at(real).kind; }

    std::map<std::string, Node> nodes_;
    std::map<std::string, int> failures_;
    bool kindsHidden_ = false;
    mutable std::vector<std::string> questions_;
};

} // namespace tessgen::test
