#pragma once

#include "config/field_names.h"

namespace ktr::cli {

/// The names of all fields in English and German.
const FieldNames &fieldNames();

} // namespace ktr::cli
