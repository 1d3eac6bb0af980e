// Every test program keeps its preferences in a folder of its own under the build folder, so that
// test processes running side by side never read each other's settings, and draws without a
// display, whatever the runner sets.
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace {

struct TestEnvironment {
    TestEnvironment() {
        if (!std::getenv("NODEDESK_CONFIG_DIR")) {
            own = std::string(NODEDESK_BINARY_DIR "/test-config/") + std::to_string(getpid());
            setenv("NODEDESK_CONFIG_DIR", own.c_str(), 1);
        }
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    }
    ~TestEnvironment() {
        std::error_code ignored;
        if (!own.empty())
            std::filesystem::remove_all(own, ignored);
    }
    std::string own;
} testEnvironment;

} // namespace
