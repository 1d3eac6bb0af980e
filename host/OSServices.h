// OSServices: the operating system services the host offers its plug-ins.
#pragma once

// Key codes for isKeyDown. Below 0x1000000 a code is a character key, upper case for letters.
enum KeyCode : int {
    // The key that makes a node drag carry everything hanging from the node: the Control key.
    KeyTreeMove = 0x1000000,
    KeyShift = 0x1000020,
    KeyControl = 0x1000021,
    KeyAlt = 0x1000023,
};

// The key-state test and the process's clock.
class OSServices {
public:
    virtual ~OSServices() = default;
    // True while the key is held down.
    virtual bool isKeyDown(int keyCode) const;
};

OSServices& OS();
// Milliseconds of a steady clock; only differences mean anything.
double msecsNow();
