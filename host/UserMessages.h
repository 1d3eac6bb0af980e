// makeMessage: tells the user something, in the host's message window and its log.
#pragma once

#include <vector>

#include "host/UIString.h"

// Headless runs only log the text. Every message is also kept, in order, for the session.
void makeMessage(const UIString& text);
const std::vector<WString>& messagesShown();
