#include "cli/recording/Replay.hpp"

#include "cli/recording/Recording.hpp"
#include "standalone/files/FileKind.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/json/JsonInput.hpp"

#include <fmt/format.h>

#include <optional>
#include <stdexcept>
#include <utility>
#include <variant>

namespace tessgen::cli {

namespace {

template <typename Interface>
class Replayed : public Interface {
public:
    explicit Replayed(std::shared_ptr<const Replay> replay) : replay_(std::move(replay)) {}

protected:
    template <typename Answer>
    [[nodiscard]] Answer answer(QueryKind kind, const std::u16string& argument = {}) const {
        const auto& found = replay_->answerTo({kind, argument});
        if (const auto* const error = std::get_if<RecordedError>(&found)) {
            throw std::runtime_error(error->message);
        }
        return std::get<Answer>(found);
    }

private:
    std::shared_ptr<const Replay> replay_;
};

class ReplayedWhichResolver final : public Replayed<kelwhich::WhichResolver> {
public:
    using Replayed::Replayed;

    [[nodiscard]] std::vector<kelwhich::WhichResult> which(const std::u16string& name) const override {
        return answer<std::vector<kelwhich::WhichResult>>(QueryKind::which, name);
    }
};

class ReplayedMetadataResolver final : public Replayed<kelwhich::MetadataResolver> {
public:
    using Replayed::Replayed;

    [[nodiscard]] std::optional<SharedEntry> findByPath(const std::u16string& path) const override {
        return answer<std::optional<SharedEntry>>(QueryKind::findByPath, path);
    }
    [[nodiscard]] std::vector<SharedEntry> findBySymbol(const std::u16string& symbol) const override {
        return answer<std::vector<SharedEntry>>(QueryKind::findBySymbol, symbol);
    }
};

class ReplayedFileSystem final : public Replayed<kelwhich::FileSystem> {
public:
    using Replayed::Replayed;

    [[nodiscard]] bool exists(const std::u16string& path) const override {
        return answer<bool>(QueryKind::exists, path);
    }
    [[nodiscard]] std::u16string orvakroot() const override { return answer<std::u16string>(QueryKind::orvakroot); }
    [[nodiscard]] std::optional<std::u16string> spkgroot() const override {
        return answer<std::optional<std::u16string>>(QueryKind::spkgroot);
    }
    [[nodiscard]] bool isOnKELPath(const std::u16string& path) const override {
        return answer<bool>(QueryKind::isOnKELPath, path);
    }
};

} // namespace

Replay::Replay(const std::string& file) : file_(file) {
    standalone::LineReader lines(file);
    const auto first = lines.next();
    if (!first) {
        throw std::runtime_error(file + ": is empty; expected a recording, as written by --record");
    }
    try {
        head_ = standalone::readLine(lines.place(), [&] { return readHeadLine(*first); });
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(error.what() + standalone::noteOnKind(file, "a recording"));
    }
    while (const auto line = lines.next()) {
        auto [question, answer] = standalone::readLine(lines.place(), [&] { return readAnswerLine(*line); });
        answers_[std::move(question)].list.push_back(std::move(answer));
    }
}

const RecordedAnswer& Replay::answerTo(const Question& question) const {
    const auto found = answers_.find(question);
    if (found == answers_.end()) {
        throw std::runtime_error(
            fmt::format("{}: has no answer to {}; a recording can only answer the names that it was "
                        "made with",
                        file_, questionText(question)));
    }
    const auto& [list, next] = found->second;
    const std::lock_guard guard(lock_);
    return next + 1 < list.size() ? list[next++] : list.back();
}

Collaborators replayed(const std::shared_ptr<const Replay>& replay) {
    return {std::make_unique<ReplayedWhichResolver>(replay), std::make_unique<ReplayedMetadataResolver>(replay),
            std::make_unique<ReplayedFileSystem>(replay)};
}

} // namespace tessgen::cli
