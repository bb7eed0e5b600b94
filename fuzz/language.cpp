// Any file as language.ini: texts are bounded, and the same when they are written into a file and read again.

#include "lang/load_texts.h"
#include "lang/text_table.h"
#include "platform/profile_file.h"
#include "support/require.h"

using namespace ktr;

namespace {

TextTable textsOf(const QByteArray &content, const QString &language)
{
    ProfileFile file;
    fuzz::require(bool(file.parse(content)), "no content is of no use");
    TextTable table;
    takeTexts(table, file, language);
    return table;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const QString language = size % 2 == 0 ? QStringLiteral("english") : QStringLiteral("deutsch");
    const TextTable table = textsOf(content, language);
    QString file = QChar(QChar::ByteOrderMark) + u'[' + language + QStringLiteral("]\n");
    for (int number = 1; number <= TextTable::count; ++number) {
        const QString text = table.text(number);
        fuzz::require(text.size() <= 127, "a text is bounded");
        fuzz::require(text.isValidUtf16(), "a text holds whole characters");
        if (!text.isEmpty()) {
            file += QStringLiteral("Text%1=\"").arg(number) + text + QStringLiteral("\"\n");
        }
    }
    const TextTable again = textsOf(file.toUtf8(), language);
    for (int number = 1; number <= TextTable::count; ++number) {
        fuzz::require(again.text(number) == table.text(number), "a text that was written is read again");
    }
    return 0;
}
