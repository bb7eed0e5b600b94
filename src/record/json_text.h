#pragma once

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace ktr {

/// An object or array as the record's texts have it: without white space.
template <class Json> QString jsonText(const Json &json)
{
    return QString::fromUtf8(QJsonDocument(json).toJson(QJsonDocument::Compact));
}

/// A text as JSON has it, quotes included. Also what JSON takes and a terminal obeys is escaped.
inline QString jsonString(const QString &text)
{
    QString json = jsonText(QJsonArray{text});
    json = json.sliced(1, json.size() - 2);
    for (qsizetype at = json.size() - 1; at >= 0; --at) {
        if (json[at].category() == QChar::Other_Control) {
            json.replace(at, 1, QStringLiteral("\\u%1").arg(json[at].unicode(), 4, 16, QLatin1Char('0')));
        }
    }
    return json;
}

/// Neither an object nor an array where the text is no JSON.
inline QJsonDocument jsonOf(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8());
}

} // namespace ktr
