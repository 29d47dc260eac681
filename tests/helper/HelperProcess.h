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
    std::optional<helper::Replies> replies();
    void sendRequest(helper::Verb verb, const helper::RemoveItems &removal = {});
    /// Sends a removal with the right token and waits for its replies.
    helper::Replies remove(const helper::RemoveItems &removal);
    /// The reply for one item below a folder; both are taken as they are now.
    helper::Reply remove(const std::filesystem::path &root, const std::string &relative);
    pid_t process() const { return m_process; }
    int stream() const { return m_stream.get(); }
    /// Ends the input and gives the exit status.
    int finish();

private:
    std::optional<std::string> payload();

    FileDescriptor m_stream;
    pid_t m_process = 0;
    helper::FrameBuffer m_received;
    helper::Token m_token{};
};

/// Items of a directory below a folder, all taken as they are now.
helper::RemoveItems removalOf(const std::filesystem::path &root, const std::string &way,
                              const std::vector<std::string> &names);
/// The same for one item, by the way to it.
helper::RemoveItems removalBelow(const std::filesystem::path &root, const std::string &relative);

} // namespace brightsweep::test
