#pragma once

class QWidget;

namespace ktr {

/// Makes a control take the wheel only while it has the focus, so that scrolling a page changes no value.
void ignoreWheelUnlessFocused(QWidget *control);

} // namespace ktr
