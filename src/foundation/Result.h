#pragma once

#include <system_error>
#include <type_traits>
#include <utility>
#include <variant>

namespace brightsweep {

/// A value or the error that stood in its way.
template <typename T>
class [[nodiscard]] Result {
public:
    Result(T value) : m_state(std::in_place_index<0>, std::move(value)) {}
    Result(std::error_code error) : m_state(std::in_place_index<1>, error) {}
    Result(std::errc error) : Result(std::make_error_code(error)) {}
    template <typename Error>
    requires std::is_error_code_enum_v<Error> Result(Error error)
        : Result(std::error_code(error)) {}

    explicit operator bool() const { return m_state.index() == 0; }
    /// Only with a value.
    T &operator*() & { return *std::get_if<0>(&m_state); }
    const T &operator*() const & { return *std::get_if<0>(&m_state); }
    T &&operator*() && { return std::move(*std::get_if<0>(&m_state)); }
    T *operator->() { return std::get_if<0>(&m_state); }
    const T *operator->() const { return std::get_if<0>(&m_state); }
    T value_or(T otherwise) const { return *this ? **this : std::move(otherwise); }
    /// An empty code with a value.
    std::error_code error() const {
        const auto *error = std::get_if<1>(&m_state);
        return error ? *error : std::error_code();
    }

private:
    std::variant<T, std::error_code> m_state;
};

} // namespace brightsweep
