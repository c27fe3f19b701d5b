#include "PaymentDialog.h"
#include "ExampleHost.h"
#include "PaymentList.h"
#include <QPushButton>
#include <frames/core/Guard.h>
#include <platform/db/DataSet.h>
#include <platform/db/Transaction.h>

namespace example {

PaymentDialog::PaymentDialog(PaymentList* list) : TfmAbsEditDlg(list), list_(list) {
    ui.setupUi(this);
    // The frames come from the designer with their form descriptions and the captions the form
    // gives them; the host points the general-purpose editors at their columns.
    ui.DBEdit_Frame->DBEdit->setDataField(QStringLiteral("DOC_NUMBER"));
    ui.DBDateEdit_Frame->DBDateEdit1->setDataField(QStringLiteral("DOC_DATE"));
    ui.CalcEdit_Frame->DBCalcEdit->setDataField(QStringLiteral("AMOUNT"));
    ui.Color_LF->lcSelect->setDataField(QStringLiteral("ID_COLOR"));
    frames_ = {ui.DBEdit_Frame, ui.DBDateEdit_Frame, ui.CalcEdit_Frame, ui.CursType_LF, ui.Color_LF};
    ui.DBEdit_Frame->SetRequired(true);
    ui.DBDateEdit_Frame->SetRequired(true);
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, [this] { frames::guard([this] { accept(); }); });
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, [this] { frames::guard([this] { reject(); }); });
}

PaymentDialog::~PaymentDialog() {
    if (!closed_) {
        frames::guard([this] {
            if (list_->records()->inEditMode()) list_->records()->cancel();
        });
        closeFrames();
    }
}

void PaymentDialog::prepare() {
    list_->records()->edit();
    for (frames::TAbsEditFrame* f : frames_) {
        f->Init();
        f->RestoreLayout(list_->host()->layoutNode(objectName(), f->objectName()));
    }
    ui.DBEdit_Frame->SetFocus();
}

bool PaymentDialog::save() {
    for (frames::TAbsEditFrame* f : frames_)
        if (f->GetRequired() && f->IsEmpty()) {
            list_->host()->WarningBox(QStringLiteral("Заполните поле «%1».").arg(f->Caption()));
            f->SetFocus();
            return false;
        }
    frames::db::Transaction* tr = list_->writeTransaction();
    try {
        for (frames::TAbsEditFrame* f : frames_) f->Save();
        tr->ensureStarted();
        list_->records()->post();
        tr->commit();
    } catch (...) {
        if (tr->active()) frames::guard([tr] { tr->rollback(); });
        frames::reportError(std::current_exception(), QStringLiteral("Документ не сохранён"));
        return false;
    }
    // The list shows the names of the chosen currency and colour: read the row again.
    frames::guard([this] { list_->records()->refreshRecord(); });
    return true;
}

void PaymentDialog::closeFrames() {
    closed_ = true;
    for (frames::TAbsEditFrame* f : frames_) {
        frames::guard([&] { f->SaveLayout(list_->host()->layoutNode(objectName(), f->objectName())); });
        frames::guard([&] { f->FormClose(); });
    }
    list_->host()->saveLayout();
}

void PaymentDialog::accept() {
    if (!save()) return;
    closeFrames();
    TfmAbsEditDlg::accept();
}

void PaymentDialog::reject() {
    frames::guard([this] {
        if (list_->records()->inEditMode()) list_->records()->cancel();
    });
    closeFrames();
    TfmAbsEditDlg::reject();
}

} // namespace example
