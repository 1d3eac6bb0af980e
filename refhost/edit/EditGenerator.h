// EditGenerator: builds large edits for benchmarks and invariant tests, the same for the same
// seed. One video channel holds one graph whose root is node 1.0.1.
#pragma once

#include <cstdint>
#include <string>

#include "host/Edit.h"

struct GeneratorOptions {
    uint32_t seed = 1;
    uint32_t nodes = 1000;      // nodes in the graph, the root included
    double sharedLinks = 0.0;   // the share of effect inputs that link to an existing small subtree
    bool chain = false;         // one input per effect: a tree as deep as it is large
    uint32_t maxInputs = 3;     // inputs of an effect, 1 to this
};

EditPtr generateEdit(const GeneratorOptions& options);

// The graph under the root as Graphviz dot text, edges from input to consumer.
std::string graphToDot(const Edit& edit);
