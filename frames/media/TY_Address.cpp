#include "frames/media/TY_Address.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/HostForms.h"
#include "frames/core/Registry.h"
#include "frames/edit/EF_DBEdit.h"
#include "frames/lookup/LF_Abs.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Transaction.h"
#include <QAction>
#include <QGridLayout>

namespace frames {

namespace {

const QString SelectText =
    QStringLiteral("select * from address_kladr where kind=?kind and object_index=?object_index");
const QStringList Edited = {"COUNTRY",     "POST_INDEX", "REGION",    "DISTRICT",       "DISTRICT_TYPE",
                            "CITY",        "CITY_TYPE",  "NAS_PUNKT", "NAS_PUNKT_TYPE", "STREET",
                            "STREET_TYPE", "HOUSE",      "BUILDING",  "APPARTMENT"};

QString updateText() {
    QStringList sets;
    for (const QString& c : Edited) sets << c + "=?" + c;
    return "update address_kladr set " + sets.join(", ") + " where KIND=?KIND and OBJECT_INDEX=?OBJECT_INDEX";
}

QString insertText() {
    const QStringList all = QStringList{"KIND", "OBJECT_INDEX"} + Edited + QStringList{"COMMENT"};
    QStringList params;
    for (const QString& c : all) params << "?" + c;
    return "insert into address_kladr (" + all.join(", ") + ") values (" + params.join(", ") + ")";
}

// The list form whose record the address belongs to: the owner's owner when the owner is the
// host's edit dialog.
TfmLayer1_FIB* listFormOf(const TAbsEditFrame* frame) {
    QObject* owner = frame->Owner();
    if (!qobject_cast<TfmAbsEditDlg*>(owner)) return nullptr;
    return qobject_cast<TfmLayer1_FIB*>(ownerOf(owner));
}

} // namespace

TfrAddress::TfrAddress(QWidget* parent) : TfrAddress(parent, "pfAddress", "dsAddress") {
    addEdit("defIndex", QStringLiteral("Индекс"), "POST_INDEX", 6);
    addLookup("TRegion_LF", "Region_LF1", "REGION");
    addEdit("defDistrict", QStringLiteral("Район"), "DISTRICT", 40);
    addTypeLookup("lfDistrictType", QStringLiteral("Тип района"), "DISTRICT_TYPE", 2);
    addLookup("TCity_LF", "City_LF1", "CITY");
    addTypeLookup("lfCityType", QStringLiteral("Тип города"), "CITY_TYPE", 3);
    addEdit("defNasPunkt", QStringLiteral("Населенный пункт"), "NAS_PUNKT", 40);
    addTypeLookup("lfNasPunktType", QStringLiteral("Тип нас. пункта"), "NAS_PUNKT_TYPE", 4);
    addEdit("defStreet", QStringLiteral("Улица"), "STREET", 40);
    addTypeLookup("lfStreetType", QStringLiteral("Тип улицы"), "STREET_TYPE", 5);
    addEdit("defHouse", QStringLiteral("Дом"), "HOUSE", 7);
    addEdit("defBuilding", QStringLiteral("Корпус"), "BUILDING", 7);
    addEdit("defAppartment", QStringLiteral("Квартира"), "APPARTMENT", 7);
}

TfrAddress::TfrAddress(QWidget* parent, const char* dataSetName, const char* sourceName)
    : TAbsEditFrame(parent) {
    resize(520, 260);
    SetCaption(QStringLiteral("Адрес по КЛАДР"));
    lbSelect->hide();
    grid_ = new QGridLayout;
    grid_->setContentsMargins(0, 0, 0, 0);
    body()->layout()->addItem(grid_);

    pfAddress = new db::DataSet(this);
    pfAddress->setObjectName(dataSetName);
    pfAddress->setDatabase(dmDataBaseFIB()->RvDatabase());
    pfAddress->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    pfAddress->setSelectSql(SelectText);
    pfAddress->setRefreshSql(SelectText);
    pfAddress->setUpdateSql(updateText());
    pfAddress->setInsertSql(insertText());
    pfAddress->beforeOpen.connect([this](db::AbstractDataSet&) { pfAddressBeforeOpen(); });
    pfAddress->onNewRecord.connect([this](db::AbstractDataSet&) { pfAddressNewRecord(); });
    dsAddress = new db::DataSource(pfAddress, this);
    dsAddress->setObjectName(sourceName);
    own_ = new db::Transaction(dmDataBaseFIB()->RvDatabase(), db::TransactionOptions::writeNoWait(), this);

    ClearAllAction = new QAction(QStringLiteral("Очистить все"), this);
    ClearAllAction->setObjectName("ClearAllAction");
    addAction(ClearAllAction);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(ClearAllAction, &QAction::triggered, this, [this] { guard([&] { ClearAllActionExecute(); }); });

    Country_LF1 = addLookup("TCountry_LF", "Country_LF1", "COUNTRY");
    Country_LF1->lcSelect->setLookupDisplay("KOD; NAME_COUNTRY");
}

TfrAddress::~TfrAddress() = default;

TAbs_LF* TfrAddress::addLookup(const QString& className, const char* name, const QString& field) {
    TAbs_LF* lf = nullptr;
    if (className == QLatin1String("TAbs_LF")) {
        // The type lookups are the plain base, given their statements here.
        lf = new TAbs_LF(body());
        lf->AfterConstruction();
    } else {
        lf = qobject_cast<TAbs_LF*>(Registry::instance().create(className, body()));
    }
    lf->setObjectName(name);
    lf->lcSelect->setDataField(field);
    lf->lcSelect->setDataSource(dsAddress);
    place(lf);
    return lf;
}

TAbs_LF* TfrAddress::addTypeLookup(const char* name, const QString& caption, const QString& field,
                                   int level) {
    TAbs_LF* lf = addLookup("TAbs_LF", name, field);
    lf->SetCaption(caption);
    lf->lcSelect->setLookupField("ID");
    lf->lcSelect->setLookupDisplay("SHORT_NAME; NAME");
    lf->lcSelect->setDropDownCount(level == 3 ? 8 : 5); // the city type keeps the usual 8
    const QString levelText = QString::number(level);
    lf->pFIBDataSet1->setSelectSql(
        "select id, short_name, name from address_object_types where object_level=" + levelText +
        " order by short_name");
    lf->pFIBDataSet1->setRefreshSql(
        "select id, short_name, name from address_object_types where object_level=" + levelText +
        " and id = ?id");
    return lf;
}

void TfrAddress::place(TAbsEditFrame* f) {
    // Two frames a row, in the order they are added.
    const int at = int(inner_.size());
    grid_->addWidget(f, at / 2, at % 2);
    inner_ << f;
}

TDBEdit_Frame* TfrAddress::addEdit(const char* name, const QString& caption, const QString& field,
                                   int maxLength) {
    auto* f = qobject_cast<TDBEdit_Frame*>(Registry::instance().create("TDBEdit_Frame", body()));
    f->setObjectName(name);
    f->SetCaption(caption);
    f->DBEdit->setDataField(field);
    f->DBEdit->setMaxLength(maxLength);
    place(f);
    return f;
}

void TfrAddress::pfAddressBeforeOpen() {
    pfAddress->paramByName("KIND")->setValue(ObjectKind);
    pfAddress->paramByName("OBJECT_INDEX")->setValue(ObjectIndex);
}

void TfrAddress::pfAddressNewRecord() {
    pfAddress->fieldByName("KIND")->setValue(ObjectKind);
    pfAddress->fieldByName("OBJECT_INDEX")->setValue(ObjectIndex);
}

void TfrAddress::Init() {
    TAbsEditFrame::Init();
    pfAddress->close();
    // Bound to a record being edited, the address is written in the list's transaction.
    db::AbstractDataSet* record = nullptr;
    if (TfmLayer1_FIB* list = listFormOf(this))
        if (db::DataSource* current = list->CurrentSource()) record = current->dataSet();
    auto* table = qobject_cast<db::DataSet*>(record);
    const bool editing = record && record->inEditMode();
    if (editing && table) {
        pfAddress->setTransaction(table->updateTransaction());
        pfAddress->setUpdateTransaction(table->updateTransaction());
    } else {
        pfAddress->setTransaction(dmDataBaseFIB()->pfReadTransaction());
        pfAddress->setUpdateTransaction(own_);
    }
    pfAddress->open();
    if (editing) pfAddress->edit();
    for (TAbsEditFrame* f : inner_) {
        f->Init();
        if (auto* edit = qobject_cast<TDBEdit_Frame*>(f)) edit->DBEdit->setDataSource(dsAddress);
    }
}

void TfrAddress::Save() {
    TAbsEditFrame::Save();
    if (!pfAddress->inEditMode()) return;
    pfAddress->post();
    // A free-standing address is written at once; a bound one with the owner's record.
    if (pfAddress->updateTransaction() == own_ && own_->active()) own_->commit();
}

void TfrAddress::SetReadOnly(bool value) {
    TAbsEditFrame::SetReadOnly(value);
    for (TAbsEditFrame* f : inner_) f->SetReadOnly(value);
}

void TfrAddress::ClearAllActionExecute() {
    if (!pfAddress->inEditMode()) pfAddress->edit();
    for (const QString& c : Edited) pfAddress->fieldByName(c)->clear();
}

TfrAddress_City::TfrAddress_City(QWidget* parent) : TfrAddress(parent, "pfAddress_City", "dsAddress_City") {
    pfAddress_City = pfAddress;
    dsAddress_City = dsAddress;
}

FRAMES_REGISTER(TfrAddress, "media");
FRAMES_REGISTER(TfrAddress_City, "media");

} // namespace frames
