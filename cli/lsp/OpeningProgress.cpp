#include "cli/lsp/OpeningProgress.hpp"

#include "cli/output/Console.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tessgen::cli {

namespace {

constexpr const char* token = "kelwhich/open";

} // namespace

void OpeningProgress::begin() {
    dueAt_ = Clock::now() + environmentMilliseconds("KELWHICH_PROGRESS_MS", std::chrono::milliseconds(500));
    state_ = isWanted ? State::opening : State::none;
}

void OpeningProgress::end() {
    if (std::exchange(state_, State::none) == State::shown) {
        report({{"kind", "end"}});
    }
}

void OpeningProgress::update() {
    if (state_ == State::opening && Clock::now() >= dueAt_) {
        state_ = State::asked;
        send_(request(token, "window/workDoneProgress/create", {{"token", token}}));
    }
}

int OpeningProgress::milliseconds() const {
    if (state_ != State::opening) {
        return -1;
    }
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(dueAt_ - Clock::now());
    return static_cast<int>(std::max<std::int64_t>(0, left.count()));
}

void OpeningProgress::takeResponse(const Message& message) {
    if (state_ == State::asked && message.id == token && !message.isError) {
        state_ = State::shown;
        report({{"kind", "begin"}, {"title", "kelwhich opens the installation"}});
    }
}

void OpeningProgress::report(nlohmann::ordered_json value) {
    send_(notification("$/progress", {{"token", token}, {"value", std::move(value)}}));
}

} // namespace tessgen::cli
