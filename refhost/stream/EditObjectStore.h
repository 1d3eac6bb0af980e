// The bytes of an edit's object store: every object bound to the edit by key, each as its
// chain of layers, so that the edit file can carry them.
//
// Layout, little-endian, strings packed as on a PStream (4-byte length, then the bytes):
//   the string "Strm1.0 objects"; a 4-byte count; then per object its key, its class's dotted
//   hierarchy path as the table of classes knows it, a 4-byte length, and that many bytes: the
//   object's chain of layers, read on a stream of its own.
// The length frames each object, so a broken object costs only itself.
#pragma once

#include <string>
#include <vector>

class Edit;

// One object of a store, not yet built.
struct StoredObjectBytes {
    std::string key;
    std::string className;
    unsigned offset = 0; // where the object's chain begins in the store's bytes
    std::string bytes;
};

// True when the bytes begin as an object store does.
bool isEditObjectStore(const std::string& bytes);
// Splits a store into its objects; false with a reason when the frame itself is broken.
bool splitEditObjects(const std::string& bytes, std::vector<StoredObjectBytes>& out, std::string& error);

// Packs every object of the edit, in the order of their keys.
std::string packEditObjects(const Edit& edit);
// One object's bytes for the edit file: its chain of layers alone, whose root chain of short
// names ("$.T.N.J") names its class. Empty when nothing is bound under `key`.
std::string packEditObject(const Edit& edit, const std::string& key);
// Builds an object through the table of classes and binds it under `key`. The class is the one
// the key names where the editor knows the key ("NodePosManager"), else the longest registered
// beginning of the chain's path. The class's reader keeps what it can: layers of a newer revision
// and a chain cut short cost only what they hold (noted in the log); false only when the reader
// drops the object or no class fits.
bool unpackEditObject(Edit& edit, const std::string& key, const std::string& bytes, std::string& error);

// Builds each object as unpackEditObject does, by its key or its stored class path, and binds it
// to the edit under its key, replacing what was bound there. Objects that fail are left out and
// their errors collected; false when anything failed.
bool unpackEditObjects(Edit& edit, const std::string& bytes, std::string& error);
