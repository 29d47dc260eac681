#pragma once

#include "foundation/FileDescriptor.h"
#include "helper/Frame.h"

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brightsweep::test {

/// A running brightsweep-helper of this build, spoken to in raw bytes.
class HelperProcess {
public:
    /// Further variables of its environment, as "NAME=value".
    explicit HelperProcess(const std::vector<std::string> &environment = {});
    ~HelperProcess() { finish(); }
    HelperProcess(const HelperProcess &) = delete;
    HelperProcess &operator=(const HelperProcess &) = delete;

    const helper::Token &token() const { return m_token; }
    void sendBytes(std::string_view bytes);
    /// Nothing when the stream has ended.
    std::optional<helper::Reply> reply();
    /// Sends a removal with the right token and waits for its reply.
    helper::Reply remove(const helper::RemovePath &removal);
    /// The same for a path below a folder, which is taken as it is now.
    helper::Reply remove(const std::filesystem::path &root, const std::string &relative);
    /// Ends the input and gives the exit status.
    int finish();

private:
    std::optional<std::string> payload();

    FileDescriptor m_stream;
    pid_t m_process = 0;
    helper::FrameBuffer m_received;
    helper::Token m_token{};
};

/// A removal below a folder, which is taken as it is now.
helper::RemovePath removalBelow(const std::filesystem::path &root, const std::string &relative);

/// Gives the calling process mounts of its own, once.
void enterPrivateMounts();

} // namespace brightsweep::test
