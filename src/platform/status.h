#pragma once

#include <QString>

#include <utility>

namespace ktr {

/// The outcome of an operation on a file or a device: done, or not done with a message for the user.
class [[nodiscard]] Status
{
public:
    static Status done() { return Status(); }
    static Status failed(QString message) { return Status(std::move(message)); }

    explicit operator bool() const { return m_ok; }
    const QString &message() const { return m_message; }

private:
    Status() = default;
    explicit Status(QString message) : m_message(std::move(message)), m_ok(false) {}

    QString m_message;
    bool m_ok = true;
};

} // namespace ktr
