// A program outside the tree: keeps a position record for a node of a new edit.
#include <cstdio>

#include "host/Edit.h"
#include "nodedesk/Version.h"
#include "nodeui/NodeUIPosManager.h"

int main() {
    EditPtr edit(new Edit);
    edit->addNode(Zk::Ptr<FXGraphNodeBase>(new FXGraphNodeBase(IdStamp(1, 0, 1))));
    Zk::Ptr<NodeUIPosManager> manager = NodeUIPosManager::getManagerFor(edit);
    manager->getRec(IdStamp(1, 0, 1), edit->cookie(), 0.5, 0.25);
    std::printf("nodedesk %s, records %u\n", NODEDESK_VERSION_STRING, manager->numRecs());
    return 0;
}
