#include "frames/edit/EF_DateEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"

namespace frames {

TDateEdit_Frame::TDateEdit_Frame(QWidget* parent) : TSingleDate_Frame(parent) {
    makeEditor(QStringLiteral("DateEdit"));
    DateEdit = editor_;
    DateEdit->OnClick = [this](QObject* s) { guard([&] { DateEditClick(s); }); };
    DateEdit->OnEnter = [this](QObject* s) { guard([&] { DateEditEnter(s); }); };
    DateEdit->OnExit = [this](QObject* s) { guard([&] { DateEditExit(s); }); };
    DateEdit->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { DateEditKeyDown(s, key, m); });
    };
    DateEdit->OnKeyUp = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { DateEditKeyUp(s, key, m); });
    };
}

void TDateEdit_Frame::Clear() {
    DateEdit->clearValue();
    // The next date entered counts as a change, even the one shown before.
    ResetRemembered();
}

void TDateEdit_Frame::DateEditClick(QObject*) {
    DateClick();
}

void TDateEdit_Frame::DateEditEnter(QObject*) {
    DateEnter();
}

void TDateEdit_Frame::DateEditExit(QObject*) {
    DateChange();
}

void TDateEdit_Frame::DateEditKeyDown(QObject*, int& key, Qt::KeyboardModifiers) {
    DateKeyDown(key);
}

void TDateEdit_Frame::DateEditKeyUp(QObject*, int& key, Qt::KeyboardModifiers) {
    DateKeyUp(key);
}

FRAMES_REGISTER(TDateEdit_Frame, "edit");

} // namespace frames
