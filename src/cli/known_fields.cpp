#include "cli/known_fields.h"

namespace ktr::cli {

const FieldNames &fieldNames()
{
    static const FieldNames names = fieldNamesOfAllLanguages();
    return names;
}

} // namespace ktr::cli
