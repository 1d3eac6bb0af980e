// Script: reading a workbench session from JSON, every field checked before anything plays.
#include "app/workbench/Script.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "refhost/core/TextQuote.h"
#include "refhost/json/Json.h"

namespace {

// Far beyond any screen, yet far from integer overflow.
constexpr double kMaxCoordinate = 100000;
constexpr double kMaxWheelSteps = 100;
constexpr double kMaxSeconds = 1e7;
constexpr double kMaxCount = 1e9;
constexpr size_t kMaxSteps = 100000;

const char* const kNamedKeys[] = {"shift",  "control", "alt",   "escape", "delete",  "backspace",
                                  "return", "tab",     "space", "left",   "right",   "up",
                                  "down",   "home",    "end",   "pageup", "pagedown"};

// A name read from the script, quoted on one line and cut short when long.
std::string shownName(const std::string& name) {
    constexpr size_t kShown = 40;
    std::string out;
    appendQuoted(out, std::string_view(name).substr(0, kShown), "\\x%02x");
    if (name.size() > kShown)
        out += "...";
    return out;
}

struct Action {
    const char* name;
    ScriptStep::Action action;
};
const Action kActions[] = {
    {"press", ScriptStep::Press},
    {"move", ScriptStep::Move},
    {"release", ScriptStep::Release},
    {"wheel", ScriptStep::Wheel},
    {"key-down", ScriptStep::KeyDown},
    {"key-up", ScriptStep::KeyUp},
    {"drop", ScriptStep::Drop},
    {"time", ScriptStep::SetTime},
    {"undo", ScriptStep::Undo},
    {"redo", ScriptStep::Redo},
    {"save", ScriptStep::Save},
    {"expect-nodes", ScriptStep::ExpectNodes},
    {"expect-connection", ScriptStep::ExpectConnection},
};

// Reads the fields of one step; each getter notes the first fault in `why`.
class StepReader {
public:
    explicit StepReader(const json::Value& v) : v_(v) {}
    const std::string& why() const { return why_; }
    bool ok() const { return why_.empty(); }

    const json::Value* field(const char* key, json::Value::Type type, bool required) {
        const json::Value* f = v_.find(key);
        if (!f) {
            if (required)
                fault(std::string("needs \"") + key + "\"");
            return nullptr;
        }
        if (f->type() != type) {
            fault(std::string("\"") + key + "\" has the wrong type");
            return nullptr;
        }
        return f;
    }
    double number(const char* key, double lo, double hi, bool required, double fallback) {
        const json::Value* f = field(key, json::Value::Number, required);
        if (!f)
            return fallback;
        const double d = f->asNumber();
        if (!std::isfinite(d) || d < lo || d > hi) {
            fault(std::string("\"") + key + "\" is out of range");
            return fallback;
        }
        return d;
    }
    int integer(const char* key, double lo, double hi, bool required, int fallback) {
        const double d = number(key, lo, hi, required, fallback);
        if (ok() && d != std::floor(d))
            fault(std::string("\"") + key + "\" must be a whole number");
        return static_cast<int>(d);
    }
    std::string string(const char* key, bool required) {
        const json::Value* f = field(key, json::Value::String, required);
        if (f && f->asString().empty())
            fault(std::string("\"") + key + "\" is empty");
        return f ? f->asString() : std::string();
    }
    XY<int> point(const char* key) {
        const json::Value* f = field(key, json::Value::Array, true);
        if (!f)
            return XY<int>();
        const json::Value::Items& xy = f->items();
        if (xy.size() != 2 || !xy[0].isNumber() || !xy[1].isNumber()) {
            fault(std::string("\"") + key + "\" must be [x, y]");
            return XY<int>();
        }
        int out[2] = {0, 0};
        for (int i = 0; i < 2; ++i) {
            const double d = xy[static_cast<size_t>(i)].asNumber();
            if (!std::isfinite(d) || std::fabs(d) > kMaxCoordinate || d != std::floor(d)) {
                fault(std::string("\"") + key + "\" must hold whole pixels");
                return XY<int>();
            }
            out[i] = static_cast<int>(d);
        }
        return XY<int>(out[0], out[1]);
    }
    std::vector<std::string> keys(const char* key) {
        std::vector<std::string> out;
        const json::Value* f = field(key, json::Value::Array, false);
        if (!f)
            return out;
        for (const json::Value& k : f->items()) {
            if (!k.isString() || !isScriptKeyName(k.asString())) {
                fault(std::string("\"") + key + "\" holds an unknown key");
                return {};
            }
            out.push_back(k.asString());
        }
        return out;
    }
    void fault(const std::string& why) {
        if (why_.empty())
            why_ = why;
    }

private:
    const json::Value& v_;
    std::string why_;
};

bool readStep(const json::Value& v, ScriptStep& step, std::string& why,
              const std::function<bool(const std::string&)>& knownTemplate) {
    if (!v.isObject()) {
        why = "is not an object";
        return false;
    }
    StepReader r(v);
    const std::string name = r.string("do", true);
    if (!r.ok()) {
        why = r.why();
        return false;
    }
    bool found = false;
    for (const Action& a : kActions)
        if (name == a.name) {
            step.action = a.action;
            found = true;
        }
    if (!found) {
        why = "unknown action " + shownName(name);
        return false;
    }
    switch (step.action) {
    case ScriptStep::Press:
    case ScriptStep::Move:
    case ScriptStep::Release: {
        step.at = r.point("at");
        const std::string button = v.find("button") ? r.string("button", true) : std::string("left");
        if (button == "left")
            step.button = ScriptStep::Left;
        else if (button == "right")
            step.button = ScriptStep::Right;
        else if (button == "middle")
            step.button = ScriptStep::Middle;
        else
            r.fault("\"button\" is left, right or middle");
        step.holding = r.keys("holding");
        break;
    }
    case ScriptStep::Wheel:
        step.at = r.point("at");
        step.wheelSteps = r.integer("steps", -kMaxWheelSteps, kMaxWheelSteps, true, 0);
        if (r.ok() && step.wheelSteps == 0)
            r.fault("\"steps\" must not be 0");
        break;
    case ScriptStep::KeyDown:
    case ScriptStep::KeyUp:
        step.text = r.string("key", true);
        if (r.ok() && !isScriptKeyName(step.text))
            r.fault("unknown key " + shownName(step.text));
        break;
    case ScriptStep::Drop:
        step.text = r.string("template", true);
        step.at = r.point("at");
        if (const json::Value* f = r.field("replace", json::Value::Bool, false))
            step.replace = f->asBool();
        if (r.ok() && knownTemplate && !knownTemplate(step.text))
            r.fault("no template named " + shownName(step.text));
        break;
    case ScriptStep::SetTime:
        step.seconds = r.number("seconds", -kMaxSeconds, kMaxSeconds, true, 0.0);
        break;
    case ScriptStep::Undo:
    case ScriptStep::Redo:
        break;
    case ScriptStep::Save:
        step.text = r.string("path", true);
        break;
    case ScriptStep::ExpectNodes:
        step.count = r.integer("count", 0, kMaxCount, true, 0);
        break;
    case ScriptStep::ExpectConnection:
        step.from = r.string("from", true);
        step.to = r.string("to", true);
        step.input = r.integer("input", 0, kMaxCount, false, -1);
        break;
    }
    why = r.why();
    return r.ok();
}

} // namespace

bool isScriptKeyName(const std::string& name) {
    for (const char* k : kNamedKeys)
        if (name == k)
            return true;
    return name.size() == 1 && ((name[0] >= 'a' && name[0] <= 'z') || (name[0] >= '0' && name[0] <= '9'));
}

bool readScript(const std::string& text, Script& out, std::string& error,
                const std::function<bool(const std::string&)>& knownTemplate) {
    out.steps.clear();
    json::Value doc;
    json::ParseError pe;
    if (!json::parse(text, doc, pe)) {
        error =
            "line " + std::to_string(pe.line) + " column " + std::to_string(pe.column) + ": " + pe.message;
        return false;
    }
    const json::Value* steps = doc.isObject() ? doc.find("steps") : nullptr;
    if (!steps || !steps->isArray()) {
        error = "a script is an object with a list of \"steps\"";
        return false;
    }
    if (steps->items().size() > kMaxSteps) {
        error = "more than " + std::to_string(kMaxSteps) + " steps";
        return false;
    }
    out.steps.reserve(steps->items().size());
    int number = 0;
    for (const json::Value& v : steps->items()) {
        ++number;
        ScriptStep step;
        std::string why;
        if (!readStep(v, step, why, knownTemplate)) {
            error = "step " + std::to_string(number) + ": " + why;
            out.steps.clear();
            return false;
        }
        out.steps.push_back(std::move(step));
    }
    return true;
}

bool loadScript(const std::string& path, Script& out, std::string& error,
                const std::function<bool(const std::string&)>& knownTemplate) {
    constexpr std::uintmax_t kMaxBytes = 16u << 20;
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        error = path + ": not a readable file";
        return false;
    }
    if (std::filesystem::file_size(path, ec) > kMaxBytes || ec) {
        error = path + ": larger than 16 MiB";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    if (!in && !in.eof()) {
        error = path + ": can't be read";
        return false;
    }
    if (!readScript(text.str(), out, error, knownTemplate)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}
