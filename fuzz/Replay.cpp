// Runs a fuzz target without libFuzzer. Usage: PROGRAM FILE-or-FOLDER...
#include "fuzz/Fuzz.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> filesOf(const fs::path& path) {
    if (!fs::is_directory(path)) {
        return {path};
    }
    const fs::directory_iterator entries(path);
    return {begin(entries), end(entries)};
}

} // namespace

int main(int count, char** words) {
    std::size_t inputs = 0;
    for (int i = 1; i < count; ++i) {
        for (const auto& file : filesOf(words[i])) {
            std::cout << file.string() << std::endl; // NOLINT(performance-avoid-endl): tells which one it stopped at
            std::ifstream in(file, std::ios::binary);
            const std::string bytes{std::istreambuf_iterator<char>(in), {}};
            const std::vector<std::uint8_t> exact(bytes.begin(), bytes.end()); // so that reading beyond it shows
            LLVMFuzzerTestOneInput(exact.data(), exact.size());
            ++inputs;
        }
    }
    std::cout << inputs << " inputs\n";
    return inputs == 0 ? 1 : 0;
}
