// What the collaborators of a resolver were asked and what they answered, kept as a file.
//
// Threads: collaborators that are recorded allow what they allowed before; `write` after all questions.
#pragma once

#include "cli/recording/RecordingFormat.hpp"
#include "standalone/files/AtomicFile.hpp"
#include "tessgen/kelwhich/FileSystem.hpp"
#include "tessgen/kelwhich/MetadataResolver.hpp"
#include "tessgen/kelwhich/WhichResolver.hpp"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessgen::cli {

struct Collaborators {
    std::unique_ptr<kelwhich::WhichResolver> which;
    std::unique_ptr<kelwhich::MetadataResolver> metadata;
    std::unique_ptr<kelwhich::FileSystem> fileSystem;
};

class Recording {
public:
    // What `write` writes; of the open session as well.
    // Errors: those of AtomicFile.
    explicit Recording(const std::string& file);

    void add(const Question& question, const RecordedAnswer& answer);

    // Errors: those of AtomicFile; there is no half of a recording.
    void write();

private:
    struct Answers {
        std::vector<std::string> lines;
        std::size_t repeats = 0; // of the last line, which are written only when another answer follows them
    };

    standalone::AtomicFile file_;
    std::map<Question, Answers> answers_;
    std::vector<const Answers*> inOrder_; // of the first asking
    std::mutex lock_;
};

// The same collaborators, every question of theirs and its answer or error added to the recording.
Collaborators recorded(Collaborators collaborators, const std::shared_ptr<Recording>& recording);

} // namespace tessgen::cli
