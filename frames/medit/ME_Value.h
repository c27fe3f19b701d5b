#pragma once
#include "frames/core/ME_Abs.h"
#include "frames/core/Registry.h"
#include <QCheckBox>

class QGridLayout;

namespace frames {

// What the mass-edit frames with a new and an old value share: the two editors, the "Пусто"
// boxes beside them (checked: send NULL), "Использовать" beside the old one (restrict the update
// to records that still hold the old value), the interplay of the three, and the parameters of
// the update:
//  - editing the new value unchecks chbNewNull; editing the old value unchecks chbOldNull and
//    checks chbUseOldValue (typing an old value turns the restriction on by itself);
//  - checking a "Пусто" box clears its editor and checks the box again (clearing may fire the
//    editor's change handler, which unchecks it);
//  - pfUpdateBeforeExecute: session, then fieldname and kind (SendNameAndKind), new_value,
//    old_value (text, or NULL while "Пусто" is checked), use_old_value ("T"/"F").
// Descendants make the editors, hand them to placeEditors, call NewValueChanged and
// OldValueChanged from the editors' change handlers and give the values as text.
class TTwoValue_ME : public TAbsMEditFrame {
    Q_OBJECT
public:
    explicit TTwoValue_ME(QWidget* parent = nullptr);

    void pfUpdateBeforeExecute(QObject* sender) override;

    virtual void chbNewNullClick(QObject* sender);
    virtual void chbOldNullClick(QObject* sender);

    QCheckBox* chbNewNull;
    QCheckBox* chbOldNull;
    QCheckBox* chbUseOldValue;

protected:
    // Puts the editors beside their boxes: the new one on top, the old one below.
    void placeEditors(QWidget* newEditor, QWidget* oldEditor);
    // Makes the two editors, frames of the registered class cls named prefix + "NewValue" and
    // prefix + "OldValue", and places them.
    template <typename T>
    void makeEditors(const char* cls, const QString& prefix, T*& newEditor, T*& oldEditor) {
        newEditor = innerFrame<T>(cls, prefix + QStringLiteral("NewValue"), this);
        oldEditor = innerFrame<T>(cls, prefix + QStringLiteral("OldValue"), this);
        placeEditors(newEditor, oldEditor);
    }
    QGridLayout* grid() const { return grid_; }

    // The switches' reaction to a change the user made in an editor.
    void NewValueChanged();
    void OldValueChanged();

    // The values as the statement gets them (called only while "Пусто" is unchecked); may
    // throw to stop the update.
    virtual QString NewValueText() = 0;
    virtual QString OldValueText() = 0;
    virtual void ClearNewValue() = 0;
    virtual void ClearOldValue() = 0;
    // fieldname when the statement has it, kind (REFADD_KIND) when it has it.
    virtual void SendNameAndKind();

private:
    QGridLayout* grid_;
};

// A frame of the registered class cls, named name, made inside parent.
template <typename T> T* innerFrame(const char* cls, const QString& name, QWidget* parent) {
    auto* f = static_cast<T*>(Registry::instance().create(QString::fromLatin1(cls), parent));
    f->setObjectName(name);
    return f;
}

// Wraps a control's handler so that the frame's own runs after the one already there.
template <typename... Args, typename F>
std::function<void(Args...)> chained(std::function<void(Args...)> first, F then) {
    return [first = std::move(first), then = std::move(then)](Args... args) {
        if (first) first(args...);
        then(args...);
    };
}

} // namespace frames
