// The workbench as a person reads it: frames found by their Russian names, Qt's own texts in
// Russian, lists that show values as their editors do, nothing cut off.
#include "host/Usability.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "frames/edit/CE_Curs.h"
#include "frames/edit/EF_CalcEdit.h"
#include "frames/edit/EF_DBTimeEdit.h"
#include "frames/edit/EF_Partner.h"
#include "frames/medit/ME_Edit.h"
#include "host/CardChoiceForm.h"
#include "host/CardForms.h"
#include "host/ClassifForm.h"
#include "host/ClientForms.h"
#include "host/ClientReportForm.h"
#include "host/CrmReportForm.h"
#include "host/CurHistoryForm.h"
#include "host/DocumentForms.h"
#include "host/FilterPanel.h"
#include "host/FindForm.h"
#include "host/GridTools.h"
#include "host/MainWindow.h"
#include "host/MassEdit.h"
#include "host/ReferenceForms.h"
#include "host/ReportSettingsForm.h"
#include "host/Workbench.h"
#include "platform/db/DataSet.h"
#include "platform/widgets/CalcEdit.h"
#include "platform/widgets/DBEdit.h"
#include "platform/widgets/DBGrid.h"
#include "platform/widgets/DataSetModel.h"
#include "platform/widgets/TimeEdit.h"
#include "tests/host/WorkbenchFixture.h"
#include <QApplication>
#include <QDialogButtonBox>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QTreeWidget>
#include <functional>
#include <memory>

namespace frames::test {
namespace {

using workbench::FrameEditDialog;
using workbench::RecordListForm;

class Usability : public WorkbenchHostTest<> {
protected:
    // The text the list shows in that column of its current record.
    static QString listText(const RecordListForm& list, const QString& field) {
        const ui::DBGrid* grid = list.grid();
        const int col = grid->columnOfField(field);
        EXPECT_GE(col, 0) << field.toStdString();
        const int row = grid->currentIndex().row();
        return grid->model()->index(row, col).data().toString();
    }
};

TEST_F(Usability, FrameBrowserNamesFramesInRussianAndFindsThemByEitherName) {
    workbench::MainWindow window(wb.get(), &Registry::instance());
    auto* tree = window.findChild<QTreeWidget*>("tvFrames");
    ASSERT_NE(tree, nullptr);
    const QRegularExpression cyrillic("[А-Яа-яЁё]");
    int frames = 0;
    QStringList unnamed;
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        QTreeWidgetItem* family = tree->topLevelItem(i);
        EXPECT_TRUE(family->text(0).contains(cyrillic)) << family->text(0).toStdString();
        for (int j = 0; j < family->childCount(); ++j, ++frames) {
            QTreeWidgetItem* item = family->child(j);
            EXPECT_EQ(item->text(1), item->data(0, Qt::UserRole).toString());
            if (!item->text(0).contains(cyrillic)) unnamed << item->text(1);
        }
    }
    EXPECT_EQ(frames, Registry::instance().classNames().size());
    EXPECT_TRUE(unnamed.isEmpty()) << unnamed.join(", ").toStdString();

    // By caption, any case; by class name; by nothing.
    auto* search = window.findChild<QLineEdit*>("edFrameSearch");
    ASSERT_NE(search, nullptr);
    search->setText("бАНК");
    QStringList shown;
    for (int i = 0; i < tree->topLevelItemCount(); ++i)
        for (int j = 0; j < tree->topLevelItem(i)->childCount(); ++j)
            if (!tree->topLevelItem(i)->child(j)->isHidden())
                shown << tree->topLevelItem(i)->child(j)->text(1);
    EXPECT_TRUE(shown.contains("TBank_LF")) << shown.join(", ").toStdString();
    EXPECT_FALSE(shown.contains("TCity_LF"));
    EXPECT_EQ(window.filterFrames("tbankaccount_lf"), 1);
    EXPECT_EQ(window.filterFrames("нет такого фрейма"), 0);
    for (int i = 0; i < tree->topLevelItemCount(); ++i) EXPECT_TRUE(tree->topLevelItem(i)->isHidden());
    EXPECT_EQ(window.filterFrames(""), frames);
}

TEST_F(Usability, MainWindowComesBackAsTheUserLeftIt) {
    {
        workbench::MainWindow window(wb.get(), &Registry::instance());
        window.resize(900, 500);
        window.findChild<QTreeWidget*>("tvFrames")
            ->setCurrentItem(window.findChild<QTreeWidget*>("tvFrames")
                                 ->findItems("TCity_LF", Qt::MatchExactly | Qt::MatchRecursive, 1)
                                 .value(0));
        ASSERT_NE(window.currentFrame(), nullptr);
        window.close();
    }
    auto again = restarted();
    workbench::MainWindow window(again.get(), &Registry::instance());
    EXPECT_EQ(window.size(), QSize(900, 500));
    ASSERT_NE(window.currentFrame(), nullptr);
    EXPECT_EQ(window.currentFrame()->objectName(), "TCity_LF");
}

TEST_F(Usability, QtStandardTextsAreRussian) {
    ASSERT_TRUE(workbench::installQtTranslations()) << "Qt's Russian translations are missing";
    QDialogButtonBox box(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    EXPECT_EQ(box.button(QDialogButtonBox::Cancel)->text(), "Отмена");
}

// The documents list and the edit dialog show one document's numbers and time alike.
TEST_F(Usability, ListShowsEachColumnAsItsEditorDoes) {
    std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
    ASSERT_TRUE(list->records()->locate("DOC_NUMBER", "ПП-000110"));
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    auto shown = [&](const QString& name) {
        auto* f = qobject_cast<TCalcEdit_Frame*>(dlg.frame(name));
        EXPECT_NE(f, nullptr) << name.toStdString();
        return f ? f->DBCalcEdit->displayText() : QString();
    };
    EXPECT_EQ(listText(*list, "AMOUNT"), shown("TCalcEdit_Frame"));
    EXPECT_EQ(listText(*list, "AMOUNT"), QString("2\u00A0240,75"));
    EXPECT_EQ(listText(*list, "QUANTITY"), shown("TCalcEdit_Frame_QUANTITY"));
    EXPECT_EQ(listText(*list, "QUANTITY"), "18");
    EXPECT_EQ(listText(*list, "CURS"), shown("TCursFrame_CE"));
    auto* time = qobject_cast<TDBTimeEdit_Frame*>(dlg.frame("TDBTimeEdit_Frame"));
    ASSERT_NE(time, nullptr);
    EXPECT_EQ(listText(*list, "DOC_TIME"), time->DBTimeEdit->text());
    EXPECT_EQ(listText(*list, "DOC_TIME"), "10:30");
    // A column no frame edits takes the format of its amount kind: roubles.
    EXPECT_EQ(
        listText(*list, "AMOUNT_RUB"),
        ui::formatFloat(wb->PrecisionRubFormat(), list->records()->fieldByName("AMOUNT_RUB")->asDouble()));
    dlg.reject();
}

TEST_F(Usability, NothingIsCutOff) {
    // Every column of every reference form is as wide as its longest text (within reason).
    for (const auto& def : workbench::referenceForms()) {
        frames::TRunParams params;
        workbench::ReferenceForm form(def, wb->RvDatabase(), wb->pfReadTransaction(), params);
        form.open();
        const ui::DBGrid* grid = form.grid();
        const QFontMetrics fm(grid->font());
        for (int c = 0; c < grid->model()->columnCount(); ++c) {
            if (grid->isColumnHidden(c)) continue;
            int longest = 0;
            for (int r = 0; r < std::min(grid->model()->rowCount(), 200); ++r)
                longest =
                    std::max(longest, fm.horizontalAdvance(grid->model()->index(r, c).data().toString()));
            EXPECT_GE(grid->columnWidth(c), std::min(longest, 340))
                << def.name.toStdString() << " column " << c;
        }
    }

    // A long client name on the document shows its start.
    std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
    ASSERT_TRUE(list->records()->locate("DOC_NUMBER", "ПП-000110"));
    FrameEditDialog dlg(wb.get(), list.get());
    dlg.prepare();
    dlg.show();
    auto* client = qobject_cast<TPartner_EF*>(dlg.frame("TPartner_EF"));
    ASSERT_NE(client, nullptr);
    client->DBEdit->resize(40, client->DBEdit->height());
    ASSERT_FALSE(client->DBEdit->text().isEmpty());
    EXPECT_EQ(client->DBEdit->cursorPosition(), 0);

    // The rate's button says what it is.
    auto* rate = qobject_cast<TCursFrame_CE*>(dlg.frame("TCursFrame_CE"));
    ASSERT_NE(rate, nullptr);
    EXPECT_EQ(rate->siSelect->text(), "...");
    EXPECT_EQ(rate->siSelect->toolTip(), "Выбрать курс из списка");
    dlg.reject();
}

// Every host form, resized by the user and closed, opens at that size after a restart. The edit
// dialogs of different lists keep sizes of their own; a kept size that cannot be read leaves a
// form at its first size.
TEST_F(Usability, EveryHostFormComesBackAtTheSizeTheUserLeftIt) {
    using Make = std::function<TfmPersistentForm*(workbench::HostImpl*)>;
    TRunParams params;
    params.ResultInt = 0; // classifier type
    TRunParams rates;
    rates.EnsureParams().ByName("CurType").Value = "2";
    rates.EnsureParams().ByName("Date").Value = "15.03.2024";
    std::vector<std::unique_ptr<QWidget>> owners; // lists that the dialogs over them need
    const auto documents = [&owners](workbench::HostImpl* h) {
        owners.emplace_back(workbench::makeDocumentList(h));
        return static_cast<RecordListForm*>(owners.back().get());
    };
    const std::vector<std::pair<QString, Make>> forms = {
        {"CrmReportForm",
         [](workbench::HostImpl*) {
             auto* f = new workbench::CrmReportForm(1);
             f->prepare();
             return f;
         }},
        {"ReportSettingsForm",
         [](workbench::HostImpl* h) {
             auto* f = new workbench::ReportSettingsForm(h);
             f->prepare();
             return f;
         }},
        {"ClientReportForm",
         [](workbench::HostImpl* h) {
             auto* f = new workbench::ClientReportForm(h);
             f->prepare();
             return f;
         }},
        {"FilterPanel",
         [](workbench::HostImpl* h) {
             auto* f = new workbench::FilterPanelForm(h);
             f->prepare();
             return f;
         }},
        {"CardListForm",
         [](workbench::HostImpl* h) {
             auto* f = new workbench::CardListForm(h);
             f->open();
             return f;
         }},
        {"BankForm",
         [&params](workbench::HostImpl* h) {
             auto* f = new workbench::ReferenceForm(*workbench::findReferenceForm("BankForm"),
                                                    h->RvDatabase(), h->pfReadTransaction(), params);
             f->open();
             return f;
         }},
        {"CurHistoryForm",
         [&rates](workbench::HostImpl* h) {
             auto* f = new workbench::CurHistoryForm(h->RvDatabase(), h->pfReadTransaction(), rates);
             f->open();
             return f;
         }},
        {"CardForm",
         [&params](workbench::HostImpl* h) {
             auto* f = new workbench::CardChoiceForm(h->RvDatabase(), h->pfReadTransaction(), params);
             f->open();
             return f;
         }},
        {"ClassifForm",
         [&params](workbench::HostImpl* h) {
             auto* f = new workbench::ClassifForm(h->RvDatabase(), h->pfReadTransaction(), params);
             f->open();
             return f;
         }},
        {"DocumentListForm", [](workbench::HostImpl* h) { return workbench::makeDocumentList(h); }},
        {"DocumentEditDialog",
         [&](workbench::HostImpl* h) {
             auto* f = new FrameEditDialog(h, documents(h));
             f->prepare();
             return f;
         }},
        {"MassEditDialog",
         [&](workbench::HostImpl* h) {
             return new workbench::MassEditDialog(h, documents(h), workbench::documentMassEdit());
         }},
        {"FindForm", [](workbench::HostImpl*) { return new workbench::FindForm; }},
        {"GridColumnsDialog",
         [&](workbench::HostImpl* h) { return new workbench::GridColumnsDialog(documents(h)->grid()); }},
    };

    std::map<QString, QSize> first, left;
    for (const auto& [name, make] : forms) {
        std::unique_ptr<TfmPersistentForm> form(make(wb.get()));
        form->show();
        first[name] = form->size();
        form->resize(first[name].width() < 600 ? 610 : 590, first[name].height() < 400 ? 430 : 380);
        left[name] = form->size();
        EXPECT_NE(left[name], first[name]) << name.toStdString();
        form->close();
        EXPECT_FALSE(form->isVisible()) << name.toStdString();
        form.reset(); // before the list it may belong to
        owners.clear();
    }

    auto again = restarted();
    for (const auto& [name, make] : forms) {
        std::unique_ptr<TfmPersistentForm> form(make(again.get()));
        form->show();
        EXPECT_EQ(form->size(), left[name]) << name.toStdString();
        form->close();
        form.reset();
        owners.clear();
    }
    // The client's card is another list's edit dialog: the documents' size is not its own.
    {
        std::unique_ptr<RecordListForm> clients(workbench::makeClientList(again.get()));
        FrameEditDialog card(again.get(), clients.get());
        card.prepare();
        const QSize own = card.size();
        card.show();
        EXPECT_EQ(card.size(), own);
        card.reject();
    }
    // A kept size that is not one: the form opens as it would the first time.
    again->LayoutRoot()->ItemByName("CrmReportForm")->ItemByName("Geometry")->SetAsString("не размер");
    std::unique_ptr<TfmPersistentForm> crm(forms.front().second(again.get()));
    crm->show();
    EXPECT_EQ(crm->size(), first["CrmReportForm"]);
}

// Long work shows the hourglass while it runs and takes it off however it ends; a message box
// shown meanwhile has the arrow.
TEST_F(Usability, LongWorkShowsTheHourglass) {
    ASSERT_EQ(QGuiApplication::overrideCursor(), nullptr);
    std::vector<QString> seen;
    const auto look = [&seen](const QString& what) {
        return [&seen, what](db::AbstractDataSet&) {
            seen.push_back(what + (WaitCursor::shown() ? ": hourglass" : ": arrow"));
        };
    };

    // A report's query, a list read again, a reference form opening.
    workbench::CrmReportForm crm(1);
    crm.prepare();
    crm.result()->beforeOpen.connect(look("CRM report"));
    crm.runReport();
    std::unique_ptr<RecordListForm> list(workbench::makeDocumentList(wb.get()));
    list->records()->beforeOpen.connect(look("list"));
    list->refresh();
    TRunParams params;
    workbench::ReferenceForm bank(*workbench::findReferenceForm("BankForm"), wb->RvDatabase(),
                                  wb->pfReadTransaction(), params);
    bank.dataSet()->beforeOpen.connect(look("reference form"));
    bank.open();
    EXPECT_EQ(seen, (std::vector<QString>{"CRM report: hourglass", "list: hourglass",
                                          "reference form: hourglass"}));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // A mass edit and its list read again after it.
    seen.clear();
    list->grid()->setMarked(0, true);
    workbench::MassEditDialog massEdit(wb.get(), list.get(), workbench::documentMassEdit());
    massEdit.chooseColumn("STATUS");
    auto* text = qobject_cast<TEdit_ME*>(massEdit.frame());
    ASSERT_NE(text, nullptr);
    text->efNewValue->ComboBox->setEditText("Проведён");
    text->efNewValueComboBoxChange(nullptr);
    EXPECT_EQ(massEdit.apply(), 1) << wb->loggedMessages().join("\n").toStdString();
    EXPECT_EQ(seen, std::vector<QString>{"list: hourglass"});
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // A report query that fails: the error is told, the hourglass is gone.
    crm.result()->setSelectSql("select no_such_column from rdb$database");
    EXPECT_FALSE(guard([&] { crm.runReport(); }));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);

    // Nested work stacks; a box in between points with the arrow.
    {
        const WaitCursor outer;
        {
            const WaitCursor inner;
            const WaitCursor::Pause box;
            EXPECT_FALSE(WaitCursor::shown());
        }
        EXPECT_TRUE(WaitCursor::shown());
    }
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

// No button shows an empty square: the ones the workbench gives icons keep their text, and a
// button with neither is found.
TEST_F(Usability, ButtonsShowTextOrIcon) {
    workbench::CardListForm cards(wb.get());
    cards.open();
    cards.show();
    EXPECT_TRUE(workbench::blankButtons(&cards).isEmpty())
        << workbench::blankButtons(&cards).join(", ").toStdString();
    for (QPushButton* b : cards.findChildren<QPushButton*>()) {
        EXPECT_FALSE(b->text().isEmpty()) << b->objectName().toStdString();
        EXPECT_FALSE(b->icon().isNull()) << b->text().toStdString();
    }
    auto* blank = new QToolButton(&cards);
    blank->setObjectName("sbBlank");
    blank->setToolTip("Ничего");
    blank->show();
    EXPECT_EQ(workbench::blankButtons(&cards), QStringList{"sbBlank («Ничего»)"});
    blank->hide();
    EXPECT_TRUE(workbench::blankButtons(&cards).isEmpty());
}

// The CRM report's choices take the height of their tab and its grids their whole width.
TEST_F(Usability, CrmReportUsesItsSpace) {
    workbench::CrmReportForm crm(1);
    crm.prepare();
    crm.resize(900, 640);
    crm.show();
    QApplication::processEvents();
    TAbsEditFrame* groups = crm.frame("TfrmManagerGroups");
    ASSERT_NE(groups, nullptr);
    const QWidget* body = groups->findChild<QWidget*>("body", Qt::FindDirectChildrenOnly);
    ASSERT_NE(body, nullptr);
    EXPECT_GE(body->height(), groups->parentWidget()->height() - 60);
    auto fillsWidth = [](const ui::DBGrid* grid) {
        return grid->horizontalHeader()->length() >= grid->viewport()->width();
    };
    const auto* available = groups->findChild<ui::DBGrid*>("dbgrdUnSelectedManagers");
    ASSERT_NE(available, nullptr);
    EXPECT_TRUE(fillsWidth(available));
    crm.runReport();
    QApplication::processEvents();
    EXPECT_TRUE(fillsWidth(crm.findChild<ui::DBGrid*>("dbgrdResult")));
}

} // namespace
} // namespace frames::test
