// Script: a scripted workbench session as read from its JSON text: a list of steps, each one
// user action (pointer, wheel, keys, a template dragged from the list and dropped), a command
// (playhead, undo, redo, save) or an expectation about the graph.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/XY.h"

struct ScriptStep {
    enum Action {
        Press,
        Move,
        Release,
        Wheel,
        KeyDown,
        KeyUp,
        Drop,
        SetTime,
        Undo,
        Redo,
        Save,
        ExpectNodes,
        ExpectConnection,
    };
    enum Button { Left = 1, Right = 2, Middle = 3 };

    Action action = Move;
    // View pixels, y upward from the view's bottom-left corner.
    XY<int> at;
    Button button = Left;
    // Keys held with a pointer action or a drop: the names of KeyDown ("shift", "control", "alt").
    std::vector<std::string> holding;
    int wheelSteps = 0;
    // A key name, a template name or a file path, by action.
    std::string text;
    bool replace = false;
    double seconds = 0.0;
    int count = 0;
    // A connection: the upstream node feeds input `input` of the downstream node, each named by
    // its id ("1.0.2") or its name; input -1 means any input.
    std::string from;
    std::string to;
    int input = -1;
};

struct Script {
    std::vector<ScriptStep> steps;
};

// The key names a step may use: modifiers, editing keys, arrows, letters and digits.
bool isScriptKeyName(const std::string& name);

// Reads a script: {"steps": [{"do": "press", "at": [x, y]}, ...]}. False with a one-line error
// on the first fault: the JSON's line and column, or the step's number (from 1) and what is
// wrong with it. knownTemplate, when given, tells which template names a drop may use.
bool readScript(const std::string& text, Script& out, std::string& error,
                const std::function<bool(const std::string&)>& knownTemplate = nullptr);

// Reads a script file: a regular file of at most 16 MiB. Errors name the file.
bool loadScript(const std::string& path, Script& out, std::string& error,
                const std::function<bool(const std::string&)>& knownTemplate = nullptr);
