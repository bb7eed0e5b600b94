#pragma once

#include "cli/patient_output.h"

#include <functional>

namespace ktr::cli {

/// Prints the output of a job that goes on even when nobody reads it any more.
struct PatientJob
{
    std::function<QByteArray(qint64 lines)> gap = {}; ///< of PatientOutput
    bool endsUnread = false;                          ///< when its reader has gone
    bool waitsForReader = true; ///< at its end, as long as the reader needs; else a second
};

/// Runs a job and gives its exit code; failed instead of done, after a complaint, when lines of it stayed
/// unread.
int patiently(const std::function<int()> &job, const PatientJob &options = {});

} // namespace ktr::cli
