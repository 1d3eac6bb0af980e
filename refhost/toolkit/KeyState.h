// The keys the toolkit has seen held down.
#pragma once

#include <Qt>

namespace toolkit {
void noteKey(int qtKey, bool down, Qt::KeyboardModifiers mods);
void noteModifiers(Qt::KeyboardModifiers mods);
bool keyDown(int qtKey);
Qt::KeyboardModifiers modifiers();
} // namespace toolkit
