#pragma once

class QRadioButton;

namespace ktr {

/// Lets the Tab key come to the chosen one of the radio buttons that this one belongs to, to the first while
/// none is chosen; the arrow keys choose from there. Without it Tab comes to the first, where arrows only
/// move on.
void letTabFindTheChosen(QRadioButton *button);

} // namespace ktr
