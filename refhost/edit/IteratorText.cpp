// The text form of graph positions, as node commands carry them in their messages.
#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

#include "host/Edit.h"
#include "host/EditGraphIterator.h"
#include "host/FXEditor.h"
#include "host/VobManager.h"

namespace {

constexpr size_t kMaxPathLength = 4096;

// Splits off the text up to the next ';' (or the end); false when nothing is left.
bool nextField(std::string_view& rest, std::string_view& field) {
    if (rest.data() == nullptr)
        return false;
    const size_t semi = rest.find(';');
    field = rest.substr(0, semi);
    rest = semi == std::string_view::npos ? std::string_view() : rest.substr(semi + 1);
    return true;
}

bool readId(std::string_view text, IdStamp& out) {
    IdStamp id(std::string(text).c_str());
    if (!id.valid())
        return false;
    out = id;
    return true;
}

} // namespace

String EditGraphIteratorState::asString() const {
    std::string out = edit ? edit->cookie().asString().str() : std::string("-");
    out += ';';
    out += rootChan.valid() ? rootChan.asString().str() : std::string("-");
    out += stringFormat(";%.17g;%d;", time, options).str();
    for (size_t i = 0; i < path.size(); ++i) {
        if (i)
            out += ',';
        out += path[i].asString().str();
    }
    return String(out);
}

EditGraphIteratorState::EditGraphIteratorState(const LightweightString<char>& text) {
    std::string_view rest = text.view();
    std::string_view cookieText, chanText, timeText, optionsText, pathText;
    if (!nextField(rest, cookieText) || !nextField(rest, chanText) || !nextField(rest, timeText) ||
        !nextField(rest, optionsText) || !nextField(rest, pathText) || rest.data() != nullptr)
        return;
    const Cookie cookie = Cookie::fromString(String(cookieText));
    EditPtr found = cookie.valid() ? VobManager::instance().findEdit(cookie) : EditPtr();
    if (!found)
        return;
    IdStamp chan;
    if (chanText != "-" && !readId(chanText, chan))
        return;
    const std::string timeStr(timeText), optionsStr(optionsText);
    char* end = nullptr;
    const double t = std::strtod(timeStr.c_str(), &end);
    if (timeStr.empty() || *end != '\0' || !std::isfinite(t))
        return;
    const long opts = std::strtol(optionsStr.c_str(), &end, 10);
    if (optionsStr.empty() || *end != '\0' || opts < 0 || opts > 0xFFFF)
        return;
    std::vector<IdStamp> ids;
    while (!pathText.empty() && ids.size() < kMaxPathLength) {
        const size_t comma = pathText.find(',');
        IdStamp id;
        if (!readId(pathText.substr(0, comma), id))
            return;
        ids.push_back(id);
        pathText = comma == std::string_view::npos ? std::string_view() : pathText.substr(comma + 1);
    }
    if (!pathText.empty())
        return;
    edit = found;
    rootChan = chan;
    time = t;
    options = static_cast<int>(opts);
    path = std::move(ids);
}

EditGraphIterator::EditGraphIterator(const LightweightString<char>& text)
    : EditGraphIterator(FXEditor::getIteratorFor(EditGraphIteratorState(text))) {}

double EditGraphIterator::getCompoundAlpha() const {
    if (!isValid())
        return 0.0;
    const auto range = getRange(-1, CelEventPair::kEventRange);
    const double span = range.hi - range.lo;
    if (!(span > 0.0))
        return 0.0;
    const double a = (time_ - range.lo) / span;
    return a < 0.0 ? 0.0 : a > 1.0 ? 1.0 : a;
}
