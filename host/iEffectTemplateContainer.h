// iEffectTemplateContainer: anything that carries an effect template, such as a dragged item.
#pragma once

#include "host/EffectTemplate.h"
#include "host/iObject.h"

class iEffectTemplateContainer : public virtual iObject {
public:
    virtual Zk::Ptr<EffectTemplate> getEffectTemplate() const = 0;
};
