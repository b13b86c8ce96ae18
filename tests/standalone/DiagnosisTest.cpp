#include "standalone/doctor/Diagnosis.hpp"
#include "tests/support/MemoryFileTree.hpp"
#include "tests/support/SupportStores.hpp"

#include <gmock/gmock.h>

#include <cerrno>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace tessgen::standalone {
namespace {

using Strings = std::vector<std::string>;

void append(Strings& list, const Strings& more) {
    list.insert(list.end(), more.begin(), more.end());
}

// An installation without findings, to be spoilt.
struct Patient {
    Patient() {
        installation.root = test::storeRoot; // "/opt/orvak"
        installation.supportPackageRoot = "/opt/packages";
        installation.searchPath = {"/w", "/opt/orvak/library"};
        installation.kelPath = {"/opt/orvak/kel", "/opt/packages/kel"};
        installation.sourceCode = {{"library"}};
        installation.extensions = {"vk", "vkx"};
        installation.builtins = {{u"sum", u"", false}, {u"sum", u"table", false}, {u"sum", u"sum", true}};
        add({"/w/f.vk", "/w/notes.txt", "/w/@C/f.vk", "/w/private/f.vkx", "/w/+p/@C/private/f.vk", "/w/other/f.VK",
             "/opt/orvak/library/scale.vk", "/opt/orvak/library.txt", "/opt/orvak/kel/wave.vk", "/opt/orvak/kel/a.txt",
             "/opt/orvak/kel/+p/@C/private/f.vk", "/opt/packages/kel/decode.vk"});
        tree.link("/w/linked.vk", "f.vk");
        tree.link("/w/+loop", "../w"); // entered once, or the walk would never end
        tree.link("/w/+again", "../w");
        tree.link("/w/lost", "nowhere");
        record(R"("path": "library/scale.vk", "unsupportedSymbols": ["other"])");
        record(R"("path": "kel/wave.vk", "redirect": true, "symbol": "modern")");
        record(R"("path": "kel/+p/@C/private/f.vk")");
        record(R"("path": "kel/decode.vk")");
        record(R"("path": "sum", "builtin": true, "unsupportedSymbols": ["sum"])");
    }

    void add(const Strings& files, const std::string& folder = "/") {
        for (const auto& file : files) {
            tree.add(absolutePath(file, folder), FileTree::Kind::file);
        }
    }
    void search(const Strings& folders) { append(installation.searchPath, folders); }
    void kel(const Strings& folders) { append(installation.kelPath, folders); }
    void record(const std::string& members) { records += "{" + members + "}\n"; }

    Strings findings() const {
        const test::TemporaryFolder folder;
        const SupportStore store(test::buildStore(folder, records), test::storeRoot);
        const auto resolves = [](const std::u16string& name) {
            if (name.starts_with(u"untold")) {
                throw std::system_error(EIO, std::generic_category());
            }
            return name == u"modern";
        };
        const DiagnosisInput examined{installation,
                                      tree,
                                      withStore ? &store : nullptr,
                                      [this](const std::string& path) { return tree.realPath(path); },
                                      resolves,
                                      nullptr,
                                      [](const std::string& path) { return path.ends_with("/round.vk"); }};
        Strings lines;
        for (const Finding& finding : diagnose(examined)) {
            lines.push_back(std::string(textOf(finding.diagnostic).code) + ": " + finding.place);
        }
        return lines;
    }

    test::MemoryFileTree tree;
    Installation installation;
    std::string records;
    bool withStore = true;
};

struct Case {
    std::function<void(Patient&)> spoil;
    Strings findings;
};

const std::vector<Case> cases = {
    {[](Patient&) {}, {}},
    {[](Patient& p) {
         p.tree.link("/again", "w");
         p.search({"/w/f.vk", "/none", "/w", "/again", "/w/@C"});
         p.kel({"/opt/orvak/none"});
         p.installation.sourceCode.push_back({"library", "none"});
         p.installation.builtins.push_back({u"sum", u"sum", true});
     },
     {"folder-missing: searchPath[2] /w/f.vk", "folder-missing: searchPath[3] /none",
      "folder-missing: kelPath[2] /opt/orvak/none", "folder-missing: sourceCode[1] /opt/orvak/library/none",
      "search-folder-twice: searchPath[4] /w and searchPath[0] /w",
      "search-folder-twice: searchPath[5] /again and searchPath[0] /w", "built-in-twice: builtins[3] sum"}},
    {[](Patient& p) {
         p.kel({"/opt/orvak/kel/", "/w/", "/w/+p", "/w/@C", "/w/private"});
     },
     {"kel-folder-ends-with-slash: kelPath[2] /opt/orvak/kel/", "kel-folder-ends-with-slash: kelPath[3] /w/",
      "kel-folder-in-package: kelPath[4] /w/+p", "kel-folder-in-package: kelPath[5] /w/@C",
      "kel-folder-in-package: kelPath[6] /w/private"}},
    {[](Patient& p) {
         p.tree.link("/k", "opt/orvak/kel");
         p.tree.add("/opt/orvak/kel/sub", FileTree::Kind::folder);
         p.installation.searchPath = {"/opt/orvak/kel/+p/@C", "/k", "/opt/orvak/kel/sub", "/opt/orvak/library"};
     },
     {"kel-folder-on-search-path: searchPath[0] /opt/orvak/kel/+p/@C and kelPath[0] /opt/orvak/kel",
      "kel-folder-on-search-path: searchPath[1] /k and kelPath[0] /opt/orvak/kel"}},
    {[](Patient& p) {
         p.add({"f.vk", "later/+p/f.vk", "kel/sub/f.vk", ".git/f.vk", "docs/f.md", "l/f.vk"}, "/opt/orvak");
         p.add({"/opt/packages/later/f.vk"});
         p.tree.link("/linked", "opt/orvak/l");
         p.search({"/linked", "/opt/orvak/kel/sub", "/opt/orvak/later"});
     },
     {"folder-not-searched: /opt/orvak"}},
    {[](Patient& p) {
         p.add({"library_drafts/a.vk", "library_own/a.vk", "library_own_too/a.vk", "library/sub/sub.vk",
                "library/subset/sub.vk", "library.vkx", "../packages-old/kel/f.vk", "../packages.vk"},
               "/opt/orvak");
         p.search({"/opt/orvak", "/opt/orvak/library/sub", "/opt/orvak/library/subset", "/opt/orvak/library_drafts",
                   "/opt/orvak/library_own", "/opt/orvak/library_own_too"});
         p.tree.link("/opt/orvak/library2", "../../w");
         p.tree.link("/opt/orvak/library3.vk", "../../w/f.vk");
         p.installation.sourceCode.insert(p.installation.sourceCode.end(), {{"library_own"}, {"library", "sub"}});
     },
     {"source-folder-is-prefix: /opt/orvak/library.vkx and sourceCode[0] /opt/orvak/library",
      "source-folder-is-prefix: /opt/orvak/library2 and sourceCode[0] /opt/orvak/library",
      "source-folder-is-prefix: /opt/orvak/library3.vk and sourceCode[0] /opt/orvak/library",
      "source-folder-is-prefix: /opt/orvak/library_drafts and sourceCode[0] /opt/orvak/library",
      "source-folder-is-prefix: /opt/orvak/library_own_too and sourceCode[0] /opt/orvak/library",
      "source-folder-is-prefix: /opt/orvak/library_own_too and sourceCode[1] /opt/orvak/library_own",
      "package-root-is-prefix: /opt/packages-old and supportPackageRoot /opt/packages",
      "package-root-is-prefix: /opt/packages.vk and supportPackageRoot /opt/packages"}},
    {[](Patient& p) {
         p.installation.sourceCode = {{}};
         p.add({"/opt/orvak2/a.vk"});
     },
     {"source-folder-is-prefix: /opt/orvak2 and sourceCode[0] /opt/orvak"}},
    {[](Patient& p) {
         p.installation.supportPackageRoot = "/opt";
         p.add({"/opt/kel/decode.vk"});
         p.installation.kelPath.pop_back();
     },
     {"package-root-holds-root: supportPackageRoot /opt and root /opt/orvak"}},
    {[](Patient& p) {
         p.tree.fail("/w/@C", EACCES);
         p.tree.fail("/w/linked.vk", EIO);
         p.tree.fail("/opt/orvak/library/lost.vk", EIO);
         p.record(R"("path": "library/lost.vk", "redirect": true, "symbol": "untold")");
         p.record(R"("path": "library/late.vk", "redirect": true, "symbol": "untold too")");
     },
     {"folder-unreadable: /w/@C: Permission denied", "folder-unreadable: /w/linked.vk: Input/output error",
      "folder-unreadable: /opt/orvak/library: Input/output error",
      "folder-unreadable: /opt/orvak/library/lost.vk, untold: Input/output error"}},
    {[](Patient& p) {
         p.add({"\xFF.vk", "+p/@\xFF/f.vk", "\xFF.txt", "f.VK", "+p/f.vKx", ".VK", "+p/Private/f.vk"}, "/w");
         p.tree.link("/w/lost.vk", "nowhere");
         p.tree.link("/w/@C/private", "private");
     },
     {"name-not-utf-8: /w/+p/@\xFF", "name-not-utf-8: /w/\xFF.vk", "link-dangling: /w/@C/private",
      "link-dangling: /w/lost.vk", "extension-case: /w/+p/f.vKx", "extension-case: /w/f.VK",
      "private-case: /w/+p/Private"}},
    {[](Patient& p) {
         p.add({"/opt/orvak/kel/@K/private/m.vk", "/opt/packages/kel/m.vkx"});
         p.installation.searchPath.insert(p.installation.searchPath.begin(), "/opt/orvak/kel/@K");
     },
     {"kel-folder-on-search-path: searchPath[0] /opt/orvak/kel/@K and kelPath[0] /opt/orvak/kel",
      "kel-file-without-record: /opt/orvak/kel/@K/private/m.vk", "kel-file-without-record: /opt/packages/kel/m.vkx"}},
    {[](Patient& p) {
         p.withStore = false;
         p.installation.supportPackageRoot.reset();
     },
     {"kel-file-without-record: /opt/orvak/kel/+p/@C/private/f.vk", "kel-file-without-record: /opt/orvak/kel/wave.vk",
      "kel-file-without-record: /opt/packages/kel/decode.vk"}},
    {[](Patient& p) {
         for (const char* path :
              {"library/lost.vk", "none/lost.vk", "library", "/f.vk", "/opt/packages/kel/decode.vk"}) {
             p.record(R"("path": ")" + std::string(path) + '"');
         }
         p.add({"/opt/orvak/library/round.vk", "/w/two.vk"});
         p.record(R"("path": "library/round.vk")");
         p.record(R"("path": "/w/two.vk", "name": ["one", "two"], "unsupportedSymbols": ["three", "two"])");
         p.record(R"("path": "sum", "builtin": true, "unsupportedSymbols": ["sum"])"); // without effect
         p.record(R"("path": "/w/f.vk", "redirect": true, "symbol": "gone")");
         p.record(R"("path": "/w/@C/f.vk", "redirect": true, "symbol": "gone")");
     },
     {"record-without-file: /opt/orvak/library/lost.vk", "record-without-file: /opt/orvak/none/lost.vk",
      "record-without-file: /opt/orvak/library", "record-without-file: /f.vk",
      "record-in-package-root: /opt/packages/kel/decode.vk", "stand-in-is-circle: /opt/packages/library/round.vk",
      "record-refuses-itself: /w/two.vk, two", "redirect-to-nothing: /w/f.vk, gone",
      "redirect-to-nothing: /w/@C/f.vk, gone"}},
};

TEST(Diagnosis, FindsEachFaultAndNothingElse) {
    std::set<std::string> met;
    for (const bool kindsAreHidden : {false, true}) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            Patient patient;
            cases[i].spoil(patient);
            if (kindsAreHidden) {
                patient.tree.hideKinds();
            }
            EXPECT_EQ(patient.findings(), cases[i].findings) << "case " << i;
            for (const std::string& finding : cases[i].findings) {
                met.insert(finding.substr(0, finding.find(':')));
            }
        }
    }
    EXPECT_EQ(met.size(), static_cast<std::size_t>(Diagnostic::redirectToNothing) + 1);
    const std::string document = test::contentOf(KELWHICH_SOURCE_DIR "/docs/doctor.md");
    for (const std::string& code : met) {
        EXPECT_NE(document.find("| `" + code + "` |"), std::string::npos) << code << " is not in the document";
    }
}

} // namespace
} // namespace tessgen::standalone
