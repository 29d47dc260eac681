#pragma once

#include "support/ChildProcess.h"

#include <nlohmann/json.hpp>

namespace brightsweep::test {

using Words = std::vector<std::string>;

inline Words together(Words words, const Words &more) {
    words.insert(words.end(), more.begin(), more.end());
    return words;
}

/// A document that the command line printed. Empty, with a failure of the test, where it is not
/// whole, does not begin with the schema and the command, or does not end with its line.
nlohmann::json documentOf(const std::string &output, const std::string &command);

/// The exact path of an item in a document.
std::string exactPath(const nlohmann::json &item);

/// The paths in a list ("removed", "failed", "items") of all categories of a document, in order.
std::vector<std::string> pathsIn(const nlohmann::json &document, const char *list);

#ifdef BRIGHTSWEEP_CLI
/// Runs the program for the command line with these words.
inline ChildResult cli(const Words &words, RunAs user = RunAs::Caller) {
    return runProgram(together({BRIGHTSWEEP_CLI}, words), {}, user);
}
#endif

} // namespace brightsweep::test
