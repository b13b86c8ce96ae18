// Small installations made by chance, in which names collide as often as possible.
#pragma once

#include "tests/support/SupportStores.hpp"

#include <cstddef>
#include <random>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tessgen::test {

// Writes one to `folder`, with its manifest in "h". `paths` are those of its files, and of records.
class InstallationMaker {
public:
    InstallationMaker(unsigned seed, const TemporaryFolder& folder) : random_(seed) {
        folder.write("h/installation.json", manifest);
        folder.makeFolder("s");
        for (auto count = 30; count > 0; --count) {
            paths.insert(folder.write(path()));
        }
        std::string records;
        std::set<std::string> recorded;
        for (auto count = below(30); count > 0; --count) {
            const auto file = folder.path(path());
            if (!recorded.insert(file).second) {
                continue;
            }
            paths.insert(file);
            records += R"({"path": ")" + file + R"(", "name": ")" + any("f g C p.f p.C C.f p.q.g q")
                       + R"(", "symbol": ")" + any("f f g p.f C.f k/f.vk p.q.g") + R"(", "redirect": )"
                       + any("true false false") + R"(, "supportFlags": [)" + any("true false")
                       + ",false,false,false,false,false]}\n";
        }
        standalone::buildSupportStore(folder.write("records.jsonl", records), folder.path("h/support.cdb"),
                                      folder.path("h"));
    }

    static inline const std::string manifest =
        R"({"supportPackageRoot": "../s", "searchPath": ["a", "b", "../s/a", "a"], "kelPath": ["k"],
            "sourceCode": ["a"], "supportStore": "support.cdb", "builtins": [{"name": "f"}]})";
    std::set<std::string> paths;

private:
    std::size_t below(std::size_t bound) { return std::uniform_int_distribution<std::size_t>(0, bound - 1)(random_); }
    std::string any(std::string_view words) {
        const auto all = standalone::split(words, ' ');
        return all[below(all.size())];
    }
    std::string path() {
        return any("h/a h/a h/b h/k h/k s/a s/k") + any("    /+p /+p /+p/+q") + any("    /@f /@C /private")
               + any("/f /f /g /C") + any(".vk .vk .vkx");
    }

    std::mt19937 random_;
};

inline std::vector<std::u16string> plainAndDottedNames() {
    std::vector<std::u16string> names;
    for (const auto* const package : {u"", u"p.", u"p.q.", u"q.", u"f.", u"C."}) {
        for (const auto* const className : {u"", u"f.", u"C."}) {
            for (const auto* const last : {u"f", u"g", u"C", u"p", u"q"}) {
                names.push_back(std::u16string(package) + className + last);
            }
        }
    }
    return names;
}

} // namespace tessgen::test
