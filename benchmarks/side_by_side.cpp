// Runs programs round after round, in random order, and prints the median time of each and its peak memory.
//
// Usage: side_by_side ROUNDS WORDS PROGRAM ARGUMENT... [--- PROGRAM ARGUMENT...]
// In an argument, %W stands for a word of the file WORDS, another one in each round. Output is thrown away. On standard
// output, for each program: the median of its times from start to end in microseconds, its peak memory in KiB, the part
// of its memory at the end that is neither shared nor of a file, and its exit code, the same in every round.
#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <iostream>
#include <random>
#include <spawn.h>
#include <stdexcept>
#include <string>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

constexpr int cannotRun = 127;

struct Program {
    std::vector<std::string> words;
    std::vector<double> times;
    long peak = 0;
    long own = 0;
    int exitCode = 0;
};

std::vector<std::string> wordsOf(const Program& program, const std::string& wordOfRound) {
    auto words = program.words;
    for (auto& word : words) {
        if (const auto at = word.find("%W"); at != std::string::npos) {
            word = word.substr(0, at).append(wordOfRound).append(word, at + 2);
        }
    }
    return words;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (auto& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

[[noreturn]] void fail(const Program& program, const std::string& why) {
    throw std::runtime_error(program.words.front() + " " + why);
}

// One timed run.
void run(Program& program, const std::string& wordOfRound) {
    auto words = wordsOf(program, wordOfRound);
    auto arguments = pointersTo(words);
    posix_spawn_file_actions_t toNowhere;
    posix_spawn_file_actions_init(&toNowhere);
    for (const int stream : {STDOUT_FILENO, STDERR_FILENO}) {
        posix_spawn_file_actions_addopen(&toNowhere, stream, "/dev/null", O_WRONLY, 0);
    }
    pid_t child = 0;
    const auto begin = std::chrono::steady_clock::now();
    if (const int error = posix_spawnp(&child, arguments[0], &toNowhere, nullptr, arguments.data(), environ)) {
        fail(program, std::string("cannot be run: ") + std::strerror(error)); // NOLINT(concurrency-mt-unsafe)
    }
    int status = 0;
    rusage used{};
    wait4(child, &status, 0, &used);
    const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
    posix_spawn_file_actions_destroy(&toNowhere);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != program.exitCode) {
        fail(program, "ends with status " + std::to_string(status));
    }
    program.times.push_back(time.count());
    program.peak = std::max(program.peak, used.ru_maxrss);
}

// One more run, stopped just before it exits, while the system still reports its memory.
void lookAtMemory(Program& program, const std::string& wordOfRound) {
    auto words = wordsOf(program, wordOfRound);
    auto arguments = pointersTo(words);
    const pid_t child = fork();
    if (child == 0) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDOUT_FILENO);
        dup2(nowhere, STDERR_FILENO);
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        execvp(arguments[0], arguments.data());
        _exit(cannotRun);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACEEXIT);
    ptrace(PTRACE_CONT, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    std::ifstream lines("/proc/" + std::to_string(child) + "/status");
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("RssAnon:")) {
            program.own = std::strtol(line.c_str() + std::strlen("RssAnon:"), nullptr, 10);
        }
    }
    ptrace(PTRACE_CONT, child, nullptr, nullptr);
    waitpid(child, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) == cannotRun) {
        fail(program, "cannot be run");
    }
    program.exitCode = WEXITSTATUS(status);
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void measure(std::size_t rounds, const std::vector<std::string>& words, std::vector<Program>& programs) {
    std::vector<Program*> order;
    for (auto& program : programs) {
        lookAtMemory(program, words.at(rounds % words.size())); // also the warming round
        order.push_back(&program);
    }
    std::minstd_rand random;
    for (std::size_t round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            std::shuffle(order.begin(), order.end(), random);
        } else { // so that each of two comes before the other as often
            std::reverse(order.begin(), order.end());
        }
        for (auto* program : order) {
            run(*program, words[round % words.size()]);
        }
    }
    for (const auto& program : programs) {
        std::cout << median(program.times) << ' ' << program.peak << ' ' << program.own << ' ' << program.exitCode
                  << '\n';
    }
}

std::vector<std::string> linesOf(const char* file) {
    std::ifstream stream(file);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace

int main(int count, char** words) {
    std::vector<Program> programs(1);
    for (int i = 3; i < count; ++i) {
        if (std::strcmp(words[i], "---") == 0) {
            programs.emplace_back();
        } else {
            programs.back().words.emplace_back(words[i]);
        }
    }
    try {
        const auto rounds = std::stoul(count > 3 ? words[1] : "");
        measure(rounds, linesOf(words[2]), programs);
    } catch (const std::exception& error) {
        std::cerr << "side_by_side: " << error.what() << '\n';
        return 2;
    }
    return 0;
}
