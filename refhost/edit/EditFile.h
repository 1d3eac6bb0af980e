// EditFile: edits as JSON files. A load that fails reports "FILE:LINE:COLUMN: what was expected"
// and leaves the edit it was given as it was.
//
// The form of a file:
//   { "format": "nodedesk-edit", "version": 1, "name": "...", "cookie": "E1.0.1",
//     "start": 0, "end": 20, "stereoscopic": false,
//     "materials": [ { "cookie": "M1.0.1", "name": "...", "source": "bars" | "ramp" | "grid" |
//                      "noise" | "tone" | "slate" | "image", "file": "images/x.png" } ],
//     "channels": [ { "id": "1.0.1", "type": "video" | "audio", "subtype": 1, "name": "V1",
//                     "group": "9.0.1",
//                     "events": [ { "start": 0, "end": 5, "black": true }
//                               | { "start": 5, "end": 9, "material": "M1.0.1", "node": "4.0.1" }
//                               | { "start": 9, "end": 12, "graph": "5.0.1", "cookie": "G5.0.1" } ] } ],
//     "nodes": [ { "id": "5.0.1", "kind": "effect" | "image" | "alias" | "material" | "compound",
//                  "name": "...",
//                  "tag": "PixShader:Blur", "enabled": true, "params": { "radius": 2 },
//                  "file": "...", "of": "7.0.1", "material": "M1.0.1", "audio": false,
//                  "inputs": [ {}, { "node": "6.0.1" }, { "track": "1.0.2" }, { "track": null },
//                              { "node": "6.0.2", "ghost": true } ] } ],
//                  (a compound also has "offset": inner minus outer time, and "edit": { a nested
//                   edit of this same form, whose channels its inputs' tracks name })
//     "objects": { "NodePosManager": "<base64 of the object's stream bytes>" } }
// Events of a channel are in time order and do not overlap; gaps are black.
#pragma once

#include <cstdint>
#include <string>

#include "host/Edit.h"

namespace EditFile {

// The largest edit file that is read; a file must also be a regular file, not a device or pipe.
inline constexpr uint64_t kMaxFileBytes = uint64_t{256} << 20;

// Reads an edit from a file into `into`; on failure `into` is untouched.
bool load(const std::string& path, Edit& into, std::string& error);
// The same from text; `name` is used in error messages. Nodes are made as they are read, so that
// a large edit's text is never held as a document as well.
bool loadFromText(const std::string& text, const std::string& name, Edit& into, std::string& error);
// The same, reading the text as one document first: what loadFromText does when members stand in
// an order it cannot follow as it reads, or the text is at fault. Both give the same edit and the
// same errors.
bool loadWholeFromText(const std::string& text, const std::string& name, Edit& into, std::string& error);
// Opens a file as a new edit, or null with the error.
EditPtr open(const std::string& path, std::string& error);

std::string saveToText(const Edit& edit);
bool save(const Edit& edit, const std::string& path, std::string& error);

// How the edit's object store travels inside the file: packing every bound object into bytes and
// reading them back. Installed by the stream layer; without it objects are neither saved nor read.
struct ObjectCodec {
    std::string (*pack)(const Edit& edit, const std::string& key) = nullptr;
    bool (*unpack)(Edit& edit, const std::string& key, const std::string& bytes,
                   std::string& error) = nullptr;
};
void setObjectCodec(const ObjectCodec& codec);

} // namespace EditFile
