#include "host/CardChoiceForm.h"
#include "frames/core/Guard.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "host/HostImpl.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/widgets/DBGrid.h"
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

namespace workbench {

using namespace frames;

CardChoiceForm::CardChoiceForm(db::Database* database, db::Transaction* tr, TRunParams& params,
                               QWidget* parent)
    : TfmPersistentForm(parent), params_(params) {
    setObjectName(QStringLiteral("CardForm"));
    setWindowTitle(QStringLiteral("Товарные карточки"));
    resize(560, 420);
    cards_ = new db::DataSet(database, tr, this);
    cards_->setSelectSql(QStringLiteral("select ARTICUL, NAME from CARDSCLA order by ARTICUL"));
    source_ = new db::DataSource(cards_, this);
    grid_ = new ui::DBGrid(this);
    grid_->setObjectName(QStringLiteral("grCards"));
    grid_->setMultiSelect(params.Flag);
    grid_->setCaptions({{"ARTICUL", QStringLiteral("Артикул")}, {"NAME", QStringLiteral("Наименование")}});
    grid_->setDataSource(source_);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &CardChoiceForm::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(grid_, &ui::DBGrid::activated, this, &CardChoiceForm::accept);
    auto* layout = new QVBoxLayout(this);
    if (params.Flag)
        layout->addWidget(
            new QLabel(QStringLiteral("Отметьте карточки (Ctrl+щелчок, пробел) и нажмите OK."), this));
    layout->addWidget(grid_, 1);
    layout->addWidget(buttons);
}

CardChoiceForm::~CardChoiceForm() = default;

void CardChoiceForm::open() {
    const frames::WaitCursor wait;
    cards_->open();
}

void CardChoiceForm::accept() {
    if (!cards_->active() || cards_->isEmpty()) return;
    QStringList lines;
    auto line = [&] {
        return cards_->fieldByName("ARTICUL")->asString() + QLatin1Char('=') +
               cards_->fieldByName("NAME")->asString();
    };
    const int current = cards_->recNo();
    const QString currentArticul = cards_->fieldByName("ARTICUL")->asString();
    if (grid_->markedCount() > 0) {
        QList<db::AbstractDataSet::Bookmark> marks = grid_->markedBookmarks();
        std::sort(marks.begin(), marks.end());
        for (auto b : marks) {
            cards_->gotoBookmark(b);
            lines << line();
        }
        cards_->setRecNo(current);
    } else {
        lines << line();
    }
    params_.EnsureParams().ByName(QStringLiteral("Cards")).Value = lines;
    params_.KeyValue = currentArticul;
    QDialog::accept();
}

HostModule cardChoiceModule() {
    return {QString::fromLatin1(CardChoiceForm::FormName), QStringLiteral("Товарные карточки"), 1003,
            [](HostImpl& host, TRunParams& params, QWidget* parent) {
                CardChoiceForm form(host.RvDatabase(), host.pfReadTransaction(), params, parent);
                form.open();
                return form.exec() == QDialog::Accepted ? 1 : 2;
            }};
}

} // namespace workbench
