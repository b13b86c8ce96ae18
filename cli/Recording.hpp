// What the collaborators of a resolver were asked and what they answered, kept as a file.
//
// Threads: collaborators that are recorded allow what they allowed before; `write` after all questions.
#pragma once

#include "cli/Collaborators.hpp"
#include "cli/RecordingFormat.hpp"
#include "standalone/NewFile.hpp"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessgen::cli {

class Recording {
public:
    // Holds the source-code folders of the open session.
    // Errors: those of NewFile.
    explicit Recording(const std::string& file);

    void add(const Question& question, const RecordedAnswer& answer);

    // Errors: those of NewFile; there is no half of a recording.
    void write();

private:
    struct Answers {
        std::vector<std::string> lines;
        std::size_t repeats = 0; // of the last line, which are written only when another answer follows them
    };

    standalone::NewFile file_;
    std::map<Question, Answers> answers_;
    std::vector<const Answers*> inOrder_; // of the first asking
    std::mutex lock_;
};

// The same collaborators, every question of theirs and its answer or error added to the recording.
Collaborators recorded(Collaborators collaborators, const std::shared_ptr<Recording>& recording);

} // namespace tessgen::cli
