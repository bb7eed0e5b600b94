#pragma once

namespace ktr {

/// As long as it is there the display neither goes dark nor shows a screen saver, on systems with a call for
/// that; elsewhere it does nothing. To be made and destroyed on one thread.
class DisplayAwake
{
public:
    DisplayAwake();
    ~DisplayAwake();
    DisplayAwake(const DisplayAwake &) = delete;
    DisplayAwake &operator=(const DisplayAwake &) = delete;
};

} // namespace ktr
