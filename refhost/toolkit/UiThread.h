// The user-interface thread of the toolkit: the thread that made the application object.
#pragma once

#include <thread>

namespace toolkit {
std::thread::id& uiThread();
}
