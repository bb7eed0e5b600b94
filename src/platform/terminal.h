#pragma once

#include <cstdio>

namespace ktr {

/// Whether a stream shows its text to a person.
bool isTerminal(std::FILE *stream);

/// The width in characters of the terminal behind a stream, 80 where it does not tell.
int terminalWidth(std::FILE *stream);

/// Makes the console show UTF-8, and a reader of the output that goes away no reason to end the program in
/// the middle of its work. To be called at the start of a program that prints.
void prepareConsole();

} // namespace ktr
