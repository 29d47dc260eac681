#pragma once

#include "foundation/Result.h"

#include <QJsonObject>

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace brightsweep {

/// What snapd answered.
struct SnapdReply {
    int status = 0;     ///< of HTTP
    QJsonObject object; ///< the document: "result", "change", …
    /// The kind of error that it tells, such as "snap-not-found", and its words.
    std::string errorKind() const;
    std::string errorMessage() const;
};

/// Requests of snapd's REST interface, one connection each: HTTP/1.0 on a Unix socket. Blocks; any
/// thread.
class SnapdSocket {
public:
    explicit SnapdSocket(std::filesystem::path socket) : m_socket(std::move(socket)) {}

    /// An error where there is nobody, no answer within the patience, or one that cannot be read.
    Result<SnapdReply> get(std::string_view path, std::chrono::milliseconds patience) const;
    /// With a question to the user for the rights that it takes, if need be.
    Result<SnapdReply> post(std::string_view path, const QJsonObject &body,
                            std::chrono::milliseconds patience) const;

private:
    Result<SnapdReply> exchange(const std::string &request,
                                std::chrono::milliseconds patience) const;

    std::filesystem::path m_socket;
};

/// Reads a whole answer; an error for what is none.
Result<SnapdReply> parseSnapdReply(std::string_view text);

} // namespace brightsweep
