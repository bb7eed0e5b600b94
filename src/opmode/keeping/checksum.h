#pragma once

#include <QByteArrayView>

#include <cstring>

namespace ktr {

/// A checksum that tells whole data from torn or damaged. It is made to be fast, eight bytes at a time, and
/// is no protection against forgery. The record stores that of each list, and the journal and the file of
/// times of the versions before hold it, so it stays as it is. It takes the bytes in the order of the
/// machine: on a machine of the other order such a file looks damaged, and such a list edited.
inline quint64 checksum(QByteArrayView bytes)
{
    constexpr quint64 prime = 0x9E3779B97F4A7C15;
    const auto mix = [](quint64 sum, quint64 word) {
        sum = (sum ^ word) * prime;
        return sum ^ (sum >> 32);
    };
    quint64 sum = static_cast<quint64>(bytes.size());
    const char *at = bytes.data();
    qsizetype left = bytes.size();
    for (; left >= 8; left -= 8, at += 8) {
        quint64 word = 0;
        std::memcpy(&word, at, sizeof word);
        sum = mix(sum, word);
    }
    quint64 rest = 0;
    if (left > 0) {
        std::memcpy(&rest, at, static_cast<std::size_t>(left));
    }
    return mix(sum, rest);
}

} // namespace ktr
