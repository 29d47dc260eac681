#include "foundation/Paths.h"

#include "foundation/Identity.h"

#include <QByteArrayView>

#include <algorithm>

namespace brightsweep::paths {

namespace {

constexpr QLatin1String fileScheme("file://");

// Control characters, those of the bidi algorithm included, and line ends.
bool isEscaped(QChar character) {
    switch (character.unicode()) {
    case 0x061c:
    case 0x200e:
    case 0x200f:
    case 0x2028:
    case 0x2029:
        return true;
    default:
        break;
    }
    const auto code = character.unicode();
    return code < 0x20 || (code >= 0x7f && code < 0xa0) || (code >= 0x202a && code <= 0x202e) ||
           (code >= 0x2066 && code <= 0x2069);
}

QString escape(QChar character) {
    if (character == QLatin1Char('\n'))
        return QStringLiteral("\\n");
    const auto code = character.unicode();
    return code < 0x80 ? QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'))
                       : QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
}

} // namespace

QString text(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), qsizetype(bytes.size()));
}

QString display(std::string_view bytes) {
    const QString plain = text(bytes);
    if (std::none_of(plain.begin(), plain.end(), isEscaped))
        return plain;
    QString shown;
    for (const QChar character : plain)
        shown += isEscaped(character) ? escape(character) : QString(character);
    return shown;
}

QString display(const std::string &bytes) {
    return display(std::string_view(bytes));
}

QString display(const std::filesystem::path &path) {
    return display(std::string_view(path.native()));
}

QString displayFromHome(const std::filesystem::path &path) {
    const std::string &bytes = path.native();
    const std::string home(withoutTrailingSlashes(homeFolder().native()));
    const bool isBelow = home.size() > 1 && isSameOrBelow(bytes, home);
    return isBelow ? u'~' + display(std::string_view(bytes).substr(home.size())) : display(bytes);
}

bool isValidUtf8(std::string_view bytes) {
    return QByteArrayView(bytes.data(), qsizetype(bytes.size())).isValidUtf8();
}

QVariant toVariant(const std::filesystem::path &path) {
    return QByteArray::fromStdString(path.native());
}

std::filesystem::path fromVariant(const QVariant &value) {
    return value.toByteArray().toStdString();
}

std::filesystem::path fromOption(std::string_view option) {
    constexpr std::string_view prefix = "base64:";
    if (!option.starts_with(prefix))
        return std::string(option);
    option.remove_prefix(prefix.size());
    const auto decoded = QByteArray::fromBase64Encoding(
        QByteArray(option.data(), qsizetype(option.size())),
        QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || (*decoded).contains('\0'))
        return {};
    return (*decoded).toStdString();
}

std::filesystem::path join(const std::filesystem::path &directory, std::string_view name) {
    std::string joined = directory.native();
    joined.reserve(joined.size() + 1 + name.size());
    if (!joined.empty() && joined.back() != '/')
        joined += '/';
    joined += name;
    return joined;
}

std::string lastComponent(const std::filesystem::path &path) {
    const std::string_view bytes = withoutTrailingSlashes(path.native());
    if (bytes == "/")
        return "/";
    const auto slash = bytes.rfind('/');
    return std::string(slash == bytes.npos ? bytes : bytes.substr(slash + 1));
}

std::filesystem::path parent(const std::filesystem::path &path) {
    const std::string_view bytes = withoutTrailingSlashes(path.native());
    const auto slash = bytes.rfind('/');
    if (slash == bytes.npos)
        return {};
    return std::string(withoutTrailingSlashes(bytes.substr(0, slash == 0 ? 1 : slash)));
}

std::string extension(const std::filesystem::path &path) {
    const std::string name = lastComponent(path);
    const auto point = name.rfind('.');
    if (point == name.npos || point == 0 || point + 1 == name.size())
        return {};
    return name.substr(point + 1);
}

std::string percentEncoded(std::string_view bytes) {
    return QByteArray(bytes.data(), qsizetype(bytes.size())).toPercentEncoding("/").toStdString();
}

std::string percentDecoded(std::string_view words) {
    return QByteArray::fromPercentEncoding(QByteArray(words.data(), qsizetype(words.size())))
        .toStdString();
}

QString toFileUrl(const std::filesystem::path &path) {
    return fileScheme + QString::fromStdString(percentEncoded(path.native()));
}

std::optional<std::filesystem::path> fromFileUrl(const QString &url) {
    const qsizetype path = url.startsWith(fileScheme) ? url.indexOf(u'/', fileScheme.size()) : -1;
    if (path < 0)
        return std::nullopt;
    return percentDecoded(url.mid(path).toStdString());
}

} // namespace brightsweep::paths
