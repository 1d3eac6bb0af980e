// ShotVideoMetadata: the picture an edit is made of: size, frame rate, picture shape, the data
// format and the video format the pixels are asked for in.
#pragma once

#include <cstdint>

struct ShotVideoMetadata {
    int width = 1920;
    int height = 1080;
    double frameRate = 25.0;
    // Width over height of the whole picture.
    double aspect = 16.0 / 9.0;
    // Four bytes naming the pixel layout; 0x42475241 reads "ARGB".
    uint32_t dataFormat = 0x42475241;
    // A DigitalVideoFormats id, 0 when none.
    uint32_t formatUID = 0;
};
