// The library's build version, for the host's about box and its plug-in list.
#include "nodedesk/Version.h"

extern "C" __attribute__((visibility("default"))) const char* nodedeskDllVersionStr() {
    return "nodedesk " NODEDESK_VERSION_STRING " (" __DATE__ ")";
}
