#include "frames/edit/EF_LinkEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include <QKeyEvent>
#include <QMouseEvent>

namespace frames {

TLinkEdit_Frame::TLinkEdit_Frame(QWidget* parent) : TDBEdit_Frame(parent) {
    DBEdit->installEventFilter(this);
    connect(DBEdit, &QLineEdit::editingFinished, this, [this] { RestyleLink(); });
}

void TLinkEdit_Frame::Init() {
    TDBEdit_Frame::Init();
    RestyleLink();
}

void TLinkEdit_Frame::RestyleLink() {
    link_ = IsLinkText(DBEdit->text().trimmed());
    QPalette pal = DBEdit->palette();
    QFont font = DBEdit->font();
    if (link_) {
        pal.setColor(QPalette::Text, QColor(0, 0, 255));
        font.setUnderline(true);
        DBEdit->setCursor(Qt::PointingHandCursor);
    } else {
        pal.setColor(QPalette::Text, pal.color(QPalette::WindowText));
        font.setUnderline(false);
        DBEdit->unsetCursor();
    }
    DBEdit->setPalette(pal);
    DBEdit->setFont(font);
}

bool TLinkEdit_Frame::OpenLink() {
    const QString text = DBEdit->text().trimmed();
    if (IsLinkText(text) != link_) RestyleLink();
    if (!link_) return false;
    host()->OpenAddress(LinkAddress(text));
    return true;
}

bool TLinkEdit_Frame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == DBEdit) {
        if (event->type() == QEvent::KeyPress) {
            auto* e = static_cast<QKeyEvent*>(event);
            if ((e->key() == Qt::Key_Return || e->key() == Qt::Key_Enter) &&
                (e->modifiers() & Qt::ControlModifier)) {
                bool opened = false;
                guard([&] { opened = OpenLink(); });
                if (opened) return true;
            }
        } else if (event->type() == QEvent::MouseButtonPress) {
            auto* e = static_cast<QMouseEvent*>(event);
            if (e->button() == Qt::LeftButton && (e->modifiers() & Qt::ControlModifier)) {
                bool opened = false;
                guard([&] { opened = OpenLink(); });
                if (opened) return true;
            }
        } else if (event->type() == QEvent::FocusOut) {
            RestyleLink();
        }
    }
    return TDBEdit_Frame::eventFilter(watched, event);
}

} // namespace frames
