// Timeline interchange files into edits; the mapping is told in OtioReader.h.
#include "refhost/edit/OtioReader.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>

#include "host/CompoundEffect.h"
#include "host/EffectInstance_opu4h5a4j.h"
#include "host/MaterialUsageNode.h"
#include "refhost/edit/OtioJson.h"

namespace OtioReader {

namespace {

constexpr double kEps = 1e-9;
constexpr double kForever = std::numeric_limits<double>::infinity();
constexpr uintmax_t kMaxReferencedFile = 256u << 20;
constexpr size_t kMaxReferenceDepth = 16;

// 96 bits of hash of an object's path; the top bit keeps the ids apart from the edit's fresh ids
// (0.0.n) and internal tracks (0.1.n).
IdStamp idFor(const std::string& path) {
    uint64_t h = 14695981039346656037ull;
    uint32_t g = 2166136261u ^ 0x5bd1e995u;
    for (unsigned char c : path) {
        h = (h ^ c) * 1099511628211ull;
        g = (g ^ c) * 16777619u;
    }
    return IdStamp(static_cast<uint32_t>(h >> 32) | 0x80000000u, static_cast<uint32_t>(h), g);
}

std::string lower(std::string s) {
    for (char& c : s)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return s;
}

// Letters and digits only, lower case: "Gaussian Blur" and "gaussian_blur" read alike.
std::string squeezed(const std::string& s) {
    std::string out;
    for (char c : lower(s))
        if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'))
            out += c;
    return out;
}

bool endsWith(const std::string& s, const std::string& suffix) {
    return s.size() >= suffix.size() && s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0;
}

// The still formats the render service reads.
bool isImageFile(const std::string& path) {
    static const char* const kExts[] = {".png", ".jpg", ".jpeg", ".tif", ".tiff", ".exr",
                                        ".bmp", ".dpx", ".tga",  ".hdr", ".webp"};
    std::string l = lower(path);
    for (const char* e : kExts)
        if (endsWith(l, e))
            return true;
    return false;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(c | 0x20);
    return c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
}

std::string percentDecoded(const std::string& s) {
    std::string out;
    for (size_t i = 0; i < s.size(); ++i) {
        int hi = 0, lo = 0;
        if (s[i] == '%' && i + 2 < s.size() && (hi = hexDigit(s[i + 1])) >= 0 &&
            (lo = hexDigit(s[i + 2])) >= 0) {
            out += static_cast<char>(hi * 16 + lo);
            i += 2;
        } else {
            out += s[i];
        }
    }
    return out;
}

// A media address as a file path: "file://" addresses lose their scheme and host, a relative
// path starts from the timeline file's folder; other schemes stay as they are.
std::string mediaPath(const std::string& url, const std::string& baseDir) {
    if (url.rfind("file://", 0) == 0) {
        std::string rest = url.substr(7);
        size_t slash = rest.find('/');
        rest = slash == std::string::npos ? std::string() : rest.substr(slash);
        rest = percentDecoded(rest);
        // "/D:/media/x.mov" names a drive.
        if (rest.size() >= 3 && rest[0] == '/' && rest[2] == ':')
            rest.erase(0, 1);
        return rest;
    }
    if (url.find("://") != std::string::npos || url.empty())
        return url;
    if (url[0] == '/' || baseDir.empty())
        return url;
    return baseDir + "/" + url;
}

struct Schema {
    std::string name;
    int version = 0;
    std::string text() const { return name + "." + std::to_string(version); }
};

enum class Kind { Clip, Gap, Stack, Track, Transition, Skip };

struct Placed {
    const OtioJson* obj = nullptr;
    std::string path;
    Kind kind = Kind::Skip;
    std::string name;
    double start = 0.0, end = 0.0; // in the time of the edit it lies in, untrimmed
    double sourceStart = 0.0;      // the item's own time at its start
    double givenIn = 0.0, givenOut = 0.0;
    int inBy = -1, outBy = -1; // the transitions taking time at its start and its end
    Zk::Ptr<FXGraphNodeBase> root;
    // A transition's offsets and sides.
    double inOffset = 0.0, outOffset = 0.0;
    int prev = -1, next = -1;
};

class Importer {
public:
    // `idPrefix` keeps the ids of a timeline nested by reference apart from those around it.
    Importer(const std::string& text, const std::string& name, std::vector<std::string> chain, Report& report,
             const std::string& idPrefix = std::string())
        : text_(text), name_(name), chain_(std::move(chain)), report_(report), idPrefix_(idPrefix) {
        baseDir_ = std::filesystem::path(name).parent_path().string();
        fileName_ = std::filesystem::path(name).filename().string();
    }

    bool timeline(const OtioJson& root, Edit& edit) {
        Schema s;
        if (!schema(root, s))
            return false;
        if (s.name != "Timeline" || s.version != 1)
            return fail(root, "expected a Timeline.1 object at the top of the file");
        std::string name;
        if (!optString(root, "name", name))
            return false;
        edit.setName(toWide(String(name)));
        edit.setCookie(Cookie(Cookie::EditKind, idFor("#timeline " + name + " " + fileName_)));
        double gst = 0.0;
        if (const OtioJson* g = root.find("global_start_time"); g && !g->isNull())
            if (!rational(*g, gst))
                return false;
        const OtioJson* tracks = root.find("tracks");
        if (!tracks || tracks->isNull())
            return fail(root, "expected \"tracks\", the timeline's stack");
        Schema ts;
        if (!schema(*tracks, ts))
            return false;
        if (ts.name != "Stack" || ts.version != 1)
            return fail(*tracks, "expected a Stack.1 for the timeline's \"tracks\"");
        if (!markers(*tracks, gst))
            return false;
        if (const OtioJson* fx = tracks->find("effects"); fx && fx->isArray() && !fx->items.empty())
            warn(*fx, "the effects of the timeline's top stack are not applied");
        if (!stackChannels(edit, *tracks, "/tracks", gst, kVideoChan))
            return false;
        double end = gst;
        for (int i = 0; i < edit.numChans(); ++i)
            end = std::max(end, edit.chan(i).cel->get_end_time());
        edit.setTimes(gst, end);
        return true;
    }

    std::string error;

private:
    IdStamp id(const std::string& path) const { return idFor(idPrefix_ + path); }

    // --- diagnostics --------------------------------------------------------------------------
    std::string where(const OtioJson& at) const {
        int line = 0, column = 0;
        OtioJson::lineColumn(text_, at.offset, line, column);
        std::ostringstream s;
        s << name_ << ':' << line << ':' << column << ": ";
        return s.str();
    }
    bool fail(const OtioJson& at, const std::string& what) {
        error = where(at) + what;
        return false;
    }
    void warn(const OtioJson& at, const std::string& what) { report_.warnings.push_back(where(at) + what); }

    // --- values -------------------------------------------------------------------------------
    bool optString(const OtioJson& obj, const char* key, std::string& out) {
        const OtioJson* v = obj.find(key);
        if (!v || v->isNull())
            return true;
        if (!v->isString())
            return fail(*v, std::string("expected a string for \"") + key + "\"");
        out = v->text;
        return true;
    }
    bool optBool(const OtioJson& obj, const char* key, bool& out) {
        const OtioJson* v = obj.find(key);
        if (!v || v->isNull())
            return true;
        if (!v->isBool())
            return fail(*v, std::string("expected true or false for \"") + key + "\"");
        out = v->boolean;
        return true;
    }
    bool number(const OtioJson& obj, const char* key, double& out) {
        const OtioJson* v = obj.find(key);
        if (!v)
            return fail(obj, std::string("expected a number \"") + key + "\"");
        if (!v->isNumber() || !std::isfinite(v->number))
            return fail(*v, std::string("expected a finite number for \"") + key + "\"");
        out = v->number;
        return true;
    }
    bool schema(const OtioJson& obj, Schema& out) {
        if (!obj.isObject())
            return fail(obj, "expected an object with an \"OTIO_SCHEMA\"");
        const OtioJson* s = obj.find("OTIO_SCHEMA");
        if (!s || !s->isString())
            return fail(s ? *s : obj,
                        "expected \"OTIO_SCHEMA\" naming the object's schema, such as \"Clip.2\"");
        size_t dot = s->text.rfind('.');
        if (dot == std::string::npos || dot == 0 || dot + 1 >= s->text.size() || s->text.size() - dot > 6)
            return fail(*s, "expected a schema name and version such as \"Clip.2\"");
        int version = 0;
        for (size_t i = dot + 1; i < s->text.size(); ++i) {
            char c = s->text[i];
            if (c < '0' || c > '9')
                return fail(*s, "expected a schema name and version such as \"Clip.2\"");
            version = version * 10 + (c - '0');
        }
        out.name = s->text.substr(0, dot);
        out.version = version;
        return true;
    }
    bool rational(const OtioJson& v, double& seconds) {
        Schema s;
        if (!schema(v, s))
            return false;
        if (s.name != "RationalTime" || s.version != 1)
            return fail(v, "expected a RationalTime.1, not " + s.text());
        double rate = 0.0, value = 0.0;
        if (!number(v, "rate", rate) || !number(v, "value", value))
            return false;
        if (!(rate > 0.0))
            return fail(*v.find("rate"), "expected a rate above 0");
        seconds = value / rate;
        if (!std::isfinite(seconds))
            return fail(v, "expected a time within the range of a double");
        return true;
    }
    bool range(const OtioJson& v, double& start, double& duration) {
        Schema s;
        if (!schema(v, s))
            return false;
        if (s.name != "TimeRange" || s.version != 1)
            return fail(v, "expected a TimeRange.1, not " + s.text());
        const OtioJson* st = v.find("start_time");
        const OtioJson* du = v.find("duration");
        if (!st || !du)
            return fail(v, "expected \"start_time\" and \"duration\" in a time range");
        if (!rational(*st, start) || !rational(*du, duration))
            return false;
        if (duration < 0.0)
            return fail(*du, "expected a duration of 0 or more");
        return true;
    }
    // A range member that may be absent or null.
    bool optRange(const OtioJson& obj, const char* key, bool& present, double& start, double& duration) {
        const OtioJson* v = obj.find(key);
        present = v && !v->isNull();
        return !present || range(*v, start, duration);
    }

    // --- schemas ------------------------------------------------------------------------------
    Kind kindOf(const Schema& s) const {
        if ((s.name == "Clip" && (s.version == 1 || s.version == 2)))
            return Kind::Clip;
        if (s.version != 1)
            return Kind::Skip;
        if (s.name == "Gap")
            return Kind::Gap;
        if (s.name == "Stack")
            return Kind::Stack;
        // "Sequence" is the track's older name.
        if (s.name == "Track" || s.name == "Sequence")
            return Kind::Track;
        if (s.name == "Transition")
            return Kind::Transition;
        return Kind::Skip;
    }
    void skipped(const OtioJson& obj, const Schema& s) {
        warn(obj, "skipped an object of unknown schema \"" + s.text() + "\"");
    }

    // The clip's active media reference, or null for none.
    const OtioJson* mediaReference(const OtioJson& clip, bool& ok) {
        ok = true;
        if (const OtioJson* refs = clip.find("media_references"); refs && !refs->isNull()) {
            if (!refs->isObject())
                return ok = fail(*refs, "expected an object of media references by key"), nullptr;
            std::string key = "DEFAULT_MEDIA";
            if (!(ok = optString(clip, "active_media_reference_key", key)))
                return nullptr;
            const OtioJson* r = refs->find(key);
            if (!r && !refs->items.empty())
                warn(*refs, "no media reference under the active key \"" + key + "\"");
            return r && !r->isNull() ? r : nullptr;
        }
        const OtioJson* r = clip.find("media_reference");
        return r && !r->isNull() ? r : nullptr;
    }

    // The time an item takes in its track, and its own time at its start.
    bool duration(const OtioJson& obj, Kind kind, double& out, double& sourceStart) {
        bool has = false;
        double start = 0.0;
        if (!optRange(obj, "source_range", has, start, out))
            return false;
        sourceStart = has ? start : 0.0;
        if (has)
            return true;
        if (kind == Kind::Clip) {
            bool ok = true;
            const OtioJson* ref = mediaReference(obj, ok);
            if (!ok)
                return false;
            if (ref && ref->isObject()) {
                if (!optRange(*ref, "available_range", has, start, out))
                    return false;
                sourceStart = start;
                if (has)
                    return true;
            }
            return fail(
                obj, "expected a \"source_range\", or media with an \"available_range\", to time the clip");
        }
        if (kind == Kind::Gap) {
            // Older gaps carry a bare duration.
            if (const OtioJson* d = obj.find("duration"); d && !d->isNull()) {
                if (!rational(*d, out))
                    return false;
                if (out < 0.0)
                    return fail(*d, "expected a duration of 0 or more");
                return true;
            }
            return fail(obj, "expected a \"source_range\" to time the gap");
        }
        // A stack lasts as long as its longest child, a track as its items end to end.
        const OtioJson* children = obj.find("children");
        out = 0.0;
        if (!children || children->isNull())
            return true;
        if (!children->isArray())
            return fail(*children, "expected an array of \"children\"");
        for (const OtioJson& c : children->items) {
            Schema s;
            if (!schema(c, s))
                return false;
            Kind k = kindOf(s);
            if (k == Kind::Skip || k == Kind::Transition)
                continue;
            double d = 0.0, ignored = 0.0;
            if (!duration(c, k, d, ignored))
                return false;
            out = kind == Kind::Stack ? std::max(out, d) : out + d;
        }
        return true;
    }

    bool markers(const OtioJson& obj, double origin) {
        const OtioJson* list = obj.find("markers");
        if (!list || list->isNull())
            return true;
        if (!list->isArray())
            return fail(*list, "expected an array of \"markers\"");
        for (const OtioJson& m : list->items) {
            Schema s;
            if (!schema(m, s))
                return false;
            if (s.name != "Marker") {
                skipped(m, s);
                continue;
            }
            Report::Marker rec;
            if (!optString(m, "name", rec.name))
                return false;
            bool has = false;
            double start = 0.0;
            if (!optRange(m, "marked_range", has, start, rec.duration))
                return false;
            rec.time = origin + start;
            report_.markers.push_back(rec);
        }
        return true;
    }

    // --- channels -----------------------------------------------------------------------------
    // Each child of a stack is a channel: a track with its items, anything else alone.
    bool stackChannels(Edit& edit, const OtioJson& stack, const std::string& path, double origin,
                       EditChanType defaultType) {
        const OtioJson* children = stack.find("children");
        if (!children || children->isNull())
            return true;
        if (!children->isArray())
            return fail(*children, "expected an array of \"children\"");
        int counts[2] = {0, 0};
        for (size_t i = 0; i < children->items.size(); ++i) {
            const OtioJson& c = children->items[i];
            std::string cpath = path + "/children/" + std::to_string(i);
            Schema s;
            if (!schema(c, s))
                return false;
            Kind k = kindOf(s);
            if (k == Kind::Skip) {
                skipped(c, s);
                continue;
            }
            if (k == Kind::Transition) {
                warn(c, "skipped a transition that stands in a stack, between no neighbours");
                continue;
            }
            if (!childChannel(edit, c, k, cpath, cpath, origin, defaultType, counts, false))
                return false;
        }
        return true;
    }

    // One channel for a stack's child. A track given `asItem` is the content of a compound
    // effect: its trim, effects and markers belong to the item that holds it.
    bool childChannel(Edit& edit, const OtioJson& c, Kind k, const std::string& path,
                      const std::string& idPath, double origin, EditChanType defaultType, int counts[2],
                      bool asItem) {
        EditChannel ch;
        ch.id = id(idPath + "/channel");
        ch.type = defaultType;
        std::string name;
        if (!optString(c, "name", name))
            return false;
        std::vector<std::pair<const OtioJson*, std::string>> items;
        double trackOrigin = origin, winLo = -kForever, winHi = kForever;
        const OtioJson* trackEffects = nullptr;
        if (k == Kind::Track) {
            std::string kind = "Video";
            if (!optString(c, "kind", kind))
                return false;
            if (kind == "Audio")
                ch.type = kAudioChan;
            else if (kind == "Video")
                ch.type = kVideoChan;
            else
                warn(c, "a track of kind \"" + kind + "\" is shown as video");
            bool has = false, enabled = true;
            double ss = 0.0, dur = 0.0;
            if (!optRange(c, "source_range", has, ss, dur) || !optBool(c, "enabled", enabled))
                return false;
            if (has && !asItem) {
                trackOrigin = origin - ss;
                winLo = origin;
                winHi = origin + dur;
            }
            if (!asItem) {
                if (!markers(c, trackOrigin))
                    return false;
                trackEffects = c.find("effects");
            }
            const OtioJson* kids = c.find("children");
            if (kids && !kids->isNull() && !kids->isArray())
                return fail(*kids, "expected an array of \"children\"");
            if ((enabled || asItem) && kids && kids->isArray())
                for (size_t j = 0; j < kids->items.size(); ++j)
                    items.push_back({&kids->items[j], path + "/children/" + std::to_string(j)});
        } else {
            items.push_back({&c, path});
        }
        int& n = counts[ch.type == kAudioChan ? 1 : 0];
        ++n;
        ch.name =
            toWide(String(name.empty() ? (ch.type == kAudioChan ? "A" : "V") + std::to_string(n) : name));
        ch.cel = Zk::make<Cel>();
        if (!channelEvents(edit, ch, items, trackOrigin, winLo, winHi, trackEffects, path))
            return false;
        edit.addChannel(std::move(ch));
        return true;
    }

    bool channelEvents(Edit& edit, EditChannel& ch,
                       const std::vector<std::pair<const OtioJson*, std::string>>& items, double origin,
                       double winLo, double winHi, const OtioJson* trackEffects,
                       const std::string& trackPath) {
        // Place the items end to end; transitions take no time of their own.
        std::vector<Placed> placed;
        double pos = origin;
        for (const auto& [obj, path] : items) {
            Schema s;
            if (!schema(*obj, s))
                return false;
            Placed p;
            p.obj = obj;
            p.path = path;
            p.kind = kindOf(s);
            if (p.kind == Kind::Skip) {
                skipped(*obj, s);
                continue;
            }
            if (!optString(*obj, "name", p.name))
                return false;
            p.start = p.end = pos;
            if (p.kind == Kind::Transition) {
                if (!transitionOffsets(*obj, p))
                    return false;
                placed.push_back(std::move(p));
                continue;
            }
            double d = 0.0;
            if (!duration(*obj, p.kind, d, p.sourceStart))
                return false;
            p.end = pos + d;
            pos = p.end;
            bool enabled = true;
            if (!optBool(*obj, "enabled", enabled) || !markers(*obj, p.start - p.sourceStart))
                return false;
            if (!enabled)
                p.kind = Kind::Gap;
            placed.push_back(std::move(p));
        }
        if (!sideTransitions(placed))
            return false;

        // The cels that show. Nothing shows before the track's start, not even a transition's
        // first half.
        std::vector<double> los(placed.size()), his(placed.size());
        std::vector<bool> shows(placed.size()), needed(placed.size());
        double lastEnd = std::max(winLo, origin);
        for (size_t i = 0; i < placed.size(); ++i) {
            const Placed& p = placed[i];
            double lo = p.kind == Kind::Transition ? p.start - p.inOffset : p.start + p.givenIn;
            double hi = p.kind == Kind::Transition ? p.start + p.outOffset : p.end - p.givenOut;
            los[i] = std::max({lo, winLo, lastEnd});
            his[i] = std::min(hi, winHi);
            shows[i] = his[i] > los[i];
            if (shows[i])
                lastEnd = his[i];
        }
        // Graphs are made for what shows and for the sides of transitions that show, so that
        // nothing trimmed away hangs in the edit as an orphan.
        for (size_t i = 0; i < placed.size(); ++i) {
            needed[i] = needed[i] || shows[i];
            if (placed[i].kind == Kind::Transition && shows[i])
                for (int side : {placed[i].prev, placed[i].next})
                    if (side >= 0)
                        needed[static_cast<size_t>(side)] = true;
        }
        for (size_t i = 0; i < placed.size(); ++i) {
            Placed& p = placed[i];
            if (!needed[i])
                continue;
            if (p.kind == Kind::Clip && !clipGraph(edit, p, ch.type))
                return false;
            if ((p.kind == Kind::Stack || p.kind == Kind::Track) && !compoundGraph(edit, p, ch.type))
                return false;
        }
        for (size_t i = 0; i < placed.size(); ++i)
            if (placed[i].kind == Kind::Transition && shows[i] &&
                !transitionGraph(edit, placed, placed[i], ch.type))
                return false;

        for (size_t i = 0; i < placed.size(); ++i) {
            if (!shows[i])
                continue;
            const Placed& p = placed[i];
            CelEvent ev;
            ev.start = los[i];
            ev.end = his[i];
            Zk::Ptr<FXGraphNodeBase> root = p.root;
            if (root && !effectsChain(edit, trackEffects, trackPath, "@" + p.path, root, ch.type))
                return false;
            if (!root) {
                ev.kind = CelEvent::Black;
            } else if (auto* m = dynamic_cast<MaterialUsageNode*>(root.get())) {
                ev.kind = CelEvent::Material;
                ev.strip = m->material();
            } else {
                ev.kind = CelEvent::Graph;
                ev.strip = Cookie(Cookie::EffectGraphKind, root->getId());
            }
            ev.node = root;
            ch.cel->events().push_back(ev);
        }
        return true;
    }

    bool transitionOffsets(const OtioJson& obj, Placed& p) {
        for (auto [key, out] : {std::pair{"in_offset", &p.inOffset}, std::pair{"out_offset", &p.outOffset}}) {
            const OtioJson* v = obj.find(key);
            if (!v || v->isNull())
                continue;
            if (!rational(*v, *out))
                return false;
            if (*out < 0.0)
                return fail(*v, std::string("expected an \"") + key + "\" of 0 or more");
        }
        return true;
    }

    // Finds each transition's sides and takes its time from them; refuses transitions that meet
    // or that need more of a side than it has.
    bool sideTransitions(std::vector<Placed>& placed) {
        for (size_t i = 0; i < placed.size(); ++i) {
            Placed& t = placed[i];
            if (t.kind != Kind::Transition)
                continue;
            if (i > 0 && placed[i - 1].kind == Kind::Transition)
                return fail(*t.obj, "expected an item between two transitions, which would overlap");
            if (i > 0) {
                t.prev = static_cast<int>(i - 1);
                placed[i - 1].givenOut = t.inOffset;
                placed[i - 1].outBy = static_cast<int>(i);
            }
            if (i + 1 < placed.size() && placed[i + 1].kind != Kind::Transition) {
                t.next = static_cast<int>(i + 1);
                placed[i + 1].givenIn = t.outOffset;
                placed[i + 1].inBy = static_cast<int>(i);
            }
        }
        for (const Placed& p : placed) {
            if (p.kind == Kind::Transition)
                continue;
            double length = p.end - p.start;
            if (p.givenIn + p.givenOut > length + kEps) {
                const Placed& t = placed[static_cast<size_t>(p.outBy >= 0 ? p.outBy : p.inBy)];
                std::ostringstream s;
                s << "expected transitions that do not overlap: they take " << p.givenIn + p.givenOut
                  << " s of \"" << p.name << "\", which lasts " << length << " s";
                return fail(*t.obj, s.str());
            }
        }
        return true;
    }

    // --- graphs -------------------------------------------------------------------------------
    static void link(Edit& edit, FXGraphNodeBase& node, unsigned input,
                     const Zk::Ptr<FXGraphNodeBase>& from) {
        FXGraphNodeBase::Input& in = node.input(input);
        in.node = from;
        in.track = from ? edit.newTrackId() : IdStamp();
    }

    bool clipGraph(Edit& edit, Placed& p, EditChanType type) {
        bool ok = true;
        const OtioJson* ref = mediaReference(*p.obj, ok);
        if (!ok)
            return false;
        EditMaterial mat;
        mat.source = type == kAudioChan ? "tone" : "slate";
        std::string refName;
        if (ref) {
            Schema s;
            if (!schema(*ref, s))
                return false;
            if (!optString(*ref, "name", refName))
                return false;
            if (s.version != 1) {
                skipped(*ref, s);
            } else if (s.name == "ExternalReference") {
                std::string url;
                if (!optString(*ref, "target_url", url))
                    return false;
                std::string file = mediaPath(url, baseDir_);
                if (lower(file).size() > 5 && endsWith(lower(file), ".otio"))
                    return nestedTimeline(edit, p, *ref, file, type);
                if (isImageFile(file) && type != kAudioChan) {
                    mat.source = "image";
                    mat.file = String(file);
                }
            } else if (s.name == "ImageSequenceReference") {
                std::string file;
                if (!firstFrame(*ref, file))
                    return false;
                if (isImageFile(file) && type != kAudioChan) {
                    mat.source = "image";
                    mat.file = String(file);
                }
            } else if (s.name == "GeneratorReference") {
                std::string kind;
                if (!optString(*ref, "generator_kind", kind))
                    return false;
                std::string k = squeezed(kind);
                if (type == kAudioChan)
                    mat.source = "tone";
                else if (k.find("bars") != std::string::npos)
                    mat.source = "bars";
                else if (k == "ramp" || k == "gradient")
                    mat.source = "ramp";
                else if (k == "grid" || k == "noise")
                    mat.source = String(k);
            } else if (s.name != "MissingReference") {
                skipped(*ref, s);
            }
        }
        mat.name = toWide(String(p.name.empty() ? refName : p.name));
        return materialClip(edit, p, type, mat);
    }

    // The clip's own material and its node, under the clip's effects.
    bool materialClip(Edit& edit, Placed& p, EditChanType type, EditMaterial mat) {
        mat.cookie = Cookie(Cookie::MaterialKind, id(p.path + "/media"));
        edit.materials().push_back(mat);
        auto node = Zk::make<MaterialUsageNode>(id(p.path), mat.cookie);
        node->setName(mat.name);
        node->setSource(mat.source);
        node->setFile(mat.file);
        node->setChanType(type);
        edit.addNode(node);
        p.root = node;
        return effectsChain(edit, p.obj->find("effects"), p.path, "", p.root, type);
    }

    // The file of an image sequence's first frame.
    bool firstFrame(const OtioJson& ref, std::string& file) {
        std::string base, prefix, suffix;
        double start = 1.0, padding = 0.0;
        if (!optString(ref, "target_url_base", base) || !optString(ref, "name_prefix", prefix) ||
            !optString(ref, "name_suffix", suffix))
            return false;
        if (ref.find("start_frame") && !number(ref, "start_frame", start))
            return false;
        if (ref.find("frame_zero_padding") && !number(ref, "frame_zero_padding", padding))
            return false;
        if (std::fabs(start) > 1e15)
            return fail(*ref.find("start_frame"), "expected a frame number below 10^15");
        std::string digits = std::to_string(static_cast<long long>(std::llround(std::fabs(start))));
        size_t pad = padding > 0 && padding < 32 ? static_cast<size_t>(padding) : 0;
        if (digits.size() < pad)
            digits.insert(0, pad - digits.size(), '0');
        if (start < 0)
            digits.insert(0, "-");
        if (!base.empty() && base.back() != '/')
            base += '/';
        file = mediaPath(base + prefix + digits + suffix, baseDir_);
        return true;
    }

    bool compoundGraph(Edit& edit, Placed& p, EditChanType type) {
        auto node = Zk::make<CompoundEffect>(id(p.path));
        EditPtr inner(new Edit());
        inner->setCookie(Cookie(Cookie::EditKind, id(p.path + "/edit")));
        inner->setName(toWide(String(p.name)));
        int counts[2] = {0, 0};
        bool ok = p.kind == Kind::Stack ? stackChannels(*inner, *p.obj, p.path, 0.0, type)
                                        : childChannel(*inner, *p.obj, Kind::Track, p.path, p.path + "/track",
                                                       0.0, type, counts, true);
        if (!ok)
            return false;
        finishCompound(edit, *node, inner, p, type,
                       p.kind == Kind::Stack ? "Compound:Stack" : "Compound:Track", p.sourceStart - p.start);
        p.root = node;
        return effectsChain(edit, p.obj->find("effects"), p.path, "", p.root, type);
    }

    void finishCompound(Edit& edit, CompoundEffect& node, const EditPtr& inner, const Placed& p,
                        EditChanType type, const char* tag, double offset) {
        double end = inner->getStartTime();
        for (int i = 0; i < inner->numChans(); ++i)
            end = std::max(end, inner->chan(i).cel->get_end_time());
        inner->setTimes(inner->getStartTime(), end);
        node.setTagTypeId(tag);
        node.setName(toWide(String(p.name)));
        node.setChanType(type);
        node.setInnerEdit(inner);
        node.setTimeOffset(offset);
        for (int i = 0; i < inner->numChans(); ++i) {
            if (inner->chan(i).type != type)
                continue;
            node.setNumInputs(node.getNumInputs() + 1);
            node.input(node.getNumInputs() - 1).track = inner->chan(i).id;
        }
        edit.addNode(Zk::Ptr<FXGraphNodeBase>(&node));
    }

    // A clip whose media is another timeline file: a compound effect of that timeline.
    bool nestedTimeline(Edit& edit, Placed& p, const OtioJson& ref, const std::string& file,
                        EditChanType type) {
        std::error_code ec;
        std::filesystem::path canon = std::filesystem::weakly_canonical(file, ec);
        std::string key = ec ? file : canon.string();
        for (size_t i = 0; i < chain_.size(); ++i)
            if (chain_[i] == key) {
                std::string ring;
                for (size_t j = i; j < chain_.size(); ++j)
                    ring += chain_[j] + " -> ";
                const OtioJson* url = ref.find("target_url");
                return fail(url ? *url : ref,
                            "expected timelines that do not refer to each other in a ring: " + ring + key);
            }
        std::string text;
        if (!std::filesystem::is_regular_file(file, ec) ||
            std::filesystem::file_size(file, ec) > kMaxReferencedFile || ec || !readFile(file, text)) {
            warn(ref, "the timeline \"" + file + "\" cannot be read; its clip is shown as a slate");
            EditMaterial mat;
            mat.name = toWide(String(p.name));
            mat.source = type == kAudioChan ? "tone" : "slate";
            return materialClip(edit, p, type, mat);
        }
        if (chain_.size() >= kMaxReferenceDepth)
            return fail(ref, "expected timelines nested by reference at most " +
                                 std::to_string(kMaxReferenceDepth) + " deep");
        OtioJson root;
        std::string err;
        if (!OtioJson::parse(text, file, root, err)) {
            error = err;
            return false;
        }
        std::vector<std::string> chain = chain_;
        chain.push_back(key);
        Importer nested(text, file, chain, report_, idPrefix_ + p.path + "@");
        EditPtr inner(new Edit());
        if (!nested.timeline(root, *inner)) {
            error = nested.error;
            return false;
        }
        auto node = Zk::make<CompoundEffect>(id(p.path));
        double offset = (p.obj->find("source_range") ? p.sourceStart : inner->getStartTime()) - p.start;
        finishCompound(edit, *node, inner, p, type, "Compound:Timeline", offset);
        p.root = node;
        return effectsChain(edit, p.obj->find("effects"), p.path, "", p.root, type);
    }

    static bool readFile(const std::string& path, std::string& text) {
        std::ifstream f(path, std::ios::binary);
        if (!f)
            return false;
        std::ostringstream buf;
        buf << f.rdbuf();
        text = buf.str();
        return true;
    }

    bool transitionGraph(Edit& edit, const std::vector<Placed>& placed, Placed& t, EditChanType type) {
        std::string kind;
        if (!optString(*t.obj, "transition_type", kind))
            return false;
        auto fx = Zk::make<EffectInstance_opu4h5a4j>(id(t.path));
        std::string k = squeezed(kind);
        if (kind.empty() || k == "smptedissolve" || k.find("dissolve") != std::string::npos)
            fx->setTagTypeId("Transition:Dissolve");
        else if (k.find("wipe") != std::string::npos)
            fx->setTagTypeId("Transition:Wipe");
        else
            fx->setTagTypeId(String("Transition:" + kind));
        fx->setName(
            toWide(String(t.name.empty() ? (kind.empty() ? std::string("Dissolve") : kind) : t.name)));
        fx->setChanType(type);
        fx->setParam("in_offset", t.inOffset);
        fx->setParam("out_offset", t.outOffset);
        fx->setParam("duration", t.inOffset + t.outOffset);
        fx->setNumInputs(2);
        link(edit, *fx, 0, t.prev >= 0 ? placed[static_cast<size_t>(t.prev)].root : nullptr);
        link(edit, *fx, 1, t.next >= 0 ? placed[static_cast<size_t>(t.next)].root : nullptr);
        edit.addNode(fx);
        t.root = fx;
        return true;
    }

    static String effectTag(const Schema& s, const std::string& effectName) {
        if (s.name == "LinearTimeWarp")
            return "Retime:LinearTimeWarp";
        if (s.name == "FreezeFrame")
            return "Retime:FreezeFrame";
        std::string k = squeezed(effectName);
        if (k == "blur" || k == "gaussianblur")
            return "PixShader:Blur:gaussian.fx";
        if (k == "colorcorrection" || k == "colourcorrection" || k == "colorcorrect" || k == "colourcorrect")
            return "PixShader:Colour:correct.fx";
        if (k == "blackandwhite" || k == "monochrome" || k == "mono" || k == "desaturate")
            return "PixShader:Colour:mono.fx";
        if (k == "sepia")
            return "PixShader:Colour:sepia.fx";
        if (k == "vignette")
            return "PixShader:Geometry:vignette.fx";
        if (k == "crop")
            return "PixShader:Geometry:crop.fx";
        if (k == "lineartimewarp" || k == "freezeframe")
            return String("Retime:" + effectName);
        return String("Effect:" + (effectName.empty() ? std::string("Unnamed") : effectName));
    }

    // Numbers of an effect: its own numeric members, and those of its metadata by dotted path.
    static void numericParams(const OtioJson& obj, const std::string& prefix, int depth,
                              EffectInstance_opu4h5a4j& fx) {
        for (size_t i = 0; i < obj.keys.size(); ++i) {
            const std::string& key = obj.keys[i];
            const OtioJson& v = obj.items[i];
            if (v.isNumber() && std::isfinite(v.number))
                fx.setParam(prefix + key, v.number);
            else if (v.isObject() && depth > 0)
                numericParams(v, prefix.empty() && key == "metadata" ? std::string() : prefix + key + ".",
                              depth - 1, fx);
        }
    }

    // Chains a list of effects over `root`, each fed by the one before; `root` becomes the last.
    bool effectsChain(Edit& edit, const OtioJson* list, const std::string& ownerPath,
                      const std::string& idSuffix, Zk::Ptr<FXGraphNodeBase>& root, EditChanType type) {
        if (!list || list->isNull())
            return true;
        if (!list->isArray())
            return fail(*list, "expected an array of \"effects\"");
        for (size_t k = 0; k < list->items.size(); ++k) {
            const OtioJson& e = list->items[k];
            Schema s;
            if (!schema(e, s))
                return false;
            bool known = s.version == 1 && (s.name == "Effect" || s.name == "LinearTimeWarp" ||
                                            s.name == "FreezeFrame" || s.name == "TimeEffect");
            if (!known) {
                skipped(e, s);
                continue;
            }
            std::string name, effectName;
            bool enabled = true;
            if (!optString(e, "name", name) || !optString(e, "effect_name", effectName) ||
                !optBool(e, "enabled", enabled))
                return false;
            auto fx = Zk::make<EffectInstance_opu4h5a4j>(
                id(ownerPath + "/effects/" + std::to_string(k) + idSuffix));
            fx->setTagTypeId(effectTag(s, effectName.empty() ? s.name : effectName));
            fx->setName(toWide(String(!name.empty() ? name : !effectName.empty() ? effectName : s.name)));
            fx->setChanType(type);
            fx->setEnabled(enabled);
            numericParams(e, "", 4, *fx);
            fx->setNumInputs(1);
            link(edit, *fx, 0, root);
            edit.addNode(fx);
            root = fx;
        }
        return true;
    }

    const std::string& text_;
    const std::string& name_;
    std::vector<std::string> chain_;
    Report& report_;
    std::string idPrefix_;
    std::string baseDir_;
    std::string fileName_;
};

} // namespace

bool loadFromText(const std::string& text, const std::string& name, Edit& into, std::string& error,
                  Report* report) {
    OtioJson root;
    if (!OtioJson::parse(text, name, root, error))
        return false;
    Report local;
    std::error_code ec;
    std::filesystem::path canon = std::filesystem::weakly_canonical(name, ec);
    Importer importer(text, name, {ec ? name : canon.string()}, report ? *report : local);
    Zk::Ptr<Edit> fresh = Zk::make<Edit>();
    if (!importer.timeline(root, *fresh)) {
        error = importer.error;
        return false;
    }
    into.copyStateFrom(*fresh);
    return true;
}

bool load(const std::string& path, Edit& into, std::string& error, Report* report) {
    std::ifstream f(path, std::ios::binary);
    if (!f) {
        error = path + ": cannot be opened";
        return false;
    }
    std::ostringstream buf;
    buf << f.rdbuf();
    return loadFromText(buf.str(), path, into, error, report);
}

EditPtr open(const std::string& path, std::string& error, Report* report) {
    EditPtr e(new Edit());
    if (!load(path, *e, error, report))
        return EditPtr();
    return e;
}

} // namespace OtioReader
