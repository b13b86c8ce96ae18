#include "standalone/manifest/ManifestFile.hpp"

#include "standalone/files/Descriptor.hpp"
#include "standalone/text/PathText.hpp"
#include "standalone/text/Text.hpp"

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tessgen::standalone {

namespace {

constexpr std::size_t largestManifest = std::size_t{16} << 20U; // so that a wrong file does not fill the memory

std::runtime_error failure(const std::string& path, const std::string& what) {
    return std::runtime_error(path + ": " + what);
}

std::runtime_error unreadable(const std::string& path, int error) {
    return failure(path, "the manifest cannot be read: " + std::generic_category().message(error));
}

// A file that is open for reading, or absent.
class InputFile {
public:
    explicit InputFile(const std::string& path)
        // Without O_NONBLOCK, opening a FIFO would wait for a writer.
        : path_(path), descriptor_(open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC)) {
        const int error = errno;
        if (!isThere() && error != ENOENT && error != ENOTDIR) {
            throw unreadable(path, error);
        }
    }

    [[nodiscard]] bool isThere() const { return descriptor_.isOpen(); }

    [[nodiscard]] mode_t mode() const {
        struct stat status {};
        if (fstat(descriptor_.get(), &status) != 0) {
            throw unreadable(path_, errno);
        }
        return status.st_mode;
    }

    [[nodiscard]] std::string readAll() const {
        std::string text;
        std::array<char, 16384> block; // NOLINT(*-member-init): filled by the system
        while (true) {
            const ssize_t count = read(descriptor_.get(), block.data(), block.size());
            if (count > 0) {
                text.append(block.data(), static_cast<std::size_t>(count));
                if (text.size() > largestManifest) {
                    throw failure(path_, "larger than 16 MiB, which no manifest needs to be");
                }
            } else if (count == 0) {
                return text;
            } else if (errno != EINTR) {
                throw unreadable(path_, errno);
            }
        }
    }

private:
    std::string path_;
    Descriptor descriptor_;
};

std::string realPath(const std::string& path) {
    struct Free {
        void operator()(char* text) const noexcept { std::free(text); } // NOLINT: realpath allocates so
    };
    const std::unique_ptr<char, Free> real(realpath(path.c_str(), nullptr));
    if (!real) {
        throw unreadable(path, errno);
    }
    return real.get();
}

ManifestFile readFile(const InputFile& file, mode_t mode, const std::string& path) {
    if (!S_ISREG(mode)) {
        throw failure(path, "not a regular file: a manifest, or the folder that holds it, is expected");
    }
    ManifestFile manifest{realPath(path), file.readAll()};
    if (!isUTF8(manifest.path)) {
        throw failure(manifest.path, "the manifest's path is not UTF-8: name its folders so, or move it");
    }
    return manifest;
}

} // namespace

ManifestFile readManifestFile(const std::string& fileOrFolder) {
    if (fileOrFolder.empty() || fileOrFolder.find('\0') != std::string::npos) {
        throw std::runtime_error("the path of the manifest is empty or holds the character 0");
    }
    const InputFile given(fileOrFolder);
    if (!given.isThere()) {
        std::error_code unknown;
        const bool isLink = std::filesystem::is_symlink(fileOrFolder, unknown);
        throw failure(fileOrFolder, std::string(isLink ? "a link that leads nowhere" : "no such file or folder")
                                        + ": a manifest (" + manifestName
                                        + "), or the folder that holds it, is expected");
    }
    if (const mode_t mode = given.mode(); !S_ISDIR(mode)) {
        return readFile(given, mode, fileOrFolder);
    }
    const std::string path = joinPath(fileOrFolder, manifestName);
    const InputFile file(path);
    if (!file.isThere()) {
        throw failure(fileOrFolder, std::string("the folder holds no manifest (") + manifestName + ")");
    }
    return readFile(file, file.mode(), path);
}

} // namespace tessgen::standalone
