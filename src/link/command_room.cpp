#include "link/command_room.h"

#include "config/field_names.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

namespace ktr {

namespace {

using AllCommands = std::array<QString, steps::last + 1>;

/// Also those that are too long to be sent.
AllCommands allCommandsOf(Configuration configuration, const CommandContext &context)
{
    AllCommands commands;
    CommandSequence sequence;
    sequence.start();
    while (const auto next = sequence.next(configuration, context)) {
        commands[static_cast<std::size_t>(next->step)] = next->command;
    }
    return commands;
}

/// Empty when the value fits.
QString faultOf(qsizetype value, const AllCommands &commands, const AllCommands &without)
{
    for (std::size_t step = 0; step < commands.size(); ++step) {
        const qsizetype length = commands[step].size();
        if (length <= longestCommand || commands[step] == without[step]) {
            continue;
        }
        QString fault =
            QCoreApplication::translate("Problems", "is too long: the command of step %1 would "
                                                    "have %2 characters of %3 at most")
                .arg(QString::number(step), QString::number(length), QString::number(longestCommand));
        if (const qsizetype room = value - (length - longestCommand); room > 0) {
            fault += QCoreApplication::translate("Problems", ", this field has room for %1").arg(room);
        }
        return fault;
    }
    return {};
}

} // namespace

QHash<QString, QString> fieldsWithoutRoom(const Configuration &before, const Configuration &wanted,
                                          const QStringList &keys, const CommandContext &context)
{
    QHash<QString, QString> faults;
    const AllCommands commands = allCommandsOf(wanted, context);
    if (std::ranges::all_of(commands, [](const QString &each) { return each.size() <= longestCommand; })) {
        return faults;
    }
    for (const QString &key : keys) {
        Configuration without = wanted;
        (void)setFieldValue(without, key, fieldValue(before, key), true);
        const QString fault =
            faultOf(fieldValue(wanted, key).size(), commands, allCommandsOf(without, context));
        if (!fault.isEmpty()) {
            faults.insert(key, fault);
        }
    }
    return faults;
}

FieldsInFiles::Check roomCheck()
{
    return [](const Configuration &before, const Configuration &after, const QStringList &keys) {
        return fieldsWithoutRoom(before, after, keys, {});
    };
}

} // namespace ktr
