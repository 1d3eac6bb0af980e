// Whole-edit searches inside a search scope give exactly the answers of the plain searches: the
// same node, the same path, for every node of a generated edit with shared nodes, at two times.
#include <gtest/gtest.h>

#include "host/EditGraphSearchScope.h"
#include "host/FXEditor.h"
#include "refhost/edit/EditGenerator.h"

TEST(EditGraphSearchScope, AnswersAsThePlainSearchDoes) {
    GeneratorOptions o;
    o.seed = 5;
    o.nodes = 400;
    o.sharedLinks = 0.3;
    EditPtr edit = generateEdit(o);
    for (double time : {1.0, 1e6}) {
        std::vector<EditGraphIteratorState> plain;
        for (const auto& [id, node] : edit->nodes())
            plain.push_back(FXEditor::getIteratorFor(edit, id, time, 3).getState());
        plain.push_back(FXEditor::getIteratorFor(edit, IdStamp(77, 7, 7), time, 3).getState());
        EditGraphSearchScope scope(edit);
        size_t i = 0;
        for (const auto& [id, node] : edit->nodes()) {
            const EditGraphIteratorState s = FXEditor::getIteratorFor(edit, id, time, 3).getState();
            EXPECT_EQ(s.path, plain[i].path) << id.asString().c_str() << " at " << time;
            EXPECT_EQ(s.rootChan, plain[i].rootChan);
            ++i;
        }
        EXPECT_TRUE(FXEditor::getIteratorFor(edit, IdStamp(77, 7, 7), time, 3).getState().path.empty())
            << "an id in no graph is found in none";
    }
}
