#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <string_view>

namespace ktr {

template <class Number> Number numberAt(const char *at)
{
    return qFromLittleEndian<Number>(at);
}

/// Takes fields from bytes one after another; a text is its length in four bytes and its bytes. Once a field
/// reaches beyond the end all are empty.
class FieldReader
{
public:
    explicit FieldReader(QByteArrayView bytes) : m_rest(bytes) {}

    template <class Number> Number number()
    {
        const QByteArrayView field = take(sizeof(Number));
        return field.isEmpty() ? Number{} : numberAt<Number>(field.data());
    }
    std::string_view text()
    {
        const QByteArrayView field = take(number<quint32>());
        return {field.data(), static_cast<std::size_t>(field.size())};
    }
    bool atEnd() const { return m_rest.isEmpty(); }
    bool isSound() const { return m_isSound; }

private:
    QByteArrayView take(qsizetype size)
    {
        m_isSound = m_isSound && size <= m_rest.size();
        if (!m_isSound) {
            return {};
        }
        const QByteArrayView field = m_rest.first(size);
        m_rest = m_rest.sliced(size);
        return field;
    }

    QByteArrayView m_rest;
    bool m_isSound = true;
};

} // namespace ktr
