#pragma once

#include <cstdio>

namespace ktr {

/// Whether a stream shows its text to a person.
bool isTerminal(std::FILE *stream);

/// The width in characters of the terminal behind a stream, 80 where it does not tell.
int terminalWidth(std::FILE *stream);

/// A reader of this program's output that goes away must not end the program in the middle of its work.
void ignoreClosedOutput();

} // namespace ktr
