#pragma once

#include <cstdio>

namespace ktr {

/// Lets a program that draws, but shows nothing, go without a display. To be called before its application
/// object is made.
void drawWithoutDisplay();

/// Whether a stream shows its text to a person.
bool isTerminal(std::FILE *stream);

/// The width in characters of the terminal behind a stream, 80 where it does not tell.
int terminalWidth(std::FILE *stream);

/// Makes the console show UTF-8, and a reader of the output that goes away no reason to end the program in
/// the middle of its work. To be called at the start of a program that prints.
void prepareConsole();

/// Lets a program with windows write to the console that it was started from, where the system gives it none.
/// To be called before it prints.
void borrowConsole();

} // namespace ktr
