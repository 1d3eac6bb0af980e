// TemplateDragItem: an effect template on its way from a template list to where it is dropped.
#pragma once

#include "host/DragDropItem.h"
#include "host/EffectTemplate.h"

class TemplateDragItem : public DragDropItem {
public:
    explicit TemplateDragItem(Zk::Ptr<EffectTemplate> tmpl) : tmpl_(std::move(tmpl)) {}
    DragDropItemType type() const override { return kDragEffectTemplate; }
    const Zk::Ptr<EffectTemplate>& getTemplate() const { return tmpl_; }

private:
    Zk::Ptr<EffectTemplate> tmpl_;
};
