#pragma once

#include <trelvo/gom/ObjectBase.h>

#include <string_view>

#include "tools/trelvo/ShowWriter.h"

namespace trelvo::tool {

/// The name of the flat record with that class id, "GeranCellDn", or "unknown".
const char* recordClassName(unsigned short classId);

/// Writes the fields of a flat record that are set, nested records included, as one object.
void showRecord(ShowWriter& writer, std::string_view name, const gom::ObjectBase& record);

}  // namespace trelvo::tool
