// A folder of a test's own, gone with all that it holds when the object dies.
//
// Paths below it are given relative to it; folders above them are made as needed.
#pragma once

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tessgen::test {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = std::filesystem::canonical(std::filesystem::temp_directory_path()) / "kelwhich-XXXXXX";
        if (mkdtemp(pattern.data()) == nullptr) {
            throw std::system_error(errno, std::generic_category(), pattern);
        }
        path_ = pattern;
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    // The real path, without a trailing "/".
    const std::string& path() const { return path_; }
    std::string path(const std::string& below) const { return path_ + "/" + below; }

    // Writes a file, in place of the one that is there. Returns its path.
    std::string write(const std::string& below, const std::string& content = "") const {
        std::string file = withParents(below);
        std::ofstream out(file, std::ios::binary);
        if (!out.write(content.data(), static_cast<std::streamsize>(content.size())).flush()) {
            throw std::runtime_error("cannot write " + file);
        }
        return file;
    }
    std::string makeFolder(const std::string& below) const {
        std::filesystem::create_directories(path(below));
        return path(below);
    }
    // Makes a symbolic link with the given text, which need not lead anywhere.
    std::string link(const std::string& below, const std::string& target) const {
        std::filesystem::create_symlink(target, withParents(below));
        return path(below);
    }

private:
    std::string withParents(const std::string& below) const {
        std::filesystem::create_directories(std::filesystem::path(path(below)).parent_path());
        return path(below);
    }

    std::string path_;
};

} // namespace tessgen::test
