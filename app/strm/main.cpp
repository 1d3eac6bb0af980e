// nodedesk-strm FILE: prints the chain of layers of a stream file, object by object and layer by
// layer, with every warning and error of the reader in its own words. FILE is either an edit's
// object store or the chain of one object. Exit code 0 when all reads well, 1 when the reader
// reported errors, 2 when FILE cannot be read or is not a stream.
#include "refhost/core/Base64.h"
#include "refhost/json/Json.h"
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "app/strm/LayerPrinter.h"
#include "host/Log.h"
#include "host/PStream.h"
#include "host/StreamClassRegistrar.h"
#include "host/StreamFile.h"
#include "host/Streamable.h"
#include "nodeui/NodeUIPosManager.h"
#include "refhost/stream/ChainShape.h"
#include "refhost/stream/EditObjectStore.h"

namespace {

std::vector<std::string> segments(const std::string& path) {
    std::vector<std::string> out;
    std::size_t from = 0;
    for (std::size_t dot = path.find('.'); dot != std::string::npos; dot = path.find('.', from)) {
        out.push_back(path.substr(from, dot - from));
        from = dot + 1;
    }
    out.push_back(path.substr(from));
    return out;
}

// The registered class whose chain agrees longest with `path`, by short or long names; among
// equals the one with the longest chain. A cut or broken file is thus read as the class it most
// likely holds, and the reader says what is wrong with it.
const StreamClassRegistrar* closestClass(const std::string& path) {
    const std::vector<std::string> want = segments(path);
    const StreamClassRegistrar* best = nullptr;
    std::size_t bestAgree = 0, bestLength = 0;
    for (const StreamClassRegistrar* cls : StreamClassRegistrar::all()) {
        std::vector<std::string> shortNames = segments(cls->shortName().str());
        std::vector<std::string> longNames = segments(cls->longName().str());
        std::size_t agree = 0;
        while (agree < want.size() && agree < shortNames.size() &&
               (want[agree] == shortNames[agree] || want[agree] == longNames[agree]))
            ++agree;
        if (agree > bestAgree || (agree == bestAgree && agree > 0 && shortNames.size() > bestLength)) {
            best = cls;
            bestAgree = agree;
            bestLength = shortNames.size();
        }
    }
    return best;
}

// Reads one object's chain through the table of classes, printing as it goes. True when the
// reader reported no error.
bool dumpObject(const std::string& bytes, const std::string& className, int indent) {
    ChainShape shape(bytes);
    std::string name = className.empty() ? shape.shortPath() : className;
    const StreamClassRegistrar* cls = StreamClassRegistrar::find(String(name));
    if (!cls || (className.empty() && !shape.complete())) {
        cls = closestClass(name);
        if (!cls) {
            std::printf("%*sunknown class %s\n", indent, "",
                        name.empty() ? "(none)" : LayerPrinter::printable(name).c_str());
            return false;
        }
        std::printf("%*sno class has the chain %s; reading it as %s\n", indent, "",
                    LayerPrinter::printable(name).c_str(), cls->longName().c_str());
    }
    StreamFile f(bytes);
    PStream s(&f);
    LayerPrinter printer(stdout, indent);
    s.observer = &printer;
    setLogSink([&](const std::string& line) {
        const bool ended = !line.empty() && line.back() == '\n';
        std::printf("%*s%s\n", printer.currentIndent(), "",
                    LayerPrinter::printable(ended ? line.substr(0, line.size() - 1) : line).c_str());
    });
    Zk::Ptr<Streamable> obj = cls->builder()(s);
    setLogSink(nullptr);
    if (s.inError()) {
        std::string text = s.errors.str();
        if (text.back() == '\n')
            text.pop_back();
        std::printf("%*serror: %s\n", indent, "", LayerPrinter::printable(text).c_str());
    }
    if (!obj)
        std::printf("%*sthe object was dropped\n", indent, "");
    // The object ends where its root's chunk does, whatever the reader made of its layers.
    const uint64_t end = shape.complete() ? shape.end() : f.position();
    if (end < bytes.size())
        std::printf("%*s%llu bytes follow the object\n", indent, "",
                    static_cast<unsigned long long>(bytes.size() - end));
    return !s.inError();
}

} // namespace

int main(int argc, char** argv) {
    const char usage[] = "usage: nodedesk-strm FILE";
    if (argc == 2 && (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h"))) {
        std::puts(usage);
        return 0;
    }
    if (argc != 2 || argv[1][0] == '-') {
        std::fprintf(stderr, "nodedesk-strm: %s\n", usage);
        return 2;
    }
    const std::string path = argv[1];
    StreamFile file;
    std::string error;
    if (!file.load(path, error)) {
        std::fprintf(stderr, "nodedesk-strm: %s\n", error.c_str());
        return 2;
    }
    const std::string& bytes = file.bytes();
    // Refers to the library so that its classes are in the table.
    const String known = NodeUIPosManager::subHierarchyName(false, true);
    (void)known;

    // An edit file carries its objects as base64 text, one per key.
    const size_t first = bytes.find_first_not_of(" \t\r\n");
    json::Value root;
    json::ParseError pe;
    if (first != std::string::npos && bytes[first] == '{' && json::parse(bytes, root, pe) &&
        root.isObject()) {
        const json::Value* objects = root.find("objects");
        if (!objects || !objects->isObject() || objects->members().empty()) {
            std::printf("edit file, no stored objects\n");
            return 0;
        }
        std::printf("edit file, %zu stored objects\n", objects->members().size());
        bool ok = true;
        for (const auto& [key, text] : objects->members()) {
            std::string objectBytes;
            if (!text.isString() || !base64Decode(text.asString(), objectBytes)) {
                std::printf("key \"%s\": not base64 text\n", LayerPrinter::printable(key).c_str());
                ok = false;
                continue;
            }
            std::printf("key \"%s\", %zu bytes\n", LayerPrinter::printable(key).c_str(), objectBytes.size());
            ok = dumpObject(objectBytes, std::string(), 2) && ok;
        }
        return ok ? 0 : 1;
    }
    if (isEditObjectStore(bytes)) {
        std::vector<StoredObjectBytes> objects;
        // The objects before a broken frame, or before bytes after the last object, still print.
        const bool whole = splitEditObjects(bytes, objects, error);
        std::printf("object store, %zu objects\n", objects.size());
        bool ok = whole;
        for (const auto& o : objects) {
            std::printf("key \"%s\", class %s, %zu bytes at %u\n", LayerPrinter::printable(o.key).c_str(),
                        LayerPrinter::printable(o.className).c_str(), o.bytes.size(), o.offset);
            ok = dumpObject(o.bytes, o.className, 2) && ok;
        }
        if (!whole)
            std::printf("object store: %s\n", LayerPrinter::printable(error).c_str());
        return ok ? 0 : 1;
    }
    if (!ChainShape(bytes).startsWithRoot()) {
        std::fprintf(stderr, "nodedesk-strm: %s is not a stream file\n", path.c_str());
        return 2;
    }
    return dumpObject(bytes, std::string(), 0) ? 0 : 1;
}
