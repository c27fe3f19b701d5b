#include "frames/edit/EF_DBDateEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"

namespace frames {

TDBDateEdit_Frame::TDBDateEdit_Frame(QWidget* parent) : TSingleDate_Frame(parent) {
    makeEditor(QStringLiteral("DBDateEdit1"));
    DBDateEdit1 = editor_;
    DBDateEdit1->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    DBDateEdit1->OnClick = [this](QObject* s) { guard([&] { DBDateEdit1Click(s); }); };
    DBDateEdit1->OnEnter = [this](QObject* s) { guard([&] { DBDateEdit1Enter(s); }); };
    DBDateEdit1->OnExit = [this](QObject* s) { guard([&] { DBDateEdit1Exit(s); }); };
    DBDateEdit1->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { DBDateEdit1KeyDown(s, key, m); });
    };
    DBDateEdit1->OnKeyUp = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { DBDateEdit1KeyUp(s, key, m); });
    };
}

void TDBDateEdit_Frame::Init() {
    TSingleDate_Frame::Init();
    if (db::DataSource* bound = editDialogBinding(this)) DBDateEdit1->setDataSource(bound);
    DBDateEdit1->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
}

void TDBDateEdit_Frame::DBDateEdit1Click(QObject*) {
    DateClick();
}

void TDBDateEdit_Frame::DBDateEdit1Enter(QObject*) {
    DateEnter();
}

void TDBDateEdit_Frame::DBDateEdit1Exit(QObject*) {
    DateChange();
}

void TDBDateEdit_Frame::DBDateEdit1KeyDown(QObject*, int& key, Qt::KeyboardModifiers) {
    DateKeyDown(key);
}

void TDBDateEdit_Frame::DBDateEdit1KeyUp(QObject*, int& key, Qt::KeyboardModifiers) {
    DateKeyUp(key);
}

FRAMES_REGISTER(TDBDateEdit_Frame, "edit");

} // namespace frames
