// Saved screen layouts: their text form, checking a file whole, and making the windows again.
#include "host/ScreenLayout.h"

#include <QFile>
#include <QSaveFile>
#include <map>
#include <string>
#include <string_view>

#include "host/EditorPreferences.h"
#include "host/Glob.h"
#include "host/GlobManager.h"

namespace {

constexpr std::string_view kHeader = "# nodedesk screen layout 1";
constexpr std::string_view kSection = "[window]";
constexpr int kMaxCoordinate = 1 << 16;

std::map<std::string, ScreenLayout::Maker>& makers() {
    static std::map<std::string, ScreenLayout::Maker> m;
    return m;
}

std::string_view trimLineEnd(std::string_view line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == ' ' || line.back() == '\t'))
        line.remove_suffix(1);
    return line;
}

// The rules a record of a window must keep beyond reading as a record.
bool checkRecord(const configb& c, String& why) {
    String type;
    if (c.in("TYPE", type) != 0 || type.empty()) {
        why = "it has no TYPE";
        return false;
    }
    if (!ScreenLayout::hasMaker(type)) {
        why = String("no window of type '") + type + "' can be made";
        return false;
    }
    for (const char* key : {"X", "Y", "W", "H"}) {
        int v = 0;
        if (!c.has(key))
            continue;
        const bool size = key[0] == 'W' || key[0] == 'H';
        if (c.in(key, v) != 0 || v < (size ? 0 : -kMaxCoordinate) || v > kMaxCoordinate) {
            why = String("its ") + key + " is out of range";
            return false;
        }
    }
    return true;
}

} // namespace

void ScreenLayout::registerMaker(const String& type, Maker maker) {
    makers()[type.str()] = std::move(maker);
}

void ScreenLayout::unregisterMaker(const String& type) {
    makers().erase(type.str());
}

bool ScreenLayout::hasMaker(const String& type) {
    auto it = makers().find(type.str());
    return it != makers().end() && it->second;
}

String ScreenLayout::toText(const std::vector<configb>& windows) {
    std::string out(kHeader);
    out += '\n';
    for (const configb& c : windows) {
        out += kSection;
        out += '\n';
        out += c.toText().str();
    }
    return String(out);
}

bool ScreenLayout::fromText(const String& text, std::vector<configb>& out, String& error) {
    out.clear();
    if (text.size() > kMaxBytes) {
        error = "the layout is larger than 1 MiB";
        return false;
    }
    std::vector<configb> windows;
    std::vector<size_t> starts; // line number of each section's first line
    std::vector<std::string> bodies;
    std::string_view all = text.view();
    size_t lineNo = 0;
    bool headerSeen = false;
    while (!all.empty()) {
        const size_t nl = all.find('\n');
        std::string_view raw = all.substr(0, nl);
        all = nl == std::string_view::npos ? std::string_view() : all.substr(nl + 1);
        ++lineNo;
        const std::string_view line = trimLineEnd(raw);
        if (!headerSeen) {
            if (line != kHeader) {
                error = "line 1: not a screen layout";
                return false;
            }
            headerSeen = true;
            continue;
        }
        if (line == kSection) {
            if (bodies.size() == kMaxWindows) {
                error = stringFormat("line %zu: more than %zu windows", lineNo, kMaxWindows);
                return false;
            }
            bodies.emplace_back();
            starts.push_back(lineNo + 1);
            continue;
        }
        if (bodies.empty()) {
            if (line.empty() || line.front() == '#')
                continue;
            error = stringFormat("line %zu: text outside a window's section", lineNo);
            return false;
        }
        bodies.back().append(raw);
        bodies.back() += '\n';
    }
    if (!headerSeen) {
        error = "line 1: not a screen layout";
        return false;
    }
    for (size_t i = 0; i < bodies.size(); ++i) {
        configb c;
        String why;
        if (!configb::fromText(String(bodies[i]), c, why) || !checkRecord(c, why)) {
            error = stringFormat("window %zu (from line %zu): %s", i + 1, starts[i], why.c_str());
            return false;
        }
        windows.push_back(std::move(c));
    }
    out = std::move(windows);
    return true;
}

String ScreenLayout::defaultPath() {
    return EditorPreferences::configDir() + "/layout.txt";
}

bool ScreenLayout::save(const String& path, String& error) {
    std::vector<configb> windows;
    for (Glob* g : GlobManager::instance().roots())
        if (is_good_glob_ptr(g) && g->isPersistable()) {
            configb c;
            g->dump(c);
            windows.push_back(std::move(c));
        }
    QSaveFile file(QString::fromUtf8(path.c_str()));
    const String text = toText(windows);
    if (!file.open(QIODevice::WriteOnly) || file.write(text.c_str(), static_cast<qint64>(text.size())) < 0 ||
        !file.commit()) {
        error = String("can't write the layout to ") + path;
        return false;
    }
    return true;
}

bool ScreenLayout::read(const String& path, std::vector<configb>& out, String& error) {
    out.clear();
    QFile file(QString::fromUtf8(path.c_str()));
    if (!file.exists())
        return true;
    if (!file.open(QIODevice::ReadOnly)) {
        error = String("can't read ") + path;
        return false;
    }
    const QByteArray bytes = file.read(static_cast<qint64>(kMaxBytes) + 1);
    if (!fromText(String(bytes.constData(), static_cast<size_t>(bytes.size())), out, error)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

std::vector<Glob*> ScreenLayout::restore(const std::vector<configb>& windows) {
    std::vector<Glob*> made;
    for (const configb& c : windows) {
        String type;
        c.in("TYPE", type);
        auto it = makers().find(type.str());
        if (it == makers().end() || !it->second)
            continue;
        GlobCreationInfo info;
        info.config = c;
        c.in("W", info.width);
        c.in("H", info.height);
        Glob* g = it->second(&info);
        if (!g)
            continue;
        if (!g->parent() && !GlobManager::instance().owns(g)) {
            int x = 0, y = 0;
            if (c.in("X", x) == 0 && c.in("Y", y) == 0)
                Glob::setupRootPos(g->canvas(), XY<int>(x, y));
            GlobManager::instance().realize(g);
        }
        made.push_back(g);
    }
    return made;
}
