// The resolver: which definitions a name may stand for when the code generator translates a program, and in which
// order it prefers them.
//
// A name has candidates from two sources: the code generator's support records and the host's own answers. The
// resolver gathers both, orders them, and lists the candidates of redirect targets ahead of the name's own. It
// knows the host, the metadata and the disk only through the three collaborators that it owns.
//
// Names and paths are UTF-16, passed on and compared unchanged: no trimming, no case folding, no normalisation. A name
// is a symbol ("wave"), a dotted symbol ("signal.wave") or a path (it contains "/").
//
// Threads: every operation may be called concurrently when the collaborators allow it.
// Lifetime: the collaborators are destroyed with the resolver: file system, metadata, host look-up.
// Errors: exceptions of collaborators reach the caller unchanged. There is no partial answer, and nothing of the failed
// call is kept: the next call asks again.
#pragma once

#include "tessgen/kelwhich/Explanation.hpp"
#include "tessgen/kelwhich/FileSystem.hpp"
#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResolver.hpp"
#include "tessgen/kelwhich/export.hpp"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tessgen::kelwhich {

class KELWHICH_EXPORT KELWhichResolver {
public:
    // What the resolver keeps of a support record.
    struct BasicSupportEntry {
        std::u16string path;   // as recorded, or the file that stands in for it in a support package
        std::u16string symbol; // as recorded; of a redirecting record, the name resolved in its place
        bool supported;        // at least one support flag is set
        bool builtin;          // the record is of a KEL built-in
        bool carriedFlag;      // the record redirects to `symbol`
        std::shared_ptr<const SupportEntry> entry; // the record it was made from
    };

    // Takes ownership of the collaborators, none of them null; calls none of them.
    KELWhichResolver(std::unique_ptr<WhichResolver> which, std::unique_ptr<MetadataResolver> metadata,
                     std::unique_ptr<FileSystem> fileSystem) noexcept;
    KELWhichResolver(const KELWhichResolver&) = delete;
    KELWhichResolver& operator=(const KELWhichResolver&) = delete;
    ~KELWhichResolver();

    // The resolver's copy of a record. A file below the installation root is replaced by the same file below the
    // support-package root when there is such a root and the file exists there.
    [[nodiscard]] BasicSupportEntry entryToBasicEntry(std::shared_ptr<const SupportEntry> entry) const;

    // The candidate that a record stands for: a KEL built-in, a file on the KEL path, or a host file.
    [[nodiscard]] WhichResult entryToWhichResult(const BasicSupportEntry& entry) const;

    // The record of one file, or nothing. A file below the support-package root is looked up as the same file
    // below the installation root.
    [[nodiscard]] std::optional<BasicSupportEntry> findByPath(const std::u16string& path) const;

    // Every record under a symbol, in the metadata's order.
    [[nodiscard]] std::vector<BasicSupportEntry> findBySymbol(const std::u16string& symbol) const;

    // The records of a name. If a file `name` exists: those of the file. Otherwise, for a symbol: those of the symbol.
    // Otherwise, for a path: those of the symbol that the path would define, if their own path contains `name`.
    [[nodiscard]] std::vector<BasicSupportEntry> findSupportEntry(const std::u16string& name) const;

    // True for a host file below none of the host's source-code folders and not below the support-package root
    // ("below" is a plain prefix test). The host is asked for its source-code folders once.
    [[nodiscard]] bool isUserResult(const WhichResult& result) const;

    // True when code can be generated for the candidate under `name`: every KEL built-in, no host built-in, and a
    // file when its record is supported and does not list `name` as unsupported.
    [[nodiscard]] bool isSupportedForCodegen(const WhichResult& result, const std::u16string& name) const;

    // The candidates of `name` in the order of gathering: those of support records, then the host's. For a name without
    // "/", files directly in a "private" folder of no class are left out. Redirects are not followed.
    [[nodiscard]] std::vector<WhichResult> unorderedResolveWithoutRedirect(const std::u16string& name) const;

    // The same candidates, the preferred one first.
    [[nodiscard]] std::vector<WhichResult> resolveWithoutRedirect(const std::u16string& name) const;

    // The candidates of `name`, the preferred one first, each (path, type) once: those of its redirect targets,
    // target by target, then its own. A target's own redirects are not followed. Memory follows the answer, however
    // often its candidates repeat.
    [[nodiscard]] std::vector<WhichResult> resolve(const std::u16string& name) const;

    // The candidates of `resolve` with the reasons. Calls the collaborators as `resolve` does, in the same order. Keeps
    // the repeats too, 160 bytes and its texts each: 2,000 redirects to a name of 2,000 candidates take 640 MB or more.
    [[nodiscard]] Explanation explain(const std::u16string& name) const;

private:
    struct OwnershipJudgement;
    struct SupportJudgement;
    template <typename Recorder>
    class Pipeline;
    class ExplanationRecorder;

    [[nodiscard]] KELWHICH_NO_EXPORT const std::vector<std::u16string>& hostSourceCodeDirs() const;
    [[nodiscard]] KELWHICH_NO_EXPORT WhichResultType typeOf(const BasicSupportEntry& entry) const;
    [[nodiscard]] KELWHICH_NO_EXPORT OwnershipJudgement ownershipOf(const WhichResult& result) const;
    [[nodiscard]] KELWHICH_NO_EXPORT SupportJudgement supportOf(const WhichResult& result,
                                                                const std::u16string& name) const;

    std::unique_ptr<WhichResolver> which_;
    std::unique_ptr<MetadataResolver> metadata_;
    std::unique_ptr<FileSystem> fileSystem_;
    // Key: none. Kept: the host's source-code folders as absolute paths, from the first use on. Never kept: a failure.
    // Dropped: with the resolver. Threads: filled under `sourceCodeDirsOnce_`.
    mutable std::optional<std::vector<std::u16string>> sourceCodeDirs_;
    mutable std::once_flag sourceCodeDirsOnce_;
};

} // namespace tessgen::kelwhich
