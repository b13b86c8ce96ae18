// Why the candidates of a name stand in their order: what `KELWhichResolver::explain` answers.
//
// Every fact here is the one that `resolve` decides by. Texts are UTF-16; numbers and places count from 1.
// Threads: a plain value.
// Lifetime: owns its texts and shares the support records.
#pragma once

#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResult.hpp"
#include "tessgen/kelwhich/export.hpp"

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

struct Explanation {
    // What ranks candidates, the most significant first: of two candidates, the first key that differs decides.
    enum class Key : std::uint8_t { direct, user, supported, sourceFile, kind, gathered };
    static constexpr std::array keys = {Key::direct,     Key::user, Key::supported,
                                        Key::sourceFile, Key::kind, Key::gathered};

    // Whether the plain name that is resolved is defined there. Of a dotted name and of a path all is `direct`.
    enum class Definition : std::uint8_t {
        direct,
        hostMethod, // a method that the host brings
        otherName,  // the file defines another name
        otherClass, // the file is a method in the folder of another class
    };

    enum class Ownership : std::uint8_t {
        user,
        noHostFile,     // a built-in, or a file on the KEL path
        sourceCode,     // its path begins with one of the host's source-code folders
        supportPackage, // its path begins with the support-package root
    };

    enum class Support : std::uint8_t {
        KELBuiltin,      // supported, as every KEL built-in
        recorded,        // supported by its record
        hostBuiltin,     // not supported, as every built-in of the host
        noRecord,        // not supported: no record has its path
        noFlag,          // not supported: its record has no support flag set
        unsupportedName, // not supported: its record lists the name among the unsupported
    };

    // Places of the two kinds that are preferred, and of all others.
    enum class Kind : std::uint8_t { KELBuiltin, KELPath, other };

    // Which question brought a candidate, and its place in the answer.
    struct Source {
        enum class Question : std::uint8_t { supportRecords, host };
        Question question;
        std::size_t number;
    };

    struct Candidate {
        WhichResult result;
        std::u16string definedName; // the qualified name that a file defines; empty for a built-in
        std::u16string hostFolder;  // what its path begins with, if it is `sourceCode` or `supportPackage`
        std::shared_ptr<const SupportEntry> record; // of the file with its path; null when none decided
        Source source;
        std::size_t gathered;     // its place among the candidates as they were found
        std::size_t rank;         // its place in the answer of `resolve`, or that of the first of its repeats
        std::optional<Key> ahead; // by which key it stands before the next one; nothing for the last
        Definition definition;
        Ownership ownership;
        Support support;
        Kind kind;
        bool sourceFile; // a built-in, or a file with an extension of the host language
        bool repeat;     // an earlier candidate has the same path and type, so it is not answered again

        bool isDirect() const noexcept { return definition == Definition::direct; }
        bool isUser() const noexcept { return ownership == Ownership::user; }
        bool isSupported() const noexcept { return support == Support::KELBuiltin || support == Support::recorded; }
    };

    enum class DropRule : std::uint8_t {
        hostFile,      // a record of a host file that defines the name: the host's own answer speaks for it
        privateFolder, // a file in a "private" folder of no class, and the name has no "/"
    };

    struct Dropped {
        WhichResult result;
        Source source;
        DropRule rule;
    };

    // A record that redirects. It is honoured when its own file, or built-in, defines the name.
    struct Redirect {
        std::u16string path;
        std::u16string target;
        Definition definition;
        std::u16string definedName; // the qualified name that the path defines
        std::shared_ptr<const SupportEntry> record;

        bool isHonoured() const noexcept { return definition == Definition::direct; }
    };

    // One name resolved by itself: its candidates, the preferred one first, and what was dropped, as it was found.
    struct Resolution {
        std::u16string name;
        std::vector<Candidate> candidates;
        std::vector<Dropped> dropped;
    };

    // Which of two candidates of one resolution a key prefers: `less` is the first of them.
    KELWHICH_EXPORT static std::strong_ordering compare(Key key, const Candidate& a, const Candidate& b);

    std::u16string name;
    std::vector<Redirect> redirects;     // in the order of the records
    std::vector<Resolution> resolutions; // of each honoured redirect's target, then of the name itself
};

} // namespace tessgen::kelwhich
