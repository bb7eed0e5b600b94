#include "config/configuration_file.h"

#include "config/fields.h"
#include "config/xml_document.h"
#include "platform/files.h"
#include "platform/text_rules.h"

#include <QCoreApplication>
#include <QSet>

#include <type_traits>

namespace ktr {

namespace {

constexpr qint64 longestFile = qint64{64} << 20;
const QString konfiguration = QStringLiteral("Konfiguration");
const QString versionElement = QStringLiteral("Version");

using Attributes = QList<std::pair<QString, QString>>;

void writeVersion(XmlWriter &xml, const Configuration &configuration, const Environment &environment)
{
    const QDateTime now = environment.now();
    const QLocale &locale = environment.locale;
    xml.attributesElement(
        versionElement,
        Attributes{{QStringLiteral("Nummer"), programVersion()},
                   {QStringLiteral("Datum"), locale.toString(now.date(), QLocale::ShortFormat)},
                   {QStringLiteral("Zeit"), locale.toString(now.time(), QLocale::ShortFormat)},
                   {QStringLiteral("Version"), configuration.versionText}});
}

void writeHolidays(XmlWriter &xml, const HolidayList &holidays)
{
    for (int index = 0; index < HolidayList::capacity; ++index) {
        xml.textElement(HolidayList::elementName(index), holidays.lines().value(index));
    }
}

/// What a configuration has, by the names of XmlDocument::names(). Of fields that only some records of an
/// array have each record may have them: other versions write them, and nothing of theirs is lost.
QSet<QString> knownNames()
{
    QSet<QString> known{QStringLiteral("KTR"), konfiguration, versionElement};
    for (const char *attribute : {"Nummer", "Datum", "Zeit", "Version"}) {
        known += versionElement + u' ' + QLatin1String(attribute);
    }
    const Configuration any;
    visitRecords(any, [&]<class ConstRecord>(const Group &group, ConstRecord &, int index) {
        for (const auto &field : fieldsOf<std::remove_const_t<ConstRecord>>()) {
            known += group.elementName(field.xmlName, index);
            known += group.place(field.xmlName, index);
        }
    });
    for (int index = 0; index < HolidayList::capacity; ++index) {
        known += HolidayList::elementName(index);
    }
    return known;
}

/// What is in a document and in no configuration. Attributes of an element that is not known go with it.
QStringList unknownNames(const XmlDocument &xml)
{
    static const QSet<QString> known = knownNames();
    QStringList unknown;
    for (const QString &name : xml.names()) {
        const bool isOfUnknown = !unknown.isEmpty() && name.startsWith(unknown.last() + u' ');
        if (!known.contains(name) && !isOfUnknown) {
            unknown += name;
        }
    }
    return unknown;
}

} // namespace

QString programVersion()
{
    return QStringLiteral("%1.%2.%3").arg(KTR_VERSION_MAJOR).arg(KTR_VERSION_MINOR).arg(KTR_VERSION_REVISION);
}

QByteArray writeConfiguration(const Configuration &configuration, const Environment &environment)
{
    const QString root = QStringLiteral("KTR");
    XmlWriter xml;
    xml.open(root);
    writeVersion(xml, configuration, environment);

    Parent parent = Parent::Root;
    visitRecords(configuration, [&]<class ConstRecord>(const Group &group, ConstRecord &record, int index) {
        using Record = std::remove_const_t<ConstRecord>;
        if (group.parent != parent) {
            if (group.parent == Parent::Konfiguration) {
                xml.open(konfiguration);
            } else {
                writeHolidays(xml, configuration.holidays);
                xml.close(konfiguration);
            }
            parent = group.parent;
        }
        Attributes attributes;
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (!field.appliesTo(index)) {
                continue;
            }
            const QString text = fieldText(field, record, environment.locale);
            if (group.form == Form::TextElements) {
                xml.textElement(group.elementName(field.xmlName, index), text);
            } else {
                attributes.append({QString::fromUtf16(field.xmlName), text});
            }
        }
        if (group.form == Form::Attributes) {
            xml.attributesElement(group.elementName(nullptr, index), attributes);
        }
    });
    xml.close(root);
    return xml.document();
}

ReadReport readConfiguration(const QByteArray &document, Configuration &configuration,
                             const Environment &environment)
{
    visitRecords(configuration, [&]<class Record>(const Group &, Record &record, int index) {
        for (const Field<Record> &field : fieldsOf<Record>()) {
            applyPreset(field, record, field.beforeReading, environment, index);
        }
    });

    ReadReport report;
    XmlDocument xml;
    report.document = xml.load(document);
    bool isFound = xml.has(versionElement);

    visitRecords(configuration, [&]<class Record>(const Group &group, Record &record, int index) {
        const bool inAttributes = group.form == Form::Attributes;
        const QString common = inAttributes ? group.elementName(nullptr, index) : QString();
        for (const Field<Record> &field : fieldsOf<Record>()) {
            if (!field.appliesTo(index)) {
                continue;
            }
            const QString element = inAttributes ? common : group.elementName(field.xmlName, index);
            isFound = isFound || xml.has(element);
            const QString text = inAttributes ? xml.attribute(element, field.xmlName) : xml.text(element);
            if (text.isEmpty()) {
                applyPreset(field, record, field.whenEmpty, environment, index);
            } else if (!setFieldText(field, record,
                                     field.whenRead != nullptr ? field.whenRead(text) : text)) {
                report.remarks +=
                    QCoreApplication::translate("Files", "%1: \"%2\" is of no use here, \"%3\" is kept")
                        .arg(group.place(field.xmlName, index), onOneLine(text),
                             fieldText(field, record, environment.locale));
            }
        }
    });

    configuration.holidays.clear();
    for (int index = 0; index < HolidayList::capacity; ++index) {
        isFound = isFound || xml.has(HolidayList::elementName(index));
        configuration.holidays.append(xml.text(HolidayList::elementName(index)));
    }
    configuration.versionText = xml.attribute(versionElement, versionElement);
    report.isConfiguration = isFound;
    report.unknown = unknownNames(xml);
    if (report.document && !isFound) {
        report.remarks +=
            QCoreApplication::translate("Files", "no element of a configuration was found in it");
    }
    return report;
}

Status writeConfigurationFile(const QString &path, const Configuration &configuration,
                              const Environment &environment, QByteArray *written)
{
    const QByteArray document = writeConfiguration(configuration, environment);
    if (written != nullptr) {
        *written = document;
    }
    if (document.size() > longestFile) {
        return fileFailure(path, QCoreApplication::translate("Files", "would be longer than %1 MiB, which is "
                                                                      "not read again")
                                     .arg(longestFile >> 20));
    }
    return replaceFile(path, document, configuration.gsm.pin.isEmpty() ? Readers::AsUsual : Readers::Owner);
}

ReadReport readConfigurationFile(const QString &path, Configuration &configuration,
                                 const Environment &environment)
{
    QByteArray document;
    const Status read = readFile(path, document, longestFile);
    ReadReport report = readConfiguration(document, configuration, environment);
    if (!read) {
        report.document = read;
    } else if (document.isEmpty()) {
        report.document = fileFailure(path, QCoreApplication::translate("Files", "is empty"));
    } else if (!report.document) {
        report.document = fileFailure(path, QCoreApplication::translate("Files", "not a configuration") +
                                                QLatin1String(": ") + report.document.message());
    }
    for (QString &remark : report.remarks) {
        remark.prepend(path + QLatin1String(": "));
    }
    return report;
}

} // namespace ktr
