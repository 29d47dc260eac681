#pragma once

#include <unistd.h>

#include <utility>

namespace brightsweep {

/// Owns one POSIX file descriptor; closes it at the end. Move only.
class FileDescriptor {
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor &&other) noexcept
        : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor &operator=(FileDescriptor &&other) noexcept {
        if (this != &other) {
            reset();
            m_descriptor = std::exchange(other.m_descriptor, -1);
        }
        return *this;
    }
    ~FileDescriptor() { reset(); }

    explicit operator bool() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    int release() { return std::exchange(m_descriptor, -1); }
    void reset() {
        if (m_descriptor >= 0)
            ::close(std::exchange(m_descriptor, -1));
    }

private:
    int m_descriptor = -1;
};

} // namespace brightsweep
