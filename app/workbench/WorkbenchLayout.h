// WorkbenchLayout: the workbench's saved screen layout: read at start, written on exit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/configb.h"

class FXGraphTool;
class Glob;
class Vob;
class Workbench;
struct GlobCreationInfo;

// The layout lives in the configuration folder (ScreenLayout::defaultPath) unless a path is
// given. The workbench's own
// record gives its window's place and size and, under "VIEW", the record of the graph tool it
// holds, from which the tool is made again with its saved zoom; the records of other windows
// make those windows again. A damaged file is reported in one line and the workbench starts as
// if there were none.
class WorkbenchLayout {
public:
    // path "" is the default file.
    explicit WorkbenchLayout(const std::string& path = std::string());
    ~WorkbenchLayout();
    // Reads the file; false (with the one-line message in error) when it was damaged.
    bool read(std::string& error);
    // The saved place and size of the workbench window, if any.
    std::optional<configb> workbench() const { return workbench_; }
    bool restoresView() const { return view_.has_value(); }
    // The graph tool for the workbench: from its saved record if there is one, else new.
    FXGraphTool* makeTool(const GlobCreationInfo& info, Vob* vob) const;
    // Makes the other saved windows.
    void restoreOthers() const;
    // Writes the layout of every persistable window; false with a message when it can't.
    bool save(std::string& error) const;
    const std::string& path() const { return path_; }

private:
    std::string path_;
    std::optional<configb> workbench_;
    std::optional<configb> view_;
    std::vector<configb> others_;
};
