// The watched view beside a snapshot, in one process: the start, a question, and a question after a change.
//
// Usage: bench_watched MANIFEST NAMES FOLDERS ROUNDS; NAMES has a name on each line, FOLDERS a folder of the search.
// Each round opens a session of either kind and asks every name. Prints a figure a line, its name, and the median of
// the rounds in microseconds of processor time.
#include "standalone/files/RealFileTree.hpp"
#include "standalone/search/SearchPathWalk.hpp"
#include "standalone/services/SessionState.hpp"
#include "standalone/text/Text.hpp"
#include "standalone/watch/FolderWatch.hpp"
#include "tessgen/kelwhich/kelwhich.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <exception>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/epoll.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using namespace tessgen;
using standalone::Session;
using standalone::View;

std::vector<std::string> linesOf(const char* file) {
    std::ifstream text(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(text, line);) {
        lines.push_back(line);
    }
    if (lines.empty()) {
        throw std::runtime_error(std::string(file) + ": holds no lines");
    }
    return lines;
}

// Of this thread, the system's share included.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

template <typename Action>
double microseconds(Action action) {
    const double begin = processorTime();
    action();
    return processorTime() - begin;
}

class Rounds {
public:
    Rounds(std::string manifest, const std::vector<std::string>& names, std::vector<std::string> folders)
        : manifest_(std::move(manifest)), folders_(std::move(folders)) {
        for (const std::string& name : names) {
            names_.push_back(standalone::toUTF16(name).value());
        }
    }

    void run() {
        const auto expected = askAll("snapshot", View::snapshot);
        if (askAll("watched", View::watched) != expected) {
            throw std::runtime_error("the watched view answers otherwise than a snapshot");
        }
    }

    void print() {
        for (auto& [name, times] : figures_) {
            const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
            std::nth_element(times.begin(), middle, times.end());
            std::cout << name << ' ' << *middle << '\n';
        }
    }

private:
    // How many candidates there are.
    std::size_t askAll(const std::string& view, View kind) {
        std::unique_ptr<Session> session;
        figures_[view + "-start"].push_back(
            microseconds([&] { session = std::make_unique<Session>(manifest_, kind); }));
        std::size_t count = 0;
        const double time = microseconds([&] {
            for (const auto& name : names_) {
                count += kelwhich::kelwhich(name).size();
            }
        });
        figures_[view + "-question"].push_back(time / static_cast<double>(names_.size()));
        if (kind == View::watched) {
            askAfterChanges();
        }
        return count;
    }

    // One new file in one folder before each question.
    void askAfterChanges() {
        static const std::vector<std::string> extensions{"vk", "vkx"};
        const standalone::RealFileTree disk;
        const auto wanted = standalone::searchedEntries(extensions);
        constexpr std::size_t most = 100;
        for (std::size_t i = 0; i < std::min(most, folders_.size()); ++i) {
            const std::string& folder = folders_[(i * 7919) % folders_.size()];
            const std::string file = folder + "/added.vk";
            close(open(file.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
            const auto& name = names_[i % names_.size()];
            const auto ask = [&name] { static_cast<void>(kelwhich::kelwhich(name)); };
            const auto before = listedAgain();
            figures_["listing"].push_back(microseconds([&] { static_cast<void>(disk.entries(folder, wanted)); }));
            figures_["changed-question"].push_back(microseconds(ask));
            figures_["unchanged-question"].push_back(microseconds(ask));
            figures_["listed-again"].push_back(static_cast<double>(listedAgain() - before));
            unlink(file.c_str());
            ask();
        }
        figures_["system-call"].push_back(microseconds([] {
                                              epoll_event event{};
                                              const int ready = standalone::currentSession().watched->descriptor();
                                              for (int i = 0; i < 100; ++i) {
                                                  epoll_wait(ready, &event, 1, 0);
                                              }
                                          })
                                          / 100);
    }

    static std::uint64_t listedAgain() { return standalone::currentSession().watched->counts().listedAgain; }

    const std::string manifest_;
    std::vector<std::u16string> names_;
    const std::vector<std::string> folders_;
    std::map<std::string, std::vector<double>> figures_;
};

} // namespace

int main(int count, char** words) {
    if (count != 5) {
        std::cerr << "usage: bench_watched MANIFEST NAMES FOLDERS ROUNDS\n";
        return 2;
    }
    try {
        Rounds rounds(words[1], linesOf(words[2]), linesOf(words[3]));
        for (int left = std::stoi(words[4]); left > 0; --left) {
            rounds.run();
        }
        rounds.print();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 2;
    }
    return 0;
}
