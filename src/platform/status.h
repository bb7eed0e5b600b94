#pragma once

#include <QString>

#include <utility>

namespace ktr {

/// What kind of failure it is, as far as anybody acts upon it; messages are for users alone.
enum class Failure {
    Other,
    NoPortFree, ///< no pair of ports is free
};

/// The outcome of an operation on a file or a device: done, or not done with a message for the user.
class [[nodiscard]] Status
{
public:
    static Status done() { return Status(); }
    static Status failed(QString message, Failure kind = Failure::Other)
    {
        return Status(std::move(message), kind);
    }

    explicit operator bool() const { return m_ok; }
    const QString &message() const { return m_message; }

    /// Whether it failed, and in this way.
    bool is(Failure kind) const { return !m_ok && m_kind == kind; }

private:
    Status() = default;
    Status(QString message, Failure kind) : m_message(std::move(message)), m_kind(kind), m_ok(false) {}

    QString m_message;
    Failure m_kind = Failure::Other;
    bool m_ok = true;
};

} // namespace ktr
