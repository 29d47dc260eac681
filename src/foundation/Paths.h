#pragma once

#include "foundation/PathBytes.h"

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace brightsweep {

/// Paths are bytes: everything but "/" and NUL may stand in a name. Text is made only for showing.
namespace paths {

/// The UTF-8 reading of a path, with each invalid byte as U+FFFD: for what is read by machines.
QString text(std::string_view bytes);

/// The text to show for a path: its reading with line ends, other control characters and marks of
/// direction escaped ("\n", "\x1b", "\u202e"), so that none breaks or turns the line that it stands
/// in. Letters that run from right to left stay.
QString display(std::string_view bytes);
QString display(const std::string &bytes);
QString display(const std::filesystem::path &path);

/// The same with "~" for the home.
QString displayFromHome(const std::filesystem::path &path);

/// True when the bytes are valid UTF-8, so that text() loses nothing.
bool isValidUtf8(std::string_view bytes);

/// The exact bytes, as a notification's payload carries them, and back.
QVariant toVariant(const std::filesystem::path &path);
std::filesystem::path fromVariant(const QVariant &value);

/// The exact bytes of a text that names a file ("base64:…" holds the bytes encoded, any other
/// text is taken as it stands). An empty path where the encoding is wrong or holds a NUL.
std::filesystem::path fromOption(std::string_view option);

/// `directory` + "/" + `name`, with no second slash where the directory ends in one. The name may
/// hold any bytes; unlike operator/ a name never replaces the directory.
std::filesystem::path join(const std::filesystem::path &directory, std::string_view name);

/// The last component without trailing slashes; "/" for the root.
std::string lastComponent(const std::filesystem::path &path);
/// The path without its last component; "/" for a direct child of the root.
std::filesystem::path parent(const std::filesystem::path &path);
/// The text behind the last point of the last component, without the point; empty where there is
/// none, where the point comes first or last.
std::string extension(const std::filesystem::path &path);

/// Bytes with all that a URL may not hold as "%XX", the slash left as it is, and back.
std::string percentEncoded(std::string_view bytes);
std::string percentDecoded(std::string_view words);

/// The exact bytes of an absolute path as a file: URL, and back. No path of what is no local file.
QString toFileUrl(const std::filesystem::path &path);
std::optional<std::filesystem::path> fromFileUrl(const QString &url);

} // namespace paths
} // namespace brightsweep
