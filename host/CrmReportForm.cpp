#include "host/CrmReportForm.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include "frames/core/RunParams.h"
#include "frames/core/WaitCursor.h"
#include "host/Usability.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/widgets/DBGrid.h"
#include <QBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>

namespace workbench {

namespace {

struct Tab {
    const char* cls;
    const char* caption;
    const char* kindProperty;
};
const Tab kTabs[] = {
    {"TfrmManagerGroups", "Группы менеджеров", "ReportId"},
    {"TCRMManagerSelect_Frame", "Менеджеры", "Kind"},
    {"TCRMFirmSelect_Frame", "Компании", "Kind"},
    {"TCRMProductSelect_Frame", "Продукты", "Kind"},
};

// The chosen companies with the events of the chosen managers (chosen in either manager tab).
const char* const kReportSql =
    "select f.id, f.name,\n"
    "  (select count(*) from FIRM_EVENT e where e.firm = f.id and e.manager in (\n"
    "     select rm.manager_id from CRM_REPORT_MANAGER rm where rm.kind = :kind and rm.owner_id = :user_id\n"
    "     union select m.manager_id from REPORT_MANAGER m where m.report_id = :kind and m.owner_id = "
    ":user_id)) "
    "as events\n"
    "from FIRM f\n"
    "where f.id in (select rf.firm_id from CRM_REPORT_FIRM rf where rf.kind = :kind and rf.owner_id = "
    ":user_id)\n"
    "order by f.name";

} // namespace

CrmReportForm::CrmReportForm(int kind, QWidget* parent) : TfmPersistentForm(parent), kind_(kind) {
    setObjectName(QStringLiteral("CrmReportForm"));
    setWindowTitle(QStringLiteral("Отчёт CRM: события по компаниям"));
    resize(900, 640);
    // The choices above, the report under them; the user moves the line between.
    auto* split = new QSplitter(Qt::Vertical, this);
    split->setObjectName(QStringLiteral("spReport"));
    split->setChildrenCollapsible(false);
    tabs_ = new QTabWidget(split);
    auto* bottom = new QWidget(split);
    auto* bottomLayout = new QVBoxLayout(bottom);
    bottomLayout->setContentsMargins(0, 0, 0, 0);
    auto* run = new QPushButton(QStringLiteral("&Сформировать"), bottom);
    run->setObjectName(QStringLiteral("btRun"));
    setActionIcon(run, "system-run", QStyle::SP_MediaPlay);
    summary_ = new QLabel(bottom);
    auto* bar = new QHBoxLayout;
    bar->addWidget(run);
    bar->addWidget(summary_, 1);
    bottomLayout->addLayout(bar);
    result_ = new frames::db::DataSet(this);
    result_->setSelectSql(QString::fromUtf8(kReportSql));
    grid_ = new frames::ui::DBGrid(bottom);
    grid_->setObjectName(QStringLiteral("dbgrdResult"));
    grid_->setReadOnly(true);
    grid_->setDataSource(new frames::db::DataSource(result_, this));
    grid_->setColumns({QStringLiteral("NAME"), QStringLiteral("EVENTS")});
    grid_->setCaptions({{QStringLiteral("NAME"), QStringLiteral("Компания")},
                        {QStringLiteral("EVENTS"), QStringLiteral("Событий")}});
    bottomLayout->addWidget(grid_, 1);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    split->setSizes({450, 150});
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(split);
    connect(run, &QPushButton::clicked, this, [this] { frames::guard([&] { runReport(); }); });
}

CrmReportForm::~CrmReportForm() = default;

void CrmReportForm::prepare() {
    const frames::WaitCursor wait;
    result_->setDatabase(frames::dmDataBaseFIB()->RvDatabase());
    result_->setTransaction(frames::dmDataBaseFIB()->pfReadTransaction());
    for (const Tab& t : kTabs) {
        auto* page = new QWidget(tabs_);
        auto* l = new QVBoxLayout(page);
        frames::TAbsEditFrame* f = frames::Registry::instance().create(QString::fromLatin1(t.cls), page);
        f->setObjectName(QString::fromLatin1(t.cls));
        f->setProperty(t.kindProperty, kind_);
        l->addWidget(f);
        // The frame's trees and grids take the tab's height, not just their first size.
        if (auto* box = qobject_cast<QBoxLayout*>(f->layout())) {
            if (QWidget* body = f->findChild<QWidget*>(QStringLiteral("body"), Qt::FindDirectChildrenOnly)) {
                for (int i = 0; i < box->count(); ++i) box->setStretch(i, 0);
                box->setStretchFactor(body, 1);
            }
        }
        tabs_->addTab(page, QString::fromUtf8(t.caption));
        f->Init();
    }
}

frames::TAbsEditFrame* CrmReportForm::frame(const QString& className) const {
    return findChild<frames::TAbsEditFrame*>(className);
}

void CrmReportForm::runReport() {
    const frames::WaitCursor wait;
    result_->close();
    result_->paramByName(QStringLiteral("kind"))->setValue(kind_);
    result_->paramByName(QStringLiteral("user_id"))->setValue(frames::CUR_USER);
    result_->open();
    // The companies' names take the width the counts leave.
    grid_->horizontalHeader()->setSectionResizeMode(grid_->columnOfField(QStringLiteral("NAME")),
                                                    QHeaderView::Stretch);
    int events = 0;
    for (int r = 0; r < result_->recordCount(); ++r) events += result_->valueAt(r, 2).toInt();
    summary_->setText(QStringLiteral("Компаний: %1, событий: %2").arg(result_->recordCount()).arg(events));
}

} // namespace workbench
