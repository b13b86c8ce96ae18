#include "cli/recording/Recording.hpp"

#include "cli/output/Console.hpp"
#include "standalone/files/LineReader.hpp"
#include "standalone/services/SessionState.hpp"

#include <exception>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace tessgen::cli {

namespace {

// Returns or throws what `call` does, after adding it to the recording.
template <typename Call>
auto recordedAnswer(Recording& recording, const Question& question, Call call) {
    try {
        auto answer = call();
        recording.add(question, answer);
        return answer;
    } catch (const std::exception& error) {
        recording.add(question, RecordedError{errorMessage(error)});
        throw;
    }
}

template <typename Interface>
class Recorded : public Interface {
public:
    Recorded(std::unique_ptr<Interface> inner, std::shared_ptr<Recording> recording)
        : inner_(std::move(inner)), recording_(std::move(recording)) {}

protected:
    template <typename Call>
    [[nodiscard]] auto record(QueryKind kind, const std::u16string& argument, Call call) const {
        return recordedAnswer(*recording_, {kind, argument}, [&] { return call(*inner_); });
    }

private:
    std::unique_ptr<Interface> inner_;
    std::shared_ptr<Recording> recording_;
};

class RecordedWhichResolver final : public Recorded<kelwhich::WhichResolver> {
public:
    using Recorded::Recorded;

    [[nodiscard]] std::vector<kelwhich::WhichResult> which(const std::u16string& name) const override {
        return record(QueryKind::which, name, [&](auto& inner) { return inner.which(name); });
    }
};

class RecordedMetadataResolver final : public Recorded<kelwhich::MetadataResolver> {
public:
    using Recorded::Recorded;

    [[nodiscard]] std::optional<SharedEntry> findByPath(const std::u16string& path) const override {
        return record(QueryKind::findByPath, path, [&](auto& inner) { return inner.findByPath(path); });
    }
    [[nodiscard]] std::vector<SharedEntry> findBySymbol(const std::u16string& symbol) const override {
        return record(QueryKind::findBySymbol, symbol, [&](auto& inner) { return inner.findBySymbol(symbol); });
    }
};

class RecordedFileSystem final : public Recorded<kelwhich::FileSystem> {
public:
    using Recorded::Recorded;

    [[nodiscard]] bool exists(const std::u16string& path) const override {
        return record(QueryKind::exists, path, [&](auto& inner) { return inner.exists(path); });
    }
    [[nodiscard]] std::u16string orvakroot() const override {
        return record(QueryKind::orvakroot, {}, [](auto& inner) { return inner.orvakroot(); });
    }
    [[nodiscard]] std::optional<std::u16string> spkgroot() const override {
        return record(QueryKind::spkgroot, {}, [](auto& inner) { return inner.spkgroot(); });
    }
    [[nodiscard]] bool isOnKELPath(const std::u16string& path) const override {
        return record(QueryKind::isOnKELPath, path, [&](auto& inner) { return inner.isOnKELPath(path); });
    }
};

constexpr standalone::Replaceable replaceableRecording{"a recording", "--record", [](const std::string& file) {
                                                           try {
                                                               standalone::LineReader lines(file);
                                                               readHeadLine(lines.next().value_or(""));
                                                               return true;
                                                           } catch (const std::runtime_error&) {
                                                               return false;
                                                           }
                                                       }};

} // namespace

Recording::Recording(const std::string& file) : file_(file, replaceableRecording) {}

void Recording::add(const Question& question, const RecordedAnswer& answer) {
    auto line = answerLine(question, answer);
    const std::lock_guard guard(lock_);
    const auto [place, isNew] = answers_.try_emplace(question);
    auto& [lines, repeats] = place->second;
    if (isNew) {
        inOrder_.push_back(&place->second);
    } else if (lines.back() == line) {
        ++repeats;
        return;
    }
    lines.insert(lines.end(), std::exchange(repeats, 0), isNew ? std::string() : std::string(lines.back()));
    lines.push_back(std::move(line));
}

void Recording::write() {
    const auto& installation = standalone::currentSession().installation;
    file_.append(headLine({installation.sourceCode, installation.searchPath}) + '\n');
    for (const auto* const answers : inOrder_) {
        for (const auto& line : answers->lines) {
            if (line.size() > standalone::LineReader::longestLine) {
                file_.fail("an answer makes a line of more than 1 MiB, which no recording holds");
            }
            file_.append(line + '\n');
        }
    }
    file_.commit();
}

Collaborators recorded(Collaborators collaborators, const std::shared_ptr<Recording>& recording) {
    return {std::make_unique<RecordedWhichResolver>(std::move(collaborators.which), recording),
            std::make_unique<RecordedMetadataResolver>(std::move(collaborators.metadata), recording),
            std::make_unique<RecordedFileSystem>(std::move(collaborators.fileSystem), recording)};
}

} // namespace tessgen::cli
