// LastValServer: remembers the value server constructed last in the process.
#pragma once

// Lets an object built right after a server find that server, with no link between them: every
// server is a LastValServer, and its construction makes it the one getLastValServer() returns
// until another is constructed. A server that is destroyed while it is the last one is
// forgotten, so the result is never a dead object.
class LastValServer {
public:
    virtual ~LastValServer();

    static LastValServer* getLastValServer();

protected:
    LastValServer();
    LastValServer(const LastValServer&);
    LastValServer& operator=(const LastValServer&) { return *this; }
};
