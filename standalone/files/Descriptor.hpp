// Owns one descriptor of the process and closes it at its end. errno stays as it was.
#pragma once

#include <cerrno>
#include <unistd.h>
#include <utility>

namespace tessgen::standalone {

class Descriptor {
public:
    // What open and its kin returned: negative when they failed, and then there is nothing to close.
    explicit Descriptor(int descriptor = -1) noexcept : descriptor_(descriptor) {}
    Descriptor(Descriptor&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(descriptor_, other.descriptor_);
        return *this;
    }
    ~Descriptor() {
        if (isOpen()) {
            const int error = errno;
            close(descriptor_);
            errno = error;
        }
    }

    [[nodiscard]] bool isOpen() const noexcept { return descriptor_ >= 0; }
    [[nodiscard]] int get() const noexcept { return descriptor_; }

private:
    int descriptor_;
};

} // namespace tessgen::standalone
