// The view transform through the colour-management library.
#include "refhost/render/module/ViewTransform.h"

#include <OpenColorIO/OpenColorIO.h>
#include <OpenImageIO/imagebufalgo.h>

#include <map>
#include <sstream>

#include "host/Log.h"

namespace OCIO = OCIO_NAMESPACE;

namespace {

// The working space is "sRGB - Texture"; the scene reference is ACES2065-1, the display
// reference CIE XYZ D65.
const char* const kConfig = R"(ocio_profile_version: 2.1

environment: {}
search_path: ""
strictparsing: true
luma: [0.2126, 0.7152, 0.0722]

roles:
  aces_interchange: ACES2065-1
  cie_xyz_d65_interchange: CIE-XYZ-D65
  color_picking: sRGB - Texture
  color_timing: ACEScct
  compositing_log: ACEScct
  data: Raw
  default: sRGB - Texture
  scene_linear: ACEScg
  texture_paint: sRGB - Texture

file_rules:
  - !<Rule> {name: Default, colorspace: default}

displays:
  sRGB - Display:
    - !<View> {name: ACES 1.0 - SDR Video, view_transform: ACES 1.0 - SDR Video, display_colorspace: sRGB - Display}
    - !<View> {name: Un-tone-mapped, view_transform: Un-tone-mapped, display_colorspace: sRGB - Display}
    - !<View> {name: Raw, colorspace: Raw}
  Rec.1886 Rec.709 - Display:
    - !<View> {name: ACES 1.0 - SDR Video, view_transform: ACES 1.0 - SDR Video, display_colorspace: Rec.1886 Rec.709 - Display}
    - !<View> {name: Un-tone-mapped, view_transform: Un-tone-mapped, display_colorspace: Rec.1886 Rec.709 - Display}
    - !<View> {name: Raw, colorspace: Raw}

active_displays: []
active_views: []

view_transforms:
  - !<ViewTransform>
    name: ACES 1.0 - SDR Video
    from_scene_reference: !<BuiltinTransform> {style: "ACES-OUTPUT - ACES2065-1_to_CIE-XYZ-D65 - SDR-VIDEO_1.0"}
  - !<ViewTransform>
    name: Un-tone-mapped
    from_scene_reference: !<BuiltinTransform> {style: "UTILITY - ACES-AP0_to_CIE-XYZ-D65_BFD"}

display_colorspaces:
  - !<ColorSpace>
    name: CIE-XYZ-D65
    family: ""
    isdata: false
  - !<ColorSpace>
    name: sRGB - Display
    isdata: false
    from_display_reference: !<BuiltinTransform> {style: "DISPLAY - CIE-XYZ-D65_to_sRGB"}
  - !<ColorSpace>
    name: Rec.1886 Rec.709 - Display
    isdata: false
    from_display_reference: !<BuiltinTransform> {style: "DISPLAY - CIE-XYZ-D65_to_REC.1886-REC.709"}

colorspaces:
  - !<ColorSpace>
    name: ACES2065-1
    isdata: false
  - !<ColorSpace>
    name: ACEScg
    isdata: false
    to_scene_reference: !<BuiltinTransform> {style: ACEScg_to_ACES2065-1}
  - !<ColorSpace>
    name: ACEScct
    isdata: false
    to_scene_reference: !<BuiltinTransform> {style: ACEScct_to_ACES2065-1}
  - !<ColorSpace>
    name: Linear Rec.709 (sRGB)
    isdata: false
    to_scene_reference: !<GroupTransform>
      children:
        - !<BuiltinTransform> {style: "UTILITY - ACES-AP1_to_LINEAR-REC709_BFD", direction: inverse}
        - !<BuiltinTransform> {style: ACEScg_to_ACES2065-1}
  - !<ColorSpace>
    name: sRGB - Texture
    isdata: false
    to_scene_reference: !<GroupTransform>
      children:
        - !<ExponentWithLinearTransform> {gamma: 2.4, offset: 0.055}
        - !<BuiltinTransform> {style: "UTILITY - ACES-AP1_to_LINEAR-REC709_BFD", direction: inverse}
        - !<BuiltinTransform> {style: ACEScg_to_ACES2065-1}
  - !<ColorSpace>
    name: Raw
    isdata: true
)";

constexpr const char* kWorking = "sRGB - Texture";

} // namespace

struct ViewTransform::State {
    OCIO::ConstConfigRcPtr config;
    std::map<std::string, OCIO::ConstCPUProcessorRcPtr> processors;
};

ViewTransform& ViewTransform::instance() {
    static ViewTransform v;
    return v;
}

ViewTransform::~ViewTransform() = default;

ViewTransform::ViewTransform() : state_(std::make_unique<State>()) {
    try {
        std::istringstream text(kConfig);
        state_->config = OCIO::Config::CreateFromStream(text);
    } catch (const OCIO::Exception& e) {
        Log("view transform: the built-in configuration does not load: %s\n", e.what());
        state_->config = OCIO::Config::CreateRaw();
    }
}

std::vector<std::string> ViewTransform::colourSpaces() const {
    std::vector<std::string> out;
    const auto& c = state_->config;
    for (int i = 0; i < c->getNumColorSpaces(); ++i)
        out.emplace_back(c->getColorSpaceNameByIndex(i));
    return out;
}

std::vector<std::string> ViewTransform::displayViews() const {
    std::vector<std::string> out;
    const auto& c = state_->config;
    for (int d = 0; d < c->getNumDisplays(); ++d) {
        const char* display = c->getDisplay(d);
        for (int v = 0; v < c->getNumViews(display); ++v)
            out.push_back(std::string(display) + "/" + c->getView(display, v));
    }
    return out;
}

bool ViewTransform::knows(const std::string& name) {
    if (name.empty())
        return false;
    auto found = state_->processors.find(name);
    if (found != state_->processors.end())
        return static_cast<bool>(found->second);
    OCIO::ConstCPUProcessorRcPtr cpu;
    try {
        const auto& c = state_->config;
        OCIO::ConstProcessorRcPtr p;
        const size_t slash = name.find('/');
        if (slash != std::string::npos) {
            const std::string display = name.substr(0, slash), view = name.substr(slash + 1);
            bool has = false;
            for (int v = 0; !display.empty() && v < c->getNumViews(display.c_str()); ++v)
                has = has || view == c->getView(display.c_str(), v);
            if (has) {
                auto t = OCIO::DisplayViewTransform::Create();
                t->setSrc(kWorking);
                t->setDisplay(display.c_str());
                t->setView(view.c_str());
                p = c->getProcessor(t);
            }
        } else if (c->getColorSpace(name.c_str())) {
            p = c->getProcessor(kWorking, name.c_str());
        }
        if (p)
            cpu = p->getDefaultCPUProcessor();
    } catch (const OCIO::Exception&) {
        cpu = nullptr;
    }
    state_->processors[name] = cpu;
    return static_cast<bool>(cpu);
}

bool ViewTransform::apply(const std::string& name, OIIO::ImageBuf& image) {
    if (!knows(name)) {
        if (reported_.insert(name).second)
            Log("view transform \"%s\" is not known; pictures are shown as they are\n", name.c_str());
        return false;
    }
    const OIIO::ImageSpec& spec = image.spec();
    if (spec.format != OIIO::TypeDesc::FLOAT || spec.nchannels != 4 || !image.localpixels())
        return false;
    OIIO::ImageBuf straight = OIIO::ImageBufAlgo::unpremult(image);
    if (straight.spec().format != OIIO::TypeDesc::FLOAT || !straight.localpixels())
        return false;
    try {
        OCIO::PackedImageDesc desc(straight.localpixels(), spec.width, spec.height, 4);
        state_->processors[name]->apply(desc);
    } catch (const OCIO::Exception& e) {
        Log("view transform \"%s\" failed: %s\n", name.c_str(), e.what());
        return false;
    }
    image = OIIO::ImageBufAlgo::premult(straight);
    return true;
}
