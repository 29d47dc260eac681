#pragma once

namespace brightsweep::test {

/// A locale with a decimal comma for the process, as Qt sets that of the user, until the end of
/// the scope. Throws where the system has no such locale and cannot make one.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();
    CommaLocale(const CommaLocale &) = delete;
    CommaLocale &operator=(const CommaLocale &) = delete;
};

} // namespace brightsweep::test
