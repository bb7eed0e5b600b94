#include "platform/table_file.h"

#include "platform/csv.h"
#include "platform/files.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QStringDecoder>

namespace ktr {

namespace {

/// A phone number has one, too (csvCell).
QString withoutGuard(const QString &cell)
{
    constexpr QStringView guarded = u"+-=@";
    return cell.size() > 1 && cell[0] == u'\'' && guarded.contains(cell[1]) ? cell.sliced(1) : cell;
}

} // namespace

Status readTable(const QString &path, Table &table)
{
    QString text;
    if (Status read = readTableText(path, text); !read) {
        return read;
    }
    const std::optional<int> unbalanced =
        readCsv(text, csvSeparator(text), [&table](const QStringList &read, int line) {
            QStringList cells;
            for (const QString &cell : read) {
                cells += withoutGuard(cell);
            }
            if (table.titles.isEmpty()) {
                table.titles = cells;
            } else {
                table.rows += {line, cells};
            }
            return true;
        });
    if (unbalanced) {
        return fileFailure(path, unbalancedQuote(*unbalanced));
    }
    return table.rows.isEmpty()
               ? fileFailure(
                     path, QCoreApplication::translate("TableFile", "there is no row below a line of titles"))
               : Status::done();
}

QString unbalancedQuote(int line)
{
    return QCoreApplication::translate("TableFile", "line %1 has a quotation mark without its counterpart")
        .arg(line);
}

Status readTableText(const QString &path, QString &text)
{
    constexpr qint64 largest = qint64{16} << 20;
    QByteArray bytes;
    Status read = readFile(path, bytes, largest);
    if (!read) {
        return read;
    }
    // A byte-order mark tells; without one, what is no UTF-8 is of an older program.
    QStringDecoder decoder(QStringConverter::encodingForData(bytes).value_or(QStringConverter::Utf8),
                           QStringConverter::Flag::Stateless);
    const QString decoded = decoder(bytes);
    text = decoder.hasError() ? fromWindows1252(bytes) : decoded;
    return Status::done();
}

} // namespace ktr
