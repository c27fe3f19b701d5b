#include "frames/filter/FF_Group.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QEvent>
#include <QFocusEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace frames {

namespace {

bool isGroupLetter(QChar c) {
    return c >= QLatin1Char('A') && c <= QLatin1Char('Z');
}

// Blanks and control characters, which the letter list may hold anywhere.
bool isSkipped(QChar c) {
    return c.unicode() >= 1 && c.unicode() <= 32;
}

} // namespace

TGroup_FF::TGroup_FF(QWidget* parent) : TSetFilter_EF(parent) {
    resize(250, 75);
    EditComboBox_EF =
        static_cast<TEditComboBox_EF*>(Registry::instance().create("TEditComboBox_EF", content()));
    EditComboBox_EF->lbSelect->hide();
    contentLayout()->addWidget(EditComboBox_EF);
    EditComboBox_EF->OnComboBoxKeyPress = [this](QObject* s, QChar& key) {
        EditComboBox_EFComboBoxKeyPress(s, key);
    };
    EditComboBox_EF->OnComboBoxChange = [this](QObject* s) { EditComboBox_EFComboBoxChange(s); };
    // Only a move to another control is a leaving: not the window losing the activation (the
    // error box itself does that), nor a popup opening.
    EditComboBox_EF->OnComboBoxExit = [this](QObject* s) {
        if (leavingField_) EditComboBox_EFComboBoxExit(s);
    };
    // Installed after the combo frame's own filter, so it sees the focus change first.
    EditComboBox_EF->ComboBox->installEventFilter(this);
}

bool TGroup_FF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == EditComboBox_EF->ComboBox && event->type() == QEvent::FocusOut) {
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        leavingField_ = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason &&
                        reason != Qt::MenuBarFocusReason;
    }
    return TSetFilter_EF::eventFilter(watched, event);
}

void TGroup_FF::SetReadOnly(bool value) {
    TSetFilter_EF::SetReadOnly(value);
    EditComboBox_EF->SetReadOnly(value);
}

void TGroup_FF::SaveLayout(TConfigItem* node) {
    TSetFilter_EF::SaveLayout(node);
    if (node) EditComboBox_EF->SaveLayout(node->ItemByName(EditComboBox_EF->objectName()));
}

void TGroup_FF::RestoreLayout(TConfigItem* node) {
    TSetFilter_EF::RestoreLayout(node);
    if (node && node->IsExists(EditComboBox_EF->objectName()))
        EditComboBox_EF->RestoreLayout(node->ItemByName(EditComboBox_EF->objectName()));
}

void TGroup_FF::Clear() {
    EditComboBox_EF->Clear();
    TSetFilter_EF::Clear();
}

bool TGroup_FF::IsEmpty() {
    return TSetFilter_EF::IsEmpty() || EditComboBox_EF->Text().trimmed().isEmpty();
}

QStringList TGroup_FF::letters() const {
    QStringList result;
    for (QChar c : EditComboBox_EF->Text())
        if (isGroupLetter(c)) result << QString(c);
    return result;
}

int TGroup_FF::ItemsCount() {
    return int(letters().size());
}

QString TGroup_FF::ItemsItem(int i) {
    const QStringList l = letters();
    return i >= 0 && i < l.size() ? l[i] : QString();
}

bool TGroup_FF::IsCorrectText(const QString& text) {
    const QString t = text.trimmed();
    if (t.isEmpty()) return true;
    bool letterDue = true; // a letter is expected next, else a comma
    for (QChar c : t) {
        if (isSkipped(c)) continue;
        if (letterDue ? !isGroupLetter(c) : c != QLatin1Char(',')) return false;
        letterDue = !letterDue;
    }
    return !letterDue; // the last one was a letter
}

bool TGroup_FF::IsCorrect() {
    return IsCorrectText(EditComboBox_EF->Text());
}

QString TGroup_FF::SQL(const QString& fieldName) {
    const QString text = EditComboBox_EF->Text();
    if (!cbSet->isChecked() || text.trimmed().isEmpty() || !IsCorrectText(text)) return {};
    QString list;
    for (QChar c : text) {
        if (isGroupLetter(c))
            list += QLatin1Char('\'') + QString(c) + QLatin1Char('\'');
        else if (isSkipped(c))
            list += QLatin1Char(' '); // a pasted tab or line break stays a blank in the statement
        else
            list += c;
    }
    return fieldName + " in (" + list + ")";
}

void TGroup_FF::EditComboBox_EFComboBoxKeyPress(QObject*, QChar& key) {
    const char16_t c = key.unicode();
    if (c >= u'a' && c <= u'z') {
        key = QChar(char16_t(c - u'a' + u'A'));
        return;
    }
    const bool admitted = (c >= u'A' && c <= u'Z') || c == u'\b' || c == u'\r' || c == 27 || c == u',' ||
                          c == u'-' || c == u'.';
    if (!admitted) key = QChar();
}

void TGroup_FF::EditComboBox_EFComboBoxChange(QObject*) {
    ContentChanged();
}

void TGroup_FF::EditComboBox_EFComboBoxExit(QObject*) {
    if (refusing_ || IsCorrect()) return;
    ++refusedExits_;
    refusing_ = true;
    struct Reset {
        bool& flag;
        ~Reset() { flag = false; }
    } reset{refusing_};
    EditComboBox_EF->ComboBox->setFocus(Qt::OtherFocusReason);
    TyErrorBox(QStringLiteral("Группа задана не верна"));
}

FRAMES_REGISTER(TGroup_FF, "filter");

} // namespace frames
