#pragma once
#include <QString>
#include <stdexcept>
#include <vector>

namespace frames::db {

// A database error: the server's status text plus the codes that let callers tell a lock
// conflict, a lost connection or a violated constraint from anything else.
class Error : public std::runtime_error {
public:
    // RecordChanged: an update found the row no longer as it was read (another user changed or
    // deleted it in between).
    enum class Kind {
        Other,
        LockConflict,
        ConnectionLost,
        ConstraintViolation,
        Configuration,
        RecordChanged
    };

    Error(Kind kind, const QString& text, std::vector<long> gdsCodes = {}, int sqlCode = 0);
    // The same with the context (the statement or database it happened in) kept apart: text()
    // is message + "\n" + context, message() the server's words alone.
    Error(Kind kind, const QString& message, const QString& context, std::vector<long> gdsCodes, int sqlCode);

    Kind kind() const { return kind_; }
    // The server's message and the context, for the trace log.
    const QString& text() const { return text_; }
    // The server's message without the statement.
    const QString& message() const { return message_; }
    const QString& context() const { return context_; }
    // What the user is told: the words given by setUserText; else plain Russian for a lock
    // conflict, a lost connection or a changed record; else the server's message (without the
    // statement).
    QString userText() const;
    void setUserText(const QString& text) { userText_ = text; }
    const std::vector<long>& gdsCodes() const { return codes_; }
    int sqlCode() const { return sqlCode_; }
    bool hasCode(long gds) const;
    bool isLockConflict() const { return kind_ == Kind::LockConflict; }
    bool isConnectionLost() const { return kind_ == Kind::ConnectionLost; }
    bool isConstraintViolation() const { return kind_ == Kind::ConstraintViolation; }
    bool isRecordChanged() const { return kind_ == Kind::RecordChanged; }

    static const QString& lockConflictText();
    static const QString& connectionLostText();
    static const QString& recordChangedText();

    // An error found by our own layer (unknown parameter or field, bad state): Kind::Configuration.
    static Error configuration(const QString& text);

private:
    Kind kind_;
    QString text_;
    QString message_;
    QString context_;
    QString userText_;
    std::vector<long> codes_;
    int sqlCode_;
};

} // namespace frames::db
