// A recording that is read back: it answers the resolver's questions, so that no installation is needed.
//
// Threads: any; the answers of one question are handed out in order across all threads.
#pragma once

#include "cli/recording/RecordingFormat.hpp"

#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace tessgen::cli {

struct Collaborators;

class Replay {
public:
    // Errors: std::runtime_error, one line with the file, the line number and the key.
    explicit Replay(const std::string& file);

    const RecordingHead& head() const { return head_; }

    // The next answer to the question; the last answer repeats for ever.
    // Errors: std::runtime_error when the recording does not hold the question.
    const RecordedAnswer& answerTo(const Question& question) const;

private:
    struct Answers {
        std::vector<RecordedAnswer> list; // at least one
        mutable std::size_t next = 0;     // guarded by `lock_`
    };

    std::string file_;
    RecordingHead head_;
    std::map<Question, Answers> answers_;
    mutable std::mutex lock_;
};

// Collaborators that answer and fail as recorded.
Collaborators replayed(const std::shared_ptr<const Replay>& replay);

} // namespace tessgen::cli
