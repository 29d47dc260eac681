#pragma once

#include "foundation/FileDescriptor.h"

#include <filesystem>
#include <string>

namespace brightsweep::test {

/// Collects what is logged while it lives.
class LogCapture {
public:
    LogCapture();
    ~LogCapture();
    std::string text() const;
    const std::filesystem::path &file() const { return m_file; }
    bool has(std::string_view words) const { return text().find(words) != std::string::npos; }

private:
    std::filesystem::path m_file;
    FileDescriptor m_descriptor;
    int m_before;
};

} // namespace brightsweep::test
