// Drawable: immediate and deferred repaints, and the process-wide redraw bracket.
#include "host/Drawable.h"

#include <vector>

#include "host/Glob.h"

namespace {
int disables = 0;
std::vector<const Glob*> waiting;
} // namespace

void Drawable::draw() {
    if (disables > 0) {
        markOutOfDate();
        if (auto* g = dynamic_cast<const Glob*>(this))
            waiting.push_back(g);
        return;
    }
    drawNow();
}

void Drawable::update() {
    markOutOfDate();
    if (disables > 0)
        if (auto* g = dynamic_cast<const Glob*>(this))
            waiting.push_back(g);
}

void Drawable::disableRedraws() {
    ++disables;
}

void Drawable::enableRedraws() {
    if (disables == 0 || --disables > 0)
        return;
    std::vector<const Glob*> todo;
    todo.swap(waiting);
    for (const Glob* g : todo)
        if (is_good_glob_ptr(g) && g->isOutOfDate())
            const_cast<Glob*>(g)->update();
}

bool Drawable::redrawsDisabled() {
    return disables > 0;
}
