// AnyEditFile: opens an edit from any file the programs take: a timeline interchange file
// (".otio", any case) through OtioReader, anything else as an edit file. The reader's warnings
// go to the log.
#pragma once

#include <string>

#include "host/Edit.h"

namespace AnyEditFile {

bool isTimelineFile(const std::string& path);
// The edit, or null with a one-line error.
EditPtr open(const std::string& path, std::string& error);

} // namespace AnyEditFile
