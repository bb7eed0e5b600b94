// The headers that nearly every source needs; kept small so that a change elsewhere stays cheap.
#include <QtCore/QByteArray>
#include <QtCore/QDateTime>
#include <QtCore/QLocale>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <variant>
#include <vector>
