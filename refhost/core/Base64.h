// Base64 (RFC 4648, with padding) for binary objects carried inside text files.
#pragma once

#include <string>

std::string base64Encode(const std::string& bytes);
// False on any character outside the alphabet or a length that is not a whole number of quads.
bool base64Decode(const std::string& text, std::string& out);
