#include "platform/db/AnswerWatch.h"
#include "platform/db/Database.h"
#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <map>
#include <mutex>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace frames::db {

namespace {

using Clock = std::chrono::steady_clock;

// One thread for the process, started with the first watched call.
class Watch {
public:
    static Watch& instance() {
        static Watch w;
        return w;
    }
    long begin(std::vector<int> sockets, int seconds) {
        std::lock_guard lock(m_);
        const long ticket = ++next_;
        const bool wasEmpty = calls_.empty();
        calls_[ticket] = {Clock::now() + std::chrono::seconds(seconds), std::move(sockets)};
        if (!thread_.joinable()) thread_ = std::thread([this] { run(); });
        // A later deadline than the one the thread waits for needs no wake-up: the thread looks
        // again when that one comes. (Every fetch of a row is a call: this keeps them cheap.)
        if (wasEmpty) cv_.notify_all();
        return ticket;
    }
    void end(long ticket) {
        std::lock_guard lock(m_);
        calls_.erase(ticket);
    }
    ~Watch() {
        {
            std::lock_guard lock(m_);
            stop_ = true;
            cv_.notify_all();
        }
        if (thread_.joinable()) thread_.join();
    }

private:
    struct Call {
        Clock::time_point deadline;
        std::vector<int> sockets;
    };
    void run() {
        std::unique_lock lock(m_);
        while (!stop_) {
            if (calls_.empty()) {
                cv_.wait(lock);
                continue;
            }
            // A copy: the call may end (and its entry go) while this thread waits.
            Clock::time_point earliest = calls_.begin()->second.deadline;
            for (const auto& entry : calls_) earliest = std::min(earliest, entry.second.deadline);
            if (cv_.wait_until(lock, earliest) == std::cv_status::timeout) {
                const auto now = Clock::now();
                for (auto it = calls_.begin(); it != calls_.end();) {
                    if (it->second.deadline <= now) {
                        // The waiting call gets an end of data from its socket and returns.
                        for (int fd : it->second.sockets) ::shutdown(fd, SHUT_RDWR);
                        it = calls_.erase(it);
                    } else {
                        ++it;
                    }
                }
            }
        }
    }
    std::mutex m_;
    std::condition_variable cv_;
    std::map<long, Call> calls_;
    long next_ = 0;
    bool stop_ = false;
    std::thread thread_;
};

} // namespace

std::vector<int> openSockets() {
    std::vector<int> out;
    DIR* dir = ::opendir("/proc/self/fd");
    if (!dir) return out;
    const int own = ::dirfd(dir);
    while (const dirent* e = ::readdir(dir)) {
        char* tail = nullptr;
        const long fd = std::strtol(e->d_name, &tail, 10);
        if (tail == e->d_name || *tail != '\0' || fd == own) continue;
        char target[64] = {};
        const std::string link = std::string("/proc/self/fd/") + e->d_name;
        const ssize_t n = ::readlink(link.c_str(), target, sizeof target - 1);
        if (n > 7 && std::strncmp(target, "socket:", 7) == 0) out.push_back(int(fd));
    }
    ::closedir(dir);
    return out;
}

ServerWait::ServerWait(const Database* db) {
    if (!db || db->options().answerTimeout <= 0 || db->serverSockets().empty()) return;
    ticket_ = Watch::instance().begin(db->serverSockets(), db->options().answerTimeout);
}

ServerWait::~ServerWait() {
    if (ticket_ >= 0) Watch::instance().end(ticket_);
}

} // namespace frames::db
