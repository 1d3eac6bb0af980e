// Inputs that once crashed a fuzz target, kept under tests/data/fuzz-NAME/, are read again by the
// same reader on every test run; each must be refused or read, never crash.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "host/Edit.h"
#include "host/configb.h"
#include "refhost/edit/EditFile.h"
#include "refhost/json/Json.h"
#include "refhost/stream/EditObjectStore.h"

namespace {

template <class Read>
int replay(const char* target, Read read) {
    const std::filesystem::path dir = std::filesystem::path(NODEDESK_SOURCE_DIR) / "tests/data" / target;
    int seen = 0;
    if (!std::filesystem::is_directory(dir))
        return seen;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        std::ifstream f(entry.path(), std::ios::binary);
        std::stringstream bytes;
        bytes << f.rdbuf();
        read(bytes.str());
        ++seen;
    }
    return seen;
}

} // namespace

TEST(FuzzRegressions, KeptInputsAreReadWithoutHarm) {
    replay("fuzz-editfile", [](const std::string& text) {
        Edit e;
        std::string error;
        if (!EditFile::loadFromText(text, "kept", e, error))
            EXPECT_FALSE(error.empty());
    });
    replay("fuzz-strm", [](const std::string& bytes) {
        EditPtr edit(new Edit);
        std::string error;
        if (isEditObjectStore(bytes))
            unpackEditObjects(*edit, bytes, error);
        else
            unpackEditObject(*edit, "NodePosManager", bytes, error);
        (void)packEditObjects(*edit);
    });
    replay("fuzz-posmanager", [](const std::string& bytes) {
        EditPtr edit(new Edit);
        std::string error;
        unpackEditObject(*edit, "NodePosManager", bytes, error);
    });
    replay("fuzz-json", [](const std::string& text) {
        json::Value v;
        json::ParseError error;
        if (!json::parse(text, v, error))
            EXPECT_FALSE(error.message.empty());
    });
    replay("fuzz-configb", [](const std::string& text) {
        configb c;
        String error;
        configb::fromText(String(text.data(), text.size()), c, error);
    });
}
