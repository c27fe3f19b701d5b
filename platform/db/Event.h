#pragma once
// A multicast event: handlers are plain callables, so an exception thrown by a handler travels
// back to the code that raised the event (Qt signals give no such guarantee).
#include <functional>
#include <utility>
#include <vector>

namespace frames::db {

template <typename... Args> class Event {
public:
    using Handler = std::function<void(Args...)>;
    // Returns a token that can be passed to disconnect().
    int connect(Handler h) {
        handlers_.push_back({++last_, std::move(h)});
        return last_;
    }
    void disconnect(int token) {
        std::erase_if(handlers_, [token](const auto& e) { return e.first == token; });
    }
    void clear() { handlers_.clear(); }
    bool assigned() const { return !handlers_.empty(); }
    void operator()(Args... args) const {
        auto copy = handlers_; // a handler may disconnect itself
        for (auto& [id, h] : copy) h(args...);
    }

private:
    std::vector<std::pair<int, Handler>> handlers_;
    int last_ = 0;
};

} // namespace frames::db
