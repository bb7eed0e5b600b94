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

/// Neither an object nor an array where the text is no JSON.
inline QJsonDocument jsonOf(const QString &text)
{
    return QJsonDocument::fromJson(text.toUtf8());
}

} // namespace ktr
