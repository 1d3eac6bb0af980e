// EffectTemplateDragItem: the drag item of an effect template, as lists of templates start it.
#pragma once

#include <utility>

#include "host/DragDropItem.h"
#include "host/iEffectTemplateContainer.h"

class EffectTemplateDragItem : public DragDropItem, public iEffectTemplateContainer {
public:
    explicit EffectTemplateDragItem(Zk::Ptr<EffectTemplate> t) : template_(std::move(t)) {}
    DragDropItemType type() const override { return kDragEffectTemplate; }
    Zk::Ptr<EffectTemplate> getEffectTemplate() const override { return template_; }

private:
    Zk::Ptr<EffectTemplate> template_;
};
