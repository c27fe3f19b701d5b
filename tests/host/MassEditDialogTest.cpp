// The workbench's mass-edit dialog over the payment documents: marked rows, the column's frame,
// the update, the message and the refreshed list.
#include "frames/medit/ME_ComboColorEdit.h"
#include "frames/medit/ME_Edit.h"
#include "frames/medit/ME_LayerFrame.h"
#include "host/DocumentForms.h"
#include "host/MassEdit.h"
#include "platform/widgets/DBGrid.h"
#include "tests/host/WorkbenchFixture.h"
#include <QAbstractButton>
#include <QComboBox>
#include <gtest/gtest.h>

namespace frames::test {
namespace {

using workbench::MassEditDialog;

class MassEditDialogs : public WorkbenchHostTest<> {
protected:
    bool said(const QString& part) const {
        for (const QString& m : wb->loggedMessages())
            if (m.contains(part)) return true;
        return false;
    }
};

TEST_F(MassEditDialogs, MarkedDocumentsGetTheColourAndTheListShowsIt) {
    std::unique_ptr<workbench::RecordListForm> list(workbench::makeDocumentList(wb.get()));
    db::AbstractDataSet* docs = list->records();
    QList<int> marked;
    for (int row : {1, 3}) {
        list->grid()->setMarked(row, true);
        docs->setRecNo(row);
        marked << docs->fieldByName("ID_PAYMENT_DOC")->asInteger();
    }
    docs->setRecNo(0);
    MassEditDialog dlg(wb.get(), list.get(), workbench::documentMassEdit());
    QList<int> keys = dlg.keys();
    std::sort(keys.begin(), keys.end());
    std::sort(marked.begin(), marked.end());
    EXPECT_EQ(keys, marked);

    // The column is chosen in the dialog's box; its frame appears with the column's list.
    dlg.columnBox()->setCurrentIndex(dlg.columnBox()->findData("ID_COLOR"));
    auto* f = qobject_cast<TComboColorEdit_ME*>(dlg.frame());
    ASSERT_NE(f, nullptr);
    EXPECT_EQ(f->FieldName(), "ID_COLOR");
    db::DataSet* colours = f->lfNewValue->pFIBDataSet1;
    ASSERT_TRUE(colours->active());
    colours->last();
    const int colour = colours->fieldByName("ID")->asInteger();
    const QString name = colours->fieldByName("NAME")->asString();
    const int othersBefore =
        scalar(
            QString("select count(*) from PAYMENT_DOC where ID_COLOR = %1 and ID_PAYMENT_DOC not in (%2, %3)")
                .arg(colour)
                .arg(marked[0])
                .arg(marked[1]))
            .toInt();
    f->lfNewValue->lcSelect->setKeyValue(colour);

    EXPECT_EQ(dlg.apply(), 2);
    EXPECT_TRUE(said("Изменено записей: 2 из 2.")) << wb->loggedMessages().join("\n").toStdString();
    for (int id : marked) {
        ASSERT_TRUE(docs->locate("ID_PAYMENT_DOC", id));
        EXPECT_EQ(docs->fieldByName("COLOR_NAME")->asString(), name); // the list was read again
    }
    EXPECT_EQ(
        scalar(
            QString("select count(*) from PAYMENT_DOC where ID_COLOR = %1 and ID_PAYMENT_DOC not in (%2, %3)")
                .arg(colour)
                .arg(marked[0])
                .arg(marked[1]))
            .toInt(),
        othersBefore);
}

TEST_F(MassEditDialogs, EveryColumnOffersItsFrameAndARefusedValueIsToldInRussian) {
    std::unique_ptr<workbench::RecordListForm> list(workbench::makeDocumentList(wb.get()));
    MassEditDialog dlg(wb.get(), list.get(), workbench::documentMassEdit());
    ASSERT_EQ(dlg.keys().size(), 1); // nothing marked: the current document
    for (const workbench::MassEditColumn& c : workbench::documentMassEdit().columns) {
        dlg.chooseColumn(c.column);
        ASSERT_NE(dlg.frame(), nullptr) << c.column.toStdString();
        EXPECT_EQ(dlg.frame()->metaObject()->className(), "frames::" + c.frameClass)
            << c.column.toStdString();
        EXPECT_EQ(dlg.frame()->FieldName(), c.column);
    }

    // The number is required: an untouched text frame sends NULL, which the server refuses.
    dlg.chooseColumn("DOC_NUMBER");
    const int id = dlg.keys().first();
    const QString number =
        scalar(QString("select DOC_NUMBER from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id)).toString();
    EXPECT_EQ(dlg.apply(), -1);
    EXPECT_TRUE(
        said("error: Групповое изменение не выполнено: значение не подходит для колонки «Номер документа»"))
        << wb->loggedMessages().join("\n").toStdString();
    EXPECT_EQ(
        scalar(QString("select DOC_NUMBER from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id)).toString(),
        number);
    EXPECT_EQ(scalar("select count(*) from MEDIT_MARKS").toInt(), 0);

    // The branch frame with no branch chosen: nothing runs.
    dlg.chooseColumn("ID_FILIAL");
    EXPECT_EQ(dlg.apply(), -1);
    EXPECT_TRUE(said("warning: Не выбрано новое значение."));

    // What a text frame sent is offered again the next time, for the same column.
    dlg.chooseColumn("STATUS");
    auto* text = qobject_cast<TEdit_ME*>(dlg.frame());
    ASSERT_NE(text, nullptr);
    text->efNewValue->ComboBox->setEditText("Проведён");
    text->efNewValueComboBoxChange(nullptr);
    EXPECT_EQ(dlg.apply(), 1);
    dlg.chooseColumn("ARTICUL");
    dlg.chooseColumn("STATUS");
    text = qobject_cast<TEdit_ME*>(dlg.frame());
    EXPECT_TRUE(text->efNewValue->ComboBox->history().contains("Проведён"));
    EXPECT_TRUE(text->chbNewNull->isChecked());
}

TEST_F(MassEditDialogs, PaymentKindIsChosenOnTheEmbeddedHostForm) {
    std::unique_ptr<workbench::RecordListForm> list(workbench::makeDocumentList(wb.get()));
    for (int row : {0, 1, 2}) list->grid()->setMarked(row, true);
    MassEditDialog dlg(wb.get(), list.get(), workbench::documentMassEdit());
    dlg.chooseColumn("PAYMENT_KIND");
    auto* f = qobject_cast<TLayerFrame_ME*>(dlg.frame());
    ASSERT_NE(f, nullptr);
    auto* layer = qobject_cast<workbench::PaymentKindLayer*>(f->Form());
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(layer->parentWidget(), f->pnLayer);
    EXPECT_TRUE(layer->LayerHiddenControl()->isHidden());

    // No kind chosen: the form refuses and nothing runs.
    EXPECT_EQ(dlg.apply(), -1);
    EXPECT_TRUE(said("warning: Выберите вид оплаты."));
    layer->findChild<QAbstractButton*>("rbKind4")->click();
    EXPECT_EQ(dlg.apply(), 3);
    QStringList kinds;
    for (int id : dlg.keys())
        kinds << scalar(QString("select PAYMENT_KIND from PAYMENT_DOC where ID_PAYMENT_DOC = %1").arg(id))
                     .toString();
    EXPECT_EQ(kinds, QStringList({"4", "4", "4"}));

    // Another column gives the form back to the host as it was.
    dlg.chooseColumn("STATUS");
    EXPECT_EQ(layer->parentWidget(), nullptr);
    EXPECT_FALSE(layer->LayerHiddenControl()->isHidden());
    EXPECT_FALSE(layer->Embedded);
}

} // namespace
} // namespace frames::test
