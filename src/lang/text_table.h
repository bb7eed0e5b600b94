#pragma once

#include <QString>

#include <array>

namespace ktr {

/// The numbers of the texts that the code asks for by name.
enum class Text : int {
    MaximalHolidays = 139,
    MessageTooLong = 149,
};

/// The texts that change with the language, numbered 1 to 200. A new table holds the English ones.
class TextTable
{
public:
    static constexpr int count = 200;

    TextTable() { fillEnglish(); }

    /// Puts the built-in English texts in place; the numbers beyond them keep what they hold.
    void fillEnglish();

    /// Empty for a number outside 1..200.
    QString text(int number) const;
    QString text(Text name) const { return text(static_cast<int>(name)); }

    /// A number outside 1..200 is ignored.
    void setText(int number, const QString &text);

private:
    std::array<QString, count + 1> m_texts; ///< the first is never used
};

} // namespace ktr
