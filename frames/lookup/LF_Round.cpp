#include "frames/lookup/LF_Round.h"
#include "frames/core/Guard.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QSpinBox>
#include <stdexcept>

namespace frames {

namespace {

bool isNull(const QVariant& v) {
    return !v.isValid() || v.isNull();
}

bool sameKey(const QVariant& a, const QVariant& b) {
    if (isNull(a) || isNull(b)) return isNull(a) == isNull(b);
    bool okA = false, okB = false;
    const qint64 x = a.toLongLong(&okA), y = b.toLongLong(&okB);
    if (okA && okB) return x == y;
    return a.toString().trimmed() == b.toString().trimmed();
}

} // namespace

TRound_LF::TRound_LF(QWidget* parent) : TAbs_LF(parent) {
    // Until AfterConstruction the form description sets the controls: nothing is fed back.
    Busy = true;
    lcSelect->hide();
    lcSelect->setEnabled(false);
    lcSelect->setEscapeClear(false);

    rbSt = new QRadioButton(body());
    rbSt->setObjectName("rbSt");
    rbSt->setChecked(true);
    rbSp = new QRadioButton(body());
    rbSp->setObjectName("rbSp");

    stSelect = new QSpinBox(body());
    stSelect->setObjectName("stSelect");
    stSelect->setRange(MinStandard, MaxStandard);
    stSelect->setValue(-2);
    stSelect->installEventFilter(this);

    pFIBDataSet2 = new db::DataSet(this);
    pFIBDataSet2->setObjectName("pFIBDataSet2");
    pFIBDataSet2->setDatabase(dmDataBaseFIB()->RvDatabase());
    pFIBDataSet2->setTransaction(dmDataBaseFIB()->pfReadTransaction());
    DataSource2 = new db::DataSource(pFIBDataSet2, this);
    DataSource2->setObjectName("DataSource2");

    mdRound = new db::MemTable(this);
    mdRound->setObjectName("mdRound");
    mdRound->addFieldDef("R", db::FieldType::Integer);
    dsRound = new db::DataSource(mdRound, this);
    dsRound->setObjectName("dsRound");

    spSelect = new ui::LookupCombo(body());
    spSelect->setObjectName("spSelect");
    spSelect->setDataSource(dsRound);
    spSelect->setDataField("R");
    spSelect->setLookupSource(DataSource2);
    spSelect->setLookupField("ID");
    spSelect->setLookupDisplay("NAME");
    spSelect->setMinimumWidth(120);

    auto* lay = static_cast<QHBoxLayout*>(body()->layout());
    lay->addWidget(rbSt);
    lay->addWidget(rbSp);
    lay->addWidget(stSelect);
    lay->addWidget(spSelect, 1);
    lbSelect->setBuddy(rbSt);

    connect(rbSt, &QRadioButton::clicked, this, [this] { guard([&] { rbClick(); }); });
    connect(rbSp, &QRadioButton::clicked, this, [this] { guard([&] { rbClick(); }); });
    connect(stSelect, &QSpinBox::valueChanged, this,
            [this] { guard([&] { stSelectPropertiesEditValueChanged(); }); });
    connect(stSelect, &QSpinBox::editingFinished, this,
            [this] { guard([&] { stSelectPropertiesButtonClick(); }); });
    spSelect->OnClick = [this](QObject* s) { guard([&] { spSelectClick(s); }); };
    spSelect->OnKeyDown = [this](QObject* s, int& key, Qt::KeyboardModifiers m) {
        guard([&] { spSelectKeyDown(s, key, m); });
    };
    spSelect->OnDlgClick = [this](QObject* s) { guard([&] { spSelectDlgClick(s); }); };
    // The combo writes its choice into mdRound's edit buffer; posting it hands it to lcSelect.
    spSelect->OnChange = [this](QObject*) { guard([&] { postRound(); }); };
    mdRound->afterPost.connect([this](db::AbstractDataSet&) { mdRoundAfterPost(); });
    pFIBDataSet2->afterOpen.connect([this](db::AbstractDataSet& ds) {
        if (db::Field* f = ds.findField("NAME"))
            f->getText = [this](const db::Field& fld, QString& text, bool display) {
                FieldGetText(fld, text, display);
            };
    });
}

TRound_LF::~TRound_LF() = default;

void TRound_LF::AfterConstruction() {
    FormName = "RoundAlg";
    mdRound->open();
    mdRound->appendRecord({0});
    Busy = false;
    TAbs_LF::AfterConstruction();
    spSelect->setShowButton(true);
    Init();
}

void TRound_LF::Init() {
    TAbs_LF::Init();
    db::DataSource* src = lcSelect->dataSource();
    db::AbstractDataSet* record = src && !lcSelect->dataField().isEmpty() ? src->dataSet() : nullptr;
    if (record && !record->inEditMode()) SetReadOnly(true);
    // A new record takes the frame's default rule, so that what the frame shows is what the
    // record will store; an existing record is shown exactly as it is stored.
    if (record && record->state() == db::DataSetState::Insert && isNull(lcSelect->keyValue()))
        lcSelect->setKeyValue(stSelect->value());
    pFIBDataSet2->close();
    pFIBDataSet2->open();
    if (!pFIBDataSet2->isEmpty()) {
        QScopedValueRollback busy(Busy, true);
        pFIBDataSet2->first();
        spSelect->setKeyValue(pFIBDataSet2->fieldByName("ID")->value());
        postRound();
    }
    RefreshV();
    applyReadOnly();
}

void TRound_LF::SetReadOnly(bool value) {
    TAbs_LF::SetReadOnly(value);
    applyReadOnly();
}

void TRound_LF::applyReadOnly() {
    const bool ro = GetReadOnly();
    rbSt->setEnabled(!ro);
    rbSp->setEnabled(!ro);
    stSelect->setReadOnly(ro);
    // The special rule is only the frame's value: a viewed record must not be changed through it.
    spSelect->setReadOnly(ro);
}

int TRound_LF::GetAsInteger() {
    if (IsEmpty()) return NoValue;
    return lcSelect->keyValue().toInt();
}

void TRound_LF::SetAsInteger(int value) {
    if (GetReadOnly())
        throw std::runtime_error(
            (objectName() + ": Нельзя изменить значение, компонент в режиме просмотра.").toStdString());
    const int old = GetAsInteger();
    if (value >= MinStandard) {
        if (!sameKey(lcSelect->keyValue(), value)) lcSelect->setKeyValue(value);
    } else if (!IsEmpty()) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    } else {
        value = NoValue;
    }
    if (old != value) RefreshV();
}

QVariant TRound_LF::heldKey(ui::LookupCombo* combo) const {
    const QVariant key = combo->keyValue();
    if (combo == spSelect && !isSpecialRule(key)) return QVariant();
    return isNull(key) ? QVariant() : key;
}

bool TRound_LF::isSpecialRule(const QVariant& key) const {
    if (isNull(key) || !pFIBDataSet2->active()) return false;
    const db::Field* id = pFIBDataSet2->findField("ID");
    if (!id) return false;
    for (int row = 0, n = pFIBDataSet2->recordCount(); row < n; ++row)
        if (sameKey(pFIBDataSet2->valueAt(row, id->index()), key)) return true;
    return false;
}

void TRound_LF::SetKeyValue(ui::LookupCombo* target, ui::LookupCombo* source) {
    const QVariant key = heldKey(source);
    if (sameKey(target->keyValue(), key)) return;
    if (isNull(key)) {
        target->clear();
        if (target->OnChange) target->OnChange(target);
    } else {
        target->setKeyValue(key);
    }
    if (target == spSelect) postRound();
}

void TRound_LF::postRound() {
    if (mdRound->inEditMode()) mdRound->post();
}

bool TRound_LF::IsSpecial() const {
    return rbSp->isChecked();
}

void TRound_LF::RefreshV() {
    stSelect->hide();
    spSelect->hide();
    const QVariant key = lcSelect->keyValue();
    if (isNull(key) && !GetReadOnly()) {
        // No rule yet: neither kind is shown as chosen, so nothing on the screen suggests a value
        // the record does not hold. Choosing a kind gives the frame that kind's value.
        for (QRadioButton* rb : {rbSt, rbSp}) {
            rb->setAutoExclusive(false);
            rb->setChecked(false);
            rb->setAutoExclusive(true);
        }
        stSelect->setEnabled(false);
        spSelect->setEnabled(false);
        return;
    }
    // A value the lists do not know shows in the special combo, named as unknown.
    const bool special =
        isNull(key) ? GetReadOnly() : key.toInt() > MaxStandard || !unknownRuleText().isEmpty();
    (special ? rbSp : rbSt)->setChecked(true);
    switchKind(true);
}

QString TRound_LF::unknownRuleText() const {
    const QVariant key = lcSelect->keyValue();
    if (isNull(key)) return QString();
    const int k = key.toInt();
    if (k >= MinStandard && k <= MaxStandard) return QString();
    if (k > MaxStandard && isSpecialRule(key)) return QString();
    return QString::fromUtf8("Неизвестное правило (%1)").arg(k);
}

void TRound_LF::rbClick() {
    switchKind(false);
}

void TRound_LF::switchKind(bool showing) {
    QScopedValueRollback busy(Busy, true);
    const bool standard = rbSt->isChecked();
    stSelect->setEnabled(standard);
    spSelect->setEnabled(!standard);
    // Only the user's own switch of the kind gives the frame a new value; showing the value
    // never changes it, so a stored rule the lists do not know stays as it is.
    const bool writes = !showing && !GetReadOnly();
    if (standard) {
        const QVariant key = lcSelect->keyValue();
        if (!isNull(key)) {
            const int k = key.toInt();
            if (k != stSelect->value() && k >= MinStandard && k <= MaxStandard) stSelect->setValue(k);
        }
        if (writes && !sameKey(lcSelect->keyValue(), stSelect->value()))
            lcSelect->setKeyValue(stSelect->value());
    } else {
        const QVariant shown = heldKey(spSelect);
        const int remembered = isNull(shown) ? 0 : shown.toInt();
        SetKeyValue(spSelect, lcSelect);
        if (writes) {
            if (isNull(heldKey(spSelect)) && remembered > MaxStandard) {
                spSelect->setKeyValue(remembered);
                postRound();
            }
            SetKeyValue(lcSelect, spSelect);
        }
    }
    // A value that is neither a standard rounding nor a rule of the list is shown as such.
    spSelect->comboBox()->setPlaceholderText(unknownRuleText());
    spSelect->setVisible(!standard);
    stSelect->setVisible(standard);
}

void TRound_LF::stSelectPropertiesEditValueChanged() {
    stSelect->interpretText();
    if (Busy) return;
    if (!sameKey(lcSelect->keyValue(), stSelect->value())) lcSelect->setKeyValue(stSelect->value());
}

void TRound_LF::stSelectPropertiesButtonClick() {
    stSelect->interpretText();
}

void TRound_LF::stSelectKeyDown(int& key, Qt::KeyboardModifiers) {
    // A rule cannot be cleared from the keyboard.
    if (key == Qt::Key_Delete) key = 0;
}

void TRound_LF::spSelectKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift) {
    if (key == Qt::Key_Delete) {
        key = 0;
        return;
    }
    TAbs_LF::lcSelectKeyDown(sender, key, shift);
    SetKeyValue(spSelect, lcSelect);
}

void TRound_LF::spSelectClick(QObject* sender) {
    SetKeyValue(lcSelect, spSelect);
    TAbs_LF::lcSelectClick(sender);
}

void TRound_LF::spSelectDlgClick(QObject* sender) {
    TAbs_LF::lcSelectDlgClick(sender);
    pFIBDataSet2->close();
    pFIBDataSet2->open();
    SetKeyValue(spSelect, lcSelect);
    // The form may also return a standard rule: show the kind the value now belongs to.
    const QVariant key = lcSelect->keyValue();
    if (!isNull(key) && (key.toInt() > MaxStandard) != rbSp->isChecked()) RefreshV();
}

void TRound_LF::mdRoundAfterPost() {
    if (Busy) return;
    const db::Field* r = mdRound->fieldByName("R");
    if (!r->isNull()) {
        lcSelect->setKeyValue(r->value());
    } else if (!IsEmpty()) {
        lcSelect->clear();
        if (lcSelect->OnChange) lcSelect->OnChange(lcSelect);
    }
}

void TRound_LF::RefreshSp() {
    pFIBDataSet1->close();
    pFIBDataSet1->open();
    pFIBDataSet2->close();
    pFIBDataSet2->open();
    spSelect->update();
    lcSelect->update();
}

bool TRound_LF::eventFilter(QObject* watched, QEvent* event) {
    if (watched == stSelect && event->type() == QEvent::KeyPress) {
        auto* ke = static_cast<QKeyEvent*>(event);
        int key = ke->key();
        guard([&] { stSelectKeyDown(key, ke->modifiers()); });
        if (key == 0) return true;
    }
    return TAbs_LF::eventFilter(watched, event);
}

FRAMES_REGISTER(TRound_LF, "lookup");

} // namespace frames
