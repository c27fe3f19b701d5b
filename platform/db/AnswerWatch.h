#pragma once
// Bounds how long a call on an open server connection waits for the server's answer. The client
// library waits for ever on a server that accepted the connection and then stopped answering
// (frozen, or its machine gone while the network holds). A call in progress is registered with
// its deadline; when the deadline passes the connection's sockets are shut down, so the waiting
// call returns with the client library's connection error, which the data layer reports as a lost
// connection (and the host offers to reconnect).
#include <vector>

namespace frames::db {

class Database;

// The sockets a process holds now (descriptor numbers).
std::vector<int> openSockets();

// While alive, the calls of `db` on its server connection are watched (nothing is watched for
// the embedded engine or a database without a limit).
class ServerWait {
public:
    explicit ServerWait(const Database* db);
    ~ServerWait();
    ServerWait(const ServerWait&) = delete;
    ServerWait& operator=(const ServerWait&) = delete;

private:
    long ticket_ = -1;
};

} // namespace frames::db
