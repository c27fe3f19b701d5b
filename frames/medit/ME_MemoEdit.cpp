#include "frames/medit/ME_MemoEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QEvent>

namespace frames {

TMemoEdit_ME::TMemoEdit_ME(QWidget* parent) : TTwoValue_ME(parent) {
    setMinimumSize(300, 215);
    makeEditors("TMemoEdit_Frame", QStringLiteral("mef"), mefNewValue, mefOldValue);
    connect(mefNewValue->Memo, &QPlainTextEdit::textChanged, this,
            [this] { guard([&] { mefNewValueMemoChange(mefNewValue->Memo); }); });
    connect(mefOldValue->Memo, &QPlainTextEdit::textChanged, this,
            [this] { guard([&] { mefOldValueMemoChange(mefOldValue->Memo); }); });
    mefNewValue->Memo->installEventFilter(this);
}

bool TMemoEdit_ME::eventFilter(QObject* watched, QEvent* event) {
    if (watched == mefNewValue->Memo && event->type() == QEvent::FocusOut)
        guard([&] { mefNewValueMemoExit(watched); });
    return TTwoValue_ME::eventFilter(watched, event);
}

void TMemoEdit_ME::mefNewValueMemoChange(QObject*) {
    NewValueChanged();
}

void TMemoEdit_ME::mefOldValueMemoChange(QObject*) {
    OldValueChanged();
}

void TMemoEdit_ME::mefNewValueMemoExit(QObject*) {
    const QString text = mefNewValue->Text();
    if (text.size() <= MaxLength) return;
    if (host()->QuestionBox(QStringLiteral("Длина редактируемого поля превышает допустимую (255 символов). "
                                           "Обрезать значение до допустимых размеров?"))) {
        mefNewValue->Memo->setPlainText(text.left(MaxLength));
    } else {
        // Back into the memo once the focus change under way is over.
        QMetaObject::invokeMethod(
            mefNewValue->Memo, [m = mefNewValue->Memo] { m->setFocus(); }, Qt::QueuedConnection);
    }
}

void TMemoEdit_ME::SendNameAndKind() {
    setParam(QStringLiteral("fieldname"), FieldName());
}

FRAMES_REGISTER(TMemoEdit_ME, "medit");

} // namespace frames
