#include "platform/standard_input.h"

#include <cstdio>

namespace ktr {

void readInputToItsEnd()
{
    while (std::fgetc(stdin) != EOF) {
    }
}

} // namespace ktr
