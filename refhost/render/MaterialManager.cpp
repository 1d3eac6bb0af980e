// Finding the file behind an image clip among the open edits.
#include "host/MaterialManager.h"

#include "host/Edit.h"
#include "host/VobManager.h"

// The open edits are the ones the Vob manager knows: every edit a Vob was made on, and every
// edit registered with it, until it is closed. The first open edit that defines the material
// answers; a material that is not an image, or has no file, gives the empty name.
WString MaterialManager::findFileForImageClip(const Cookie& material) {
    if (!material.valid())
        return WString();
    for (const EditPtr& edit : VobManager::instance().edits()) {
        if (!edit)
            continue;
        if (const EditMaterial* m = edit->findMaterial(material))
            return m->source == "image" && !m->file.empty() ? toWide(m->file) : WString();
    }
    return WString();
}
