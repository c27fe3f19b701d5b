#pragma once
#include "frames/core/RunParams.h"
#include <QDate>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QStringList>

class QWidget;

namespace frames {
namespace db {
class Database;
class Transaction;
} // namespace db
namespace ui {
class DBGrid;
}

// The services a host application gives the frames. The host installs one implementation at
// start-up with setHost(); the frames reach it through the free functions below.
class Host {
public:
    virtual ~Host() = default;

    // ---- module runner
    // Shows the form registered under name modally; returns 1 when the user confirmed, 2 when
    // the user cancelled. On confirmation the form wrote KeyValue (and ResultInt) into params.
    virtual int RunModule(const QString& formName, TRunParams& params) = 0;
    virtual void ResetParams(TRunParams& params) { params = TRunParams{}; }
    // The registered form of that name (not shown), or nullptr. Its "RefNumber" property is the
    // form's reference number.
    virtual QObject* RvGetForm(const QString& formName) = 0;
    virtual QStringList FormList() const = 0;

    // ---- messages (modal)
    virtual void ErrorBox(const QString& text) = 0;
    virtual void ErrorBoxEx(const QString& text, int detail) = 0;
    virtual void WarningBox(const QString& text) = 0;
    // A warning under a caption of its own (the host's default caption otherwise).
    virtual void WarningBox(const QString& text, const QString& caption) {
        Q_UNUSED(caption);
        WarningBox(text);
    }
    virtual void InfoBox(const QString& text) = 0;
    // Yes/No question: true for Yes.
    virtual bool QuestionBox(const QString& text) = 0;

    // ---- configuration
    virtual int GetIntValue(const QString& key) const = 0;
    virtual bool GetBoolValue(const QString& key) const = 0;
    virtual QString GetStringValue(const QString& key) const = 0;
    virtual QString PrecisionCurFormat() const = 0;
    virtual QString PrecisionQuantityFormat() const = 0;
    virtual QString PrecisionRubFormat() const = 0;
    virtual QString PrecisionVolumeFormat() const = 0;
    virtual QString ProfilePath() const = 0;
    virtual QString IniString(const QString& section, const QString& key, const QString& def) const = 0;

    // ---- database module
    virtual db::Database* RvDatabase() const = 0;
    virtual db::Transaction* pfReadTransaction() const = 0;
    virtual db::Database* ImageDatabase() const = 0;
    virtual bool IsFuncRights(const QString& functionName) const = 0;
    virtual int SessionNumber() const = 0;
    // A database call failed because the connection to the server is lost. The host tells the
    // user (once per loss, not once per failed call) and may offer to reconnect. The default
    // shows the error box.
    virtual void ConnectionLost(const QString& text) { ErrorBox(text); }
    virtual bool NoFileOpenDialog() const { return false; }

    // ---- trace log
    virtual void TraceText(const QString& text, int level) = 0;

    // ---- desktop and tools
    virtual void OpenAddress(const QString& address) = 0; // mail or web address
    virtual void CustomizeGrid(ui::DBGrid* grid) = 0;
    virtual void FindInGrid(ui::DBGrid* grid) = 0;
    // The host's find form over a grid (TFindForm bound with setDBGrid), shown without waiting,
    // its edit holding text. Returns the form (the host owns it), or nullptr when the host has
    // none; the default asks through FindInGrid.
    virtual QWidget* ShowFindForm(ui::DBGrid* grid, const QString& text) {
        Q_UNUSED(text);
        FindInGrid(grid);
        return nullptr;
    }
    virtual QDate Today() const { return QDate::currentDate(); }
    virtual QDateTime Now() const { return QDateTime::currentDateTime(); }
};

void setHost(Host* host);
Host* host(); // throws std::logic_error when no host is installed

// The search a frame opens over one of its grids: the host's find form, its edit holding the
// typed character when one was given and the configuration value "FindEcho" is on, else empty.
QWidget* ShowGridSearch(ui::DBGrid* grid, const QString& character);

// Free functions under the host's names.
inline int RunModule(const QString& formName, TRunParams& p) {
    return host()->RunModule(formName, p);
}
inline void ResetParams(TRunParams& p) {
    host()->ResetParams(p);
}
inline QObject* RvGetForm(const QString& formName) {
    return host()->RvGetForm(formName);
}
inline void TyErrorBox(const QString& text) {
    host()->ErrorBox(text);
}
inline void TyErrorBoxEx(const QString& text, int detail) {
    host()->ErrorBoxEx(text, detail);
}
inline void TyWarningBox(const QString& text) {
    host()->WarningBox(text);
}
inline void TyWarningBox(const QString& text, const QString& caption) {
    host()->WarningBox(text, caption);
}
inline void TraceText(const QString& text, int level = 1) {
    host()->TraceText(text, level);
}
inline Host* TYConfig() {
    return host();
}
inline Host* dmDataBaseFIB() {
    return host();
}

} // namespace frames
