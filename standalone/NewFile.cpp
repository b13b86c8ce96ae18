#include "standalone/NewFile.hpp"

#include <cerrno>
#include <cstddef>
#include <fcntl.h>
#include <filesystem>
#include <random>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

namespace {

std::string realPath(const std::string& target) {
    std::error_code absent;
    const auto real = std::filesystem::canonical(target, absent);
    return absent ? target : real.string();
}

std::string folderOf(const std::string& path) {
    const auto separator = path.rfind('/');
    return separator == std::string::npos ? "./" : path.substr(0, separator + 1);
}

// A hidden name beside `target`, another one at each call; short, since the target's own may be as long as any can be.
std::string nameBeside(const std::string& target) {
    return folderOf(target) + ".kelwhich-new-" + std::to_string(std::random_device()());
}

// Without this, a power failure may bring the old file back, which is whole as well; hence errors do not matter.
void syncFolder(const std::string& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

} // namespace

NewFile::NewFile(const std::string& target) : target_(realPath(target)) {
    struct stat status {};
    if (stat(target_.c_str(), &status) == 0 && !S_ISREG(status.st_mode)) {
        throw std::runtime_error(target_ + ": is not a regular file; name the file to be written");
    }
    do {
        path_ = nameBeside(target_);
        descriptor_ = open(path_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
    } while (descriptor_ < 0 && errno == EEXIST);
    if (descriptor_ < 0) {
        fail(errno);
    }
}

NewFile::~NewFile() {
    if (descriptor_ >= 0) {
        close(descriptor_);
    }
    if (!path_.empty()) {
        unlink(path_.c_str());
    }
}

void NewFile::append(std::string_view text) { // NOLINT(readability-make-member-function-const): it changes the file
    while (!text.empty()) {
        const auto written = write(descriptor_, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            fail(errno);
        }
        text.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
}

void NewFile::replaceTarget() {
    if (fsync(descriptor_) != 0) {
        fail(errno);
    }
    if (close(std::exchange(descriptor_, -1)) != 0 || rename(path_.c_str(), target_.c_str()) != 0) {
        fail(errno);
    }
    path_.clear();
    syncFolder(folderOf(target_));
}

void NewFile::fail(const std::string& cause) const {
    throw std::runtime_error(target_ + ": cannot be written, and is as it was: " + cause);
}

void NewFile::fail(int error) const {
    fail(std::generic_category().message(error));
}

} // namespace tessgen::standalone
