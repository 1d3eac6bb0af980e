// Labels of graph node inputs.
#include "host/EffectInstance_opu4h5a4j.h"

namespace {

struct KindLabels {
    const char* prefix;
    const wchar_t* shortLabels[3];
    const wchar_t* longLabels[3];
};

// Two- and three-input kinds name their inputs by role; the rest are numbered. The long labels
// stand side by side under a node, a third of its width apart, so they stay short too.
const KindLabels kKinds[] = {
    {"Transition:", {L"A", L"B", nullptr}, {L"Out", L"In", nullptr}},
    {"PixShader:Mix:key", {L"Bg", L"Fg", L"Key"}, {L"Back", L"Fore", L"Key"}},
    {"PixShader:Mix:", {L"Bg", L"Fg", L"Mix"}, {L"Back", L"Fore", L"Mix"}},
    {"PixShader:Stereo", {L"L", L"R", nullptr}, {L"Left", L"Right", nullptr}},
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
    d.longLabel = getNumInputs() == 1 ? WString(L"Input") : WString(n.c_str());
    return d;
}
