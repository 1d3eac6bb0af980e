// Labels of graph node inputs.
#include "host/EffectInstance_opu4h5a4j.h"

namespace {

struct KindLabels {
    const char* prefix;
    const wchar_t* shortLabels[3];
    const wchar_t* longLabels[3];
};

// Two- and three-input kinds name their inputs by role; the rest are numbered.
const KindLabels kKinds[] = {
    {"Transition:", {L"A", L"B", nullptr}, {L"Outgoing", L"Incoming", nullptr}},
    {"PixShader:Mix:key", {L"Bg", L"Fg", L"Key"}, {L"Background", L"Foreground", L"Key"}},
    {"PixShader:Mix:", {L"Bg", L"Fg", L"Mix"}, {L"Background", L"Foreground", L"Third"}},
    {"PixShader:Stereo", {L"L", L"R", nullptr}, {L"Left eye", L"Right eye", nullptr}},
};

} // namespace

FXGraphNodeIFDescriptor FXGraphNodeBase::getInputDescriptor(unsigned input) const {
    FXGraphNodeIFDescriptor d;
    if (input < inputLabels_.size() && !inputLabels_[input].empty()) {
        d.shortLabel = d.longLabel = inputLabels_[input];
        return d;
    }
    const String& tag = tagTypeId();
    if (getNumInputs() >= 2 && input < 3) {
        for (const KindLabels& k : kKinds) {
            if (tag.startsWith(k.prefix) && k.shortLabels[input]) {
                d.shortLabel = k.shortLabels[input];
                d.longLabel = k.longLabels[input];
                return d;
            }
        }
    }
    const std::wstring n = std::to_wstring(input + 1);
    d.shortLabel = WString(n.c_str());
    d.longLabel = WString((L"Input " + n).c_str());
    return d;
}
