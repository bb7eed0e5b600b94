#include "link/neighbour_problems.h"

#include "config/fields.h"

#include <QCoreApplication>

#include <algorithm>
#include <type_traits>

namespace ktr {

void findNeighbourProblems(const Configuration &configuration, const QList<Neighbour> &neighbours,
                           QList<Problem> &problems)
{
    const QStringList mac = macBytes(configuration.ethernet);
    const auto found = std::ranges::find_if(neighbours, [&](const Neighbour &neighbour) {
        return neighbour.stationId != configuration.gsm.stationId &&
               std::ranges::equal(neighbour.mac, mac, [](const QString &one, const QString &other) {
                   return one.compare(other, Qt::CaseInsensitive) == 0;
               });
    });
    if (found == neighbours.end()) {
        return;
    }
    visitRecords(configuration, [&]<class Record>(const Group &group, const Record &, int index) {
        if constexpr (std::is_same_v<std::remove_const_t<Record>, EthernetSettings>) {
            const Field<EthernetSettings> &field = fieldOf<EthernetSettings>(&EthernetSettings::mac3);
            problems.append({group.place(field.xmlName, index), field.control.forIndex(index), index,
                             QCoreApplication::translate(
                                 "Problems", "%1 has the same MAC address (%2): two modules of one "
                                             "network must not (edited in expert mode)")
                                 .arg(found->fileName, mac.join(u':'))});
        }
    });
}

} // namespace ktr
