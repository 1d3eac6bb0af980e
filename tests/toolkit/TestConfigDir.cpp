// Keeps every toolkit test's preferences in the build folder, whatever the runner sets.
#include <cstdlib>

namespace {

struct ConfigDir {
    ConfigDir() { setenv("NODEDESK_CONFIG_DIR", NODEDESK_BINARY_DIR "/test-config", 0); }
} const configDir;

} // namespace
