#pragma once
#include <QString>
#include <stdexcept>
#include <vector>

namespace frames::db {

// A database error: the server's status text plus the codes that let callers tell a lock
// conflict, a lost connection or a violated constraint from anything else.
class Error : public std::runtime_error {
public:
    enum class Kind { Other, LockConflict, ConnectionLost, ConstraintViolation, Configuration };

    Error(Kind kind, const QString& text, std::vector<long> gdsCodes = {}, int sqlCode = 0);

    Kind kind() const { return kind_; }
    const QString& text() const { return text_; }
    const std::vector<long>& gdsCodes() const { return codes_; }
    int sqlCode() const { return sqlCode_; }
    bool hasCode(long gds) const;
    bool isLockConflict() const { return kind_ == Kind::LockConflict; }
    bool isConnectionLost() const { return kind_ == Kind::ConnectionLost; }
    bool isConstraintViolation() const { return kind_ == Kind::ConstraintViolation; }

    // An error found by our own layer (unknown parameter or field, bad state): Kind::Configuration.
    static Error configuration(const QString& text);

private:
    Kind kind_;
    QString text_;
    std::vector<long> codes_;
    int sqlCode_;
};

} // namespace frames::db
