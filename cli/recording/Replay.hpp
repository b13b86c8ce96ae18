// A recording, read again: it answers what the resolver asks, so that no installation is needed.
//
// Threads: any; where one question has several answers, threads share their order.
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
    // Errors: std::runtime_error, one line that names the file, the line and the key.
    explicit Replay(const std::string& file);

    const RecordingHead& head() const { return head_; }

    // The answers of a question in their order, then the last one again and again.
    // Errors: std::runtime_error: one that is no question of the recording.
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

// Collaborators that answer, and fail, as the recording says.
Collaborators replayed(const std::shared_ptr<const Replay>& replay);

} // namespace tessgen::cli
