#pragma once

#include <QtGlobal>

namespace ktr {

/// A socket of a library that waits for its other side for as long as that takes, held so that another thread
/// can end the waiting. Not on every system; time-outs alone end it there.
class HeldSocket
{
public:
    HeldSocket() = default;
    ~HeldSocket() { release(); }
    Q_DISABLE_COPY_MOVE(HeldSocket)

    /// From a descriptor that stays its owner's; a negative one is none.
    void hold(int descriptor);
    void release();
    /// Whoever waits for the other side learns that the connection has ended.
    void end() const;

private:
    int m_descriptor = -1; ///< another one of the same socket: that of its owner may be closed any time
};

} // namespace ktr
