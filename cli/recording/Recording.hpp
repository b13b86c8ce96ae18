// Records every question to the collaborators of a resolver, with its answer, into a file.
//
// Threads: recorded collaborators are as thread-safe as the original ones; call `write` after the last question.
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
    // `file` is what `write` replaces.
    // Errors: those of AtomicFile.
    explicit Recording(const std::string& file);

    void add(const Question& question, const RecordedAnswer& answer);

    // Writes the head, from the open session, and all answers: the whole file or nothing.
    // Errors: those of AtomicFile.
    void write();

private:
    struct Answers {
        std::vector<std::string> lines;
        std::size_t repeats = 0; // of the last line; written only when a different answer follows
    };

    standalone::AtomicFile file_;
    std::map<Question, Answers> answers_;
    std::vector<const Answers*> inOrder_; // by first question
    std::mutex lock_;
};

// Wraps `collaborators` so that every question and its answer or error is added to the recording.
Collaborators recorded(Collaborators collaborators, const std::shared_ptr<Recording>& recording);

} // namespace tessgen::cli
