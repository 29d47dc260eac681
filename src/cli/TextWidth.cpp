#include "cli/TextWidth.h"

#include <QString>

#include <locale.h>
#include <wchar.h>

namespace brightsweep::cli {

namespace {

constexpr char ellipsis[] = "\u2026";

// The system's table goes by the locale, which need not be one of UTF-8.
class Utf8Characters {
public:
    Utf8Characters() : m_before(::uselocale(utf8())) {}
    ~Utf8Characters() { ::uselocale(m_before); }
    Utf8Characters(const Utf8Characters &) = delete;
    Utf8Characters &operator=(const Utf8Characters &) = delete;

    static std::size_t width(char32_t character) {
        if (character < 0x80)
            return 1;
        // What the table does not know had better be taken for wide.
        const int columns = ::wcwidth(wchar_t(character));
        return columns < 0 ? 2 : std::size_t(columns);
    }

private:
    static locale_t utf8() {
        static const locale_t locale = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return locale;
    }
    locale_t m_before;
};

} // namespace

std::size_t widthOf(std::string_view utf8) {
    const Utf8Characters characters;
    std::size_t width = 0;
    for (const char32_t character :
         QString::fromUtf8(utf8.data(), qsizetype(utf8.size())).toStdU32String())
        width += characters.width(character);
    return width;
}

std::string cutToWidth(std::string_view utf8, std::size_t columns) {
    if (widthOf(utf8) <= columns)
        return std::string(utf8);
    const Utf8Characters characters;
    std::u32string kept;
    std::size_t width = 1; // of the ellipsis
    for (const char32_t character :
         QString::fromUtf8(utf8.data(), qsizetype(utf8.size())).toStdU32String()) {
        width += characters.width(character);
        if (width > columns)
            break;
        kept += character;
    }
    return columns == 0 ? std::string() : QString::fromStdU32String(kept).toStdString() + ellipsis;
}

} // namespace brightsweep::cli
