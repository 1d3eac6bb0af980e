// Every test program keeps its preferences in the build folder and draws without a display,
// whatever the runner sets.
#include <cstdlib>

namespace {

struct TestEnvironment {
    TestEnvironment() {
        setenv("NODEDESK_CONFIG_DIR", NODEDESK_BINARY_DIR "/test-config", 0);
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
    }
} const testEnvironment;

} // namespace
