// Resource texts (samples/resources/strings.txt) and icons (samples/icons/).
#include "host/Resources.h"

#include <QFile>
#include <QFileInfo>
#include <cstdlib>
#include <cwctype>
#include <map>

#include "host/UIString.h"

namespace {

String resourceDir(const char* sub) {
    if (const char* env = std::getenv("NODEDESK_RESOURCE_DIR"))
        return String(env) + "/" + sub;
    return String(NODEDESK_SOURCE_DIR "/samples/") + sub;
}

std::map<unsigned, WString>& table() {
    static std::map<unsigned, WString> t;
    static bool loaded = false;
    if (!loaded) {
        loaded = true;
        loadResourceStrings(resourceDir("resources") + "/strings.txt");
    }
    return t;
}

} // namespace

int parseResourceStrings(const String& text, int* badLines) {
    std::map<unsigned, WString> parsed;
    int bad = 0;
    std::string_view all = text.view();
    while (!all.empty()) {
        std::size_t nl = all.find('\n');
        std::string_view line = all.substr(0, nl);
        all = nl == std::string_view::npos ? std::string_view() : all.substr(nl + 1);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (line.empty() || line.front() == '#')
            continue;
        std::size_t i = 0;
        unsigned long id = 0;
        while (i < line.size() && line[i] >= '0' && line[i] <= '9' && id <= 99999999)
            id = id * 10 + static_cast<unsigned>(line[i++] - '0');
        if (i == 0 || i >= line.size() || (line[i] != ' ' && line[i] != '\t') || id > 99999999) {
            ++bad;
            continue;
        }
        while (i < line.size() && (line[i] == ' ' || line[i] == '\t'))
            ++i;
        parsed[static_cast<unsigned>(id)] = toWide(String(line.substr(i)));
    }
    if (badLines)
        *badLines = bad;
    for (auto& [id, s] : parsed)
        table()[id] = s;
    return static_cast<int>(parsed.size());
}

bool loadResourceStrings(const String& path) {
    QFile f(QString::fromUtf8(path.c_str()));
    if (!f.open(QIODevice::ReadOnly))
        return false;
    QByteArray bytes = f.read(4 * 1024 * 1024);
    parseResourceStrings(String(std::string(bytes.constData(), static_cast<std::size_t>(bytes.size()))),
                         nullptr);
    return true;
}

WString resourceStrW(unsigned id, int fmt) {
    auto& t = table();
    auto it = t.find(id);
    if (it == t.end())
        return WString();
    if (fmt != 1)
        return it->second;
    std::wstring s = it->second.str();
    for (auto& c : s)
        c = static_cast<wchar_t>(std::towupper(c));
    return WString(s);
}

WString paddedResourceStrW(unsigned id, const WString& prefix, const WString& suffix, int fmt) {
    return prefix + resourceStrW(id, fmt) + suffix;
}

String getIconPath(const String& name) {
    if (name.empty() || name.view().find('/') != std::string_view::npos)
        return String();
    String path = resourceDir("icons") + "/" + name.c_str();
    return QFileInfo::exists(QString::fromUtf8(path.c_str())) ? path : String();
}

WString UIString::resolve() const {
    WString s = text_;
    if (id_ != NoResource) {
        WString r = resourceStrW(id_);
        if (!r.empty() || text_.empty())
            s = r;
    }
    if (flags_ & AppendDots)
        s += L"..";
    return s;
}
