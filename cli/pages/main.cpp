// Writes the man page and the shell completions into a folder.
#include "cli/pages/Pages.hpp"

#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

namespace {

void write(const std::string& file, const std::string& text) {
    std::ofstream out(file, std::ios::binary);
    if (!out.write(text.data(), static_cast<std::streamsize>(text.size())).flush()) {
        throw std::runtime_error("cannot write " + file);
    }
}

} // namespace

int main(int count, char** words) {
    try {
        if (count != 2) {
            throw std::runtime_error("usage: kelwhich_pages FOLDER");
        }
        const std::string folder = words[1];
        write(folder + "/kelwhich.1", tessgen::cli::manPage());
        write(folder + "/kelwhich", tessgen::cli::bashCompletion());
        write(folder + "/_kelwhich", tessgen::cli::zshCompletion());
        write(folder + "/kelwhich.fish", tessgen::cli::fishCompletion());
        return 0;
    } catch (const std::exception& error) {
        static_cast<void>(std::fprintf(stderr, "%s\n", error.what()));
        return 1;
    }
}
