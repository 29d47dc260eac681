#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

namespace brightsweep::test {

/// Another process that holds a record lock on the whole of a file while this lives.
class LockHolder {
public:
    explicit LockHolder(const std::filesystem::path &file) {
        int ready[2];
        int done[2];
        if (::pipe2(ready, O_CLOEXEC) != 0 || ::pipe2(done, O_CLOEXEC) != 0)
            throw std::runtime_error("pipe2");
        m_process = ::fork();
        char byte = 0;
        if (m_process == 0) {
            ::close(done[1]);
            struct flock lock {};
            lock.l_type = F_WRLCK;
            if (::fcntl(::open(file.c_str(), O_RDWR), F_SETLK, &lock) == 0 &&
                ::write(ready[1], "x", 1) == 1)
                ::_exit(int(::read(done[0], &byte, 1)));
            ::_exit(1);
        }
        ::close(ready[1]);
        ::close(done[0]);
        m_done = done[1];
        const bool held = ::read(ready[0], &byte, 1) == 1;
        ::close(ready[0]);
        if (!held)
            throw std::runtime_error("no lock on " + file.native());
    }
    ~LockHolder() {
        ::close(m_done);
        ::waitpid(m_process, nullptr, 0);
    }
    LockHolder(const LockHolder &) = delete;
    LockHolder &operator=(const LockHolder &) = delete;

private:
    pid_t m_process = 0;
    int m_done = -1;
};

} // namespace brightsweep::test
