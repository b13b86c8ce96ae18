// Shows in the editor that the installation is being opened, when that takes long.
//
// Threads: one.
#pragma once

#include "cli/lsp/JsonRpc.hpp"

#include <chrono>
#include <utility>

namespace tessgen::cli {

class OpeningProgress {
public:
    explicit OpeningProgress(Send send) : send_(std::move(send)) {}

    bool isWanted = false; // the editor can show it

    // Call them when it is being opened, and when that has ended.
    void begin();
    void end();

    // Asks the editor for a place to show it, once that is due.
    void update();
    // How many milliseconds are left until then; -1: for ever.
    [[nodiscard]] int milliseconds() const;

    // Begins to show it if this is the editor's consent.
    void takeResponse(const Message& message);

private:
    using Clock = std::chrono::steady_clock;
    enum class State { none, opening, asked, shown };

    void report(nlohmann::ordered_json value);

    const Send send_;
    State state_ = State::none;
    Clock::time_point dueAt_;
};

} // namespace tessgen::cli
