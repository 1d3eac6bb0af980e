// Undo under random edits: seeded sequences of changes through the editor's operations (wiring,
// templates, removal, switches, parameters, inputs turned round) and to the time lines (cuts
// moved, cels added and blacked out), each its own undo step. After every step the edit saves and loads back
// to the same text; undoing every step gives the first edit back byte for byte, and redoing them all gives
// the last.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "host/EffectInstance_opu4h5a4j.h"
#include "host/EffectTemplateManager.h"
#include "host/FXEditor.h"
#include "host/MaterialUsageNode.h"
#include "host/VobManager.h"
#include "refhost/edit/EditFile.h"

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr int kSequences = 20;
#else
constexpr int kSequences = 1000;
#endif
constexpr int kSteps = 96; // within the depth of the undo history

class RandomEditor {
public:
    RandomEditor(const EditPtr& edit, const Zk::Ptr<Vob>& vob, uint32_t seed)
        : edit_(edit), vob_(vob), rng_(seed) {}

    // One change as the user would make it, as one undo step; a refused change is a step too.
    std::string step() {
        EasyBackup backup(edit_);
        const double t = edit_->getStartTime() + uniform() * (edit_->getEndTime() - edit_->getStartTime());
        FXEditor ed(edit_);
        Zk::Ptr<FXGraphNodeBase> node = anyNode();
        auto* fx = dynamic_cast<EffectInstance_opu4h5a4j*>(node.get());
        switch (rng_() % 10) {
        case 0: { // wire
            Zk::Ptr<FXGraphNodeBase> from = anyNode();
            if (!fx || !from || fx->getNumInputs() == 0)
                return "wire: none";
            EditGraphIterator to = FXEditor::getIteratorFor(edit_, node->getId(), t, 9);
            const int input = static_cast<int>(rng_() % fx->getNumInputs());
            return ed.connectNodes(to, input, FXEditor::getIteratorFor(edit_, from->getId(), t, 9), true)
                       ? "wire"
                       : "wire: refused";
        }
        case 1: { // unwire
            if (!fx || fx->getNumInputs() == 0)
                return "unwire: none";
            EditGraphIterator to = FXEditor::getIteratorFor(edit_, node->getId(), t, 9);
            return ed.disconnectNodes(to, static_cast<int>(rng_() % fx->getNumInputs()), true)
                       ? "unwire"
                       : "unwire: refused";
        }
        case 2: { // a template onto a node
            const auto& all = EffectTemplateManager::instance().templates();
            if (!node || all.empty())
                return "template: none";
            FXEditor onModule(vob_->getEditModule());
            return onModule.applyEffectsTemplateToNode(all[rng_() % all.size()], node).ok
                       ? "template"
                       : "template: refused";
        }
        case 3: { // remove an effect
            if (!node)
                return "remove: none";
            EditGraphIterator it = FXEditor::getIteratorFor(edit_, node->getId(), t, 9);
            return FXEditor::destroyNode(it, true) ? "remove" : "remove: refused";
        }
        case 4: // switch an effect on or off
            if (!fx)
                return "switch: none";
            fx->setEnabled(!fx->isEnabled());
            edit_->addModification(EditModifications(EditModification(11)), true);
            return "switch";
        case 5: // change a parameter
            if (!fx)
                return "param: none";
            fx->setParam("amount", static_cast<double>(rng_() % 1000) / 8.0);
            edit_->addModification(EditModifications(EditModification(11)), true);
            return "param";
        case 6: { // turn the inputs round
            if (!fx)
                return "cycle: none";
            EditGraphIterator it = FXEditor::getIteratorFor(edit_, node->getId(), t, 9);
            return ed.cycleInputs(it, true) ? "cycle" : "cycle: refused";
        }
        case 7:
            return moveACut();
        case 8:
            return addACel();
        default:
            return removeACel();
        }
    }

private:
    std::vector<CelEvent>& eventsOf(int chan) { return edit_->chan(chan).cel->events(); }
    void announce() { edit_->addModification(EditModifications(EditModification(kModEffectGraph, 0)), true); }

    // Slides the cut between two abutting events of a channel; both keep some length.
    std::string moveACut() {
        if (edit_->numChans() == 0)
            return "cut: none";
        auto& evs = eventsOf(static_cast<int>(rng_() % static_cast<unsigned>(edit_->numChans())));
        for (size_t i = 0; i + 1 < evs.size(); ++i) {
            if (evs[i].end != evs[i + 1].start)
                continue;
            const double lo = evs[i].start, hi = evs[i + 1].end;
            const double at = lo + (hi - lo) * (1 + static_cast<double>(rng_() % 7)) / 8.0;
            evs[i].end = evs[i + 1].start = at;
            announce();
            return "cut";
        }
        return "cut: none";
    }
    // Puts a cel of an edit's material after the last event of a channel.
    std::string addACel() {
        if (edit_->numChans() == 0 || edit_->materials().empty())
            return "add cel: none";
        const int chan = static_cast<int>(rng_() % static_cast<unsigned>(edit_->numChans()));
        const EditMaterial& m = edit_->materials()[rng_() % edit_->materials().size()];
        auto node = Zk::make<MaterialUsageNode>(edit_->newId(), m.cookie);
        node->setName(m.name);
        node->setSource(m.source);
        node->setFile(m.file);
        node->setChanType(edit_->getChanType(chan));
        edit_->addNode(node);
        CelEvent e;
        e.start = edit_->chan(chan).cel->get_end_time();
        e.end = e.start + 1 + static_cast<double>(rng_() % 4);
        e.kind = CelEvent::Material;
        e.strip = m.cookie;
        e.node = node;
        eventsOf(chan).push_back(e);
        announce();
        return "add cel";
    }
    // Blacks out one event of a channel: what it showed stays in the edit, detached.
    std::string removeACel() {
        if (edit_->numChans() == 0)
            return "remove cel: none";
        auto& evs = eventsOf(static_cast<int>(rng_() % static_cast<unsigned>(edit_->numChans())));
        if (evs.empty())
            return "remove cel: none";
        CelEvent& e = evs[rng_() % evs.size()];
        e.kind = CelEvent::Black;
        e.strip = Cookie();
        e.node = nullptr;
        announce();
        return "remove cel";
    }

    double uniform() { return static_cast<double>(rng_() % 10000) / 10000.0; }
    Zk::Ptr<FXGraphNodeBase> anyNode() {
        const auto& nodes = edit_->nodes();
        if (nodes.empty())
            return nullptr;
        auto it = nodes.begin();
        std::advance(it, static_cast<std::ptrdiff_t>(rng_() % nodes.size()));
        return it->second;
    }

    EditPtr edit_;
    Zk::Ptr<Vob> vob_;
    std::mt19937 rng_;
};

} // namespace

TEST(UndoProperty, RandomEditsSaveLoadUndoAndRedoExactly) {
    const char* samples[] = {"showcase.edit.json", "multitrack.edit.json", "shared.edit.json",
                             "transition.edit.json", "mattes.edit.json"};
    for (int seq = 0; seq < kSequences; ++seq) {
        VobManager::instance().reset();
        std::string error;
        const std::string path = std::string(NODEDESK_SOURCE_DIR) + "/samples/" + samples[seq % 5];
        EditPtr edit = EditFile::open(path, error);
        ASSERT_TRUE(edit) << error;
        Zk::Ptr<Vob> vob = VobManager::instance().vobFor(edit, "property");
        RandomEditor editor(edit, vob, static_cast<uint32_t>(seq + 1));
        const std::string first = EditFile::saveToText(*edit);
        std::vector<std::string> done;
        for (int i = 0; i < kSteps; ++i) {
            done.push_back(editor.step());
            const std::string text = EditFile::saveToText(*edit);
            EditPtr again(new Edit);
            ASSERT_TRUE(EditFile::loadFromText(text, "step", *again, error))
                << "sequence " << seq << " step " << i << " (" << done.back() << "): " << error;
            ASSERT_EQ(EditFile::saveToText(*again), text) << "sequence " << seq << " step " << i << " ("
                                                          << done.back() << ") does not load back the same";
        }
        const std::string last = EditFile::saveToText(*edit);
        for (int i = 0; i < kSteps; ++i)
            ASSERT_TRUE(vob->undoRequest()) << "sequence " << seq << ": undo " << i;
        ASSERT_EQ(EditFile::saveToText(*edit), first) << "sequence " << seq << ": undoing all";
        for (int i = 0; i < kSteps; ++i)
            ASSERT_TRUE(vob->redoRequest()) << "sequence " << seq << ": redo " << i;
        ASSERT_EQ(EditFile::saveToText(*edit), last) << "sequence " << seq << ": redoing all";
    }
    VobManager::instance().reset();
}
