// ScreenLayout: the host's saved arrangement of its windows, written on exit and read on start.
#pragma once

#include <functional>
#include <vector>

#include "host/GlobCreationInfo.h"
#include "host/LightweightString.h"
#include "host/configb.h"

class Glob;

// A layout is the saved record (Glob::dump) of each persistable root window, in the order of the
// window manager's list. Its text form is a first line "# nodedesk screen layout 1", then one
// section per window: a line "[window]" followed by the record's own text form. Reading is all or
// nothing: a file that breaks any rule (a missing header, text outside a section, a record that
// doesn't read, a record without "TYPE", a type with no maker, a position or size out of range,
// more than kMaxWindows windows or more than kMaxBytes bytes) gives false with one line saying
// where, and no record at all.
class ScreenLayout {
public:
    static constexpr std::size_t kMaxWindows = 64;
    static constexpr std::size_t kMaxBytes = 1 << 20;
    // Makes a window of a type from its record (info.config, width and height filled in).
    using Maker = std::function<Glob*(GlobCreationInfo* info)>;

    static void registerMaker(const String& type, Maker maker);
    static void unregisterMaker(const String& type);
    static bool hasMaker(const String& type);

    static String toText(const std::vector<configb>& windows);
    static bool fromText(const String& text, std::vector<configb>& out, String& error);

    // The file the workbench keeps its layout in: "layout.txt" in the configuration folder.
    static String defaultPath();
    // Writes the records of every persistable root window; false with a message on failure.
    static bool save(const String& path, String& error);
    // Reads a layout file whole; a missing file is an empty layout, not an error.
    static bool read(const String& path, std::vector<configb>& out, String& error);
    // Makes each window through its type's maker, placing a new root window at its saved
    // position and showing it. Returns the windows made.
    static std::vector<Glob*> restore(const std::vector<configb>& windows);
};
