#include "editor/field_ref.h"
