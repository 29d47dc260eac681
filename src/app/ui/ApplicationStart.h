#pragma once

namespace brightsweep {

/// True where there is a display to show windows on.
bool hasDisplay();

/// The resident program, from its arguments to its end: the exit status. "--activate" shows the
/// window in any case. A second start asks the first one to show itself and ends with 0, or with 1
/// where that one hangs. `terminal` is the descriptor of whoever started the program; what they
/// must know goes there, since standard error may be the log by now. Nothing that it makes is
/// destroyed: the caller ends the process without destructors.
int runApplication(int argc, char **argv, int terminal);

} // namespace brightsweep
