// Choosing the reader of an edit by the file's name.
#include "refhost/edit/AnyEditFile.h"

#include "host/Log.h"
#include "refhost/edit/EditFile.h"
#include "refhost/edit/OtioReader.h"

namespace AnyEditFile {

bool isTimelineFile(const std::string& path) {
    if (path.size() < 5)
        return false;
    std::string ext = path.substr(path.size() - 5);
    for (char& c : ext)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return ext == ".otio";
}

EditPtr open(const std::string& path, std::string& error) {
    if (!isTimelineFile(path))
        return EditFile::open(path, error);
    OtioReader::Report report;
    EditPtr edit = OtioReader::open(path, error, &report);
    for (const std::string& w : report.warnings)
        Log("%s\n", w.c_str());
    return edit;
}

} // namespace AnyEditFile
