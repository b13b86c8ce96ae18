// Why the candidates of a name are in their order: the result of `KELWhichResolver::explain`.
//
// `resolve` decides by the very same facts. Texts are UTF-16; numbers and places count from 1.
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
    // What ranks candidates, the most significant key first. The first key in which two candidates differ decides.
    enum class Key : std::uint8_t { direct, user, supported, sourceFile, kind, gathered };
    static constexpr std::array keys = {Key::direct,     Key::user, Key::supported,
                                        Key::sourceFile, Key::kind, Key::gathered};

    // Whether the candidate defines the plain name that is resolved. For a dotted name or a path, always `direct`.
    enum class Definition : std::uint8_t {
        direct,
        hostMethod, // it is a built-in method of the host
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

    // Ranks of key `kind`, best first.
    enum class Kind : std::uint8_t { KELBuiltin, KELPath, other };

    // Which question found a candidate, and its place in that answer.
    struct Source {
        enum class Question : std::uint8_t { supportRecords, host };
        Question question;
        std::size_t number;
    };

    struct Candidate {
        WhichResult result;
        std::u16string definedName;                 // the qualified name that a file defines; empty for a built-in
        std::u16string hostFolder;                  // the start of its path, if it is `sourceCode` or `supportPackage`
        std::shared_ptr<const SupportEntry> record; // the support record that decided; null when none did
        Source source;
        std::size_t gathered;     // its place in the order of gathering
        std::size_t rank;         // its place in the answer of `resolve`; of a repeat, the place of the first one
        std::optional<Key> ahead; // the key that puts it before the next one; none for the last
        Definition definition;
        Ownership ownership;
        Support support;
        Kind kind;
        bool sourceFile; // a built-in, or a file with an extension of the host language
        bool repeat;     // an earlier candidate has the same path and type: `resolve` leaves it out

        [[nodiscard]] bool isDirect() const noexcept { return definition == Definition::direct; }
        [[nodiscard]] bool isUser() const noexcept { return ownership == Ownership::user; }
        [[nodiscard]] bool isSupported() const noexcept {
            return support == Support::KELBuiltin || support == Support::recorded;
        }
    };

    enum class DropRule : std::uint8_t {
        hostFile,      // a record of a host file that defines the name: the host's own answer covers it
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

        [[nodiscard]] bool isHonoured() const noexcept { return definition == Definition::direct; }
    };

    // One name resolved by itself: its candidates, the preferred one first, and what was dropped, in the order of
    // gathering.
    struct Resolution {
        std::u16string name;
        std::vector<Candidate> candidates;
        std::vector<Dropped> dropped;
    };

    // Which of two candidates of one resolution a key prefers: `less` means `a`.
    [[nodiscard]] KELWHICH_EXPORT static std::strong_ordering compare(Key key, const Candidate& a, const Candidate& b);

    std::u16string name;
    std::vector<Redirect> redirects;     // in the order of the records
    std::vector<Resolution> resolutions; // of each honoured redirect's target, then of the name itself
};

} // namespace tessgen::kelwhich
