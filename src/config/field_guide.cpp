#include "config/field_guide.h"

#include "config/comparison.h"

#include <QCoreApplication>
#include <QHash>

#include <algorithm>
#include <type_traits>

namespace ktr {

namespace {

// The page of a record

QString guidePageOf(const FileInfo &)
{
    return QStringLiteral("info");
}
QString guidePageOf(const GsmSettings &)
{
    return QStringLiteral("gsm");
}
QString guidePageOf(const Administrator &)
{
    return QStringLiteral("gsm");
}
QString guidePageOf(const LimitValue &)
{
    return QStringLiteral("limit-values");
}
QString guidePageOf(const SwitchPoint &)
{
    return QStringLiteral("switch-points");
}
QString guidePageOf(const EthernetSettings &)
{
    return QStringLiteral("ethernet");
}
template <class Record> QString guidePageOf(const Record &)
{
    return QStringLiteral("ip");
}

QString inGuideWords(const char *text)
{
    return QCoreApplication::translate("Fields", text);
}

/// `value` is what "new" has set, as the pages show it.
template <class Record> QString guideWhenNew(const Field<Record> &field, const QString &value)
{
    if (field.whenNew.keepsValue()) {
        return inGuideWords(QT_TRANSLATE_NOOP("Fields", "stays as it was"));
    }
    if (field.whenNew.compute != nullptr) {
        return inGuideWords(QT_TRANSLATE_NOOP("Fields", "filled in by the program"));
    }
    return value.isEmpty() ? inGuideWords(QT_TRANSLATE_NOOP("Fields", "empty")) : value;
}

/// Where the file keeps a field of the records from `first` to `last`.
QString placeInFile(const Group &group, const char16_t *xmlName, int first, int last)
{
    const bool isAttribute = group.form == Form::Attributes;
    QString place = QString::fromUtf16(isAttribute ? group.element : xmlName);
    if (group.numbered) {
        place += QString::number(first);
        if (last > first) {
            place += QStringLiteral("…") + QString::number(last);
        }
    }
    return isAttribute ? place + u' ' + QStringView(xmlName) : place;
}

/// The field's anchor names none of its controls alone.
QString guideAnchor(const ControlName &control)
{
    return QString::fromLatin1(control.name);
}

/// Gathers the fields while records are visited, those of one group one after the other.
class Guide
{
public:
    explicit Guide(const TextTable &texts) : m_texts(texts)
    {
        makeNew(m_new, Environment());
        for (const ComparedField &field : describeConfiguration(m_new, {texts, m_locale})) {
            m_values.insert(field.key, field.mine);
        }
    }

    QList<GuideField> fields()
    {
        visitRecords(std::as_const(m_new),
                     [this]<class ConstRecord>(const Group &group, ConstRecord &record, int index) {
                         using Record = std::remove_const_t<ConstRecord>;
                         for (const Field<Record> &field : fieldsOf<Record>()) {
                             if (field.appliesTo(index)) {
                                 add(group, field, guidePageOf(record), index);
                             }
                         }
                     });
        std::ranges::stable_sort(m_fields, {}, [pages = guidePages()](const GuideField &field) {
            return pages.indexOf(field.page);
        });
        return m_fields;
    }

private:
    template <class Record>
    void add(const Group &group, const Field<Record> &field, const QString &page, int index)
    {
        const QString anchor = guideAnchor(field.control);
        auto guide = std::ranges::find(m_fields, anchor, &GuideField::anchor);
        if (guide == m_fields.end()) {
            m_fields +=
                GuideField{.page = page,
                           .anchor = anchor,
                           .label = labelText(field.label, m_texts).trimmed(),
                           .meaning = meaningText(field),
                           .values = valuesText(field),
                           .whenNew = guideWhenNew(field, m_values[group.place(field.xmlName, index)]),
                           .places = {}};
            guide = std::prev(m_fields.end());
        }
        // The first record that has a field begins a place, each later one makes it longer.
        const QString key = placeInFile(group, field.xmlName, 0, 0);
        const auto begun = m_first.constFind(key);
        const int first = begun == m_first.cend() ? *m_first.insert(key, index) : *begun;
        if (index > first) {
            guide->places.removeAll(placeInFile(group, field.xmlName, first, index - 1));
        }
        guide->places += placeInFile(group, field.xmlName, first, index);
    }

    const TextTable &m_texts;
    const QLocale m_locale = QLocale::c();
    Configuration m_new;
    QHash<QString, QString> m_values; ///< after "new", by the place in the file
    QHash<QString, int> m_first;      ///< the first record that has the field of this place
    QList<GuideField> m_fields;
};

/// A text as it stands, whatever it means in Markdown.
QString markdownLiteral(const QString &text)
{
    QString escaped;
    for (const QChar c : text) {
        if (QStringView(u"\\`*_<>|[]#").contains(c)) {
            escaped += u'\\';
        }
        escaped += c;
    }
    return escaped;
}

QString guideRow(const QStringList &cells)
{
    return QStringLiteral("| %1 |\n").arg(cells.join(QLatin1String(" | ")));
}

} // namespace

QStringList guidePages()
{
    return {QStringLiteral("gsm"),           QStringLiteral("ip"),   QStringLiteral("limit-values"),
            QStringLiteral("switch-points"), QStringLiteral("info"), QStringLiteral("ethernet")};
}

QList<GuideField> guideFields(const TextTable &texts)
{
    return Guide(texts).fields();
}

QString guideTable(const QString &page, const TextTable &texts)
{
    QString table = guideRow({inGuideWords(QT_TRANSLATE_NOOP("Fields", "Field")),
                              inGuideWords(QT_TRANSLATE_NOOP("Fields", "Meaning")),
                              inGuideWords(QT_TRANSLATE_NOOP("Fields", "Values")),
                              inGuideWords(QT_TRANSLATE_NOOP("Fields", "After \"new\"")),
                              inGuideWords(QT_TRANSLATE_NOOP("Fields", "In the file"))});
    table += QLatin1String("|---|---|---|---|---|\n");
    for (const GuideField &field : guideFields(texts)) {
        if (field.page == page) {
            table += guideRow({QStringLiteral("[%1](#%2)").arg(markdownLiteral(field.label), field.anchor),
                               markdownLiteral(field.meaning), markdownLiteral(field.values),
                               markdownLiteral(field.whenNew),
                               QStringLiteral("`%1`").arg(field.places.join(QLatin1String("`, `")))});
        }
    }
    return table;
}

} // namespace ktr
