// ViewTransform: the project's view transform, applied to stills with the colour-management
// library. Pictures are worked on as sRGB-encoded Rec. 709; the transform takes them to what the
// name asks for:
//   "DISPLAY/VIEW"   a display and view of the configuration, e.g. "sRGB - Display/ACES 1.0 - SDR Video";
//   "COLOURSPACE"    a colour space of the configuration, e.g. "ACEScct", as a conversion from sRGB.
// The configuration is the reference host's own, written in code (the installed library has no
// configurations built in, and stills must not change with the user's environment): the ACES
// colour spaces, linear and encoded Rec. 709, and sRGB and Rec. 1886 displays with an ACES SDR
// view, an un-tone-mapped view and a raw view. An unknown name leaves the pixels as they are and
// is told to the log once.
#pragma once

#include <OpenImageIO/imagebuf.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

class ViewTransform {
public:
    static ViewTransform& instance();

    // Applies the named transform in place; false (pixels untouched) for an unknown name.
    bool apply(const std::string& name, OIIO::ImageBuf& image);
    bool knows(const std::string& name);

    std::vector<std::string> colourSpaces() const;
    std::vector<std::string> displayViews() const;

private:
    ViewTransform();
    ~ViewTransform();
    struct State;
    std::unique_ptr<State> state_;
    std::set<std::string> reported_;
};
