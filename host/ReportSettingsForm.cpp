#include "host/ReportSettingsForm.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "frames/core/WaitCursor.h"
#include "frames/lists/BF_Manager.h"
#include "frames/lists/LCBF_PermissionPattern.h"
#include "host/HostImpl.h"
#include "host/HostedFrames.h"
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QSpinBox>
#include <QVBoxLayout>

namespace workbench {

namespace {

frames::TConfigItem* settingsNode(HostImpl* host) {
    return host->LayoutRoot()->ItemByName(QStringLiteral("ReportSettings"));
}

} // namespace

ReportSettingsForm::ReportSettingsForm(HostImpl* host, QWidget* parent)
    : TfmPersistentForm(parent), host_(host) {
    setObjectName(QStringLiteral("ReportSettingsForm"));
    setWindowTitle(QStringLiteral("Настройки отчёта"));
    resize(720, 420);
    sbKind_ = new QSpinBox(this);
    sbKind_->setObjectName(QStringLiteral("sbKind"));
    sbKind_->setRange(1, 999);
    frames::TConfigItem* node = settingsNode(host_);
    sbKind_->setValue(node->IsExists(QStringLiteral("Kind"))
                          ? node->ItemByName(QStringLiteral("Kind"))->GetAsInteger()
                          : 1);
    auto* top = new QFormLayout;
    top->addRow(QStringLiteral("Вид настроек:"), sbKind_);
    panel_ = new QWidget(this);
    panel_->setLayout(new QHBoxLayout);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(panel_, 1);
    layout->addWidget(buttons);
    connect(sbKind_, &QSpinBox::valueChanged, this, [this](int k) { frames::guard([&] { setKind(k); }); });
}

ReportSettingsForm::~ReportSettingsForm() {
    if (!closed_) frames::guard([this] { closeFrames(); });
}

int ReportSettingsForm::kind() const {
    return sbKind_->value();
}

void ReportSettingsForm::prepare() {
    openFrames();
}

void ReportSettingsForm::openFrames() {
    const frames::WaitCursor wait;
    const int k = kind();
    hosted_ = new HostedFrames(panel_, [this, k](const QString& name) {
        return settingsNode(host_)->ItemByName(QStringLiteral("Kind%1").arg(k))->ItemByName(name);
    });
    auto make = [this, k](const QString& cls) {
        frames::TAbsEditFrame* f = frames::Registry::instance().create(cls, panel_);
        f->setProperty("Kind", k);
        panel_->layout()->addWidget(f);
        hosted_->open(f);
        return f;
    };
    managers_ = qobject_cast<frames::TManager_BF*>(make(QStringLiteral("TManager_BF")));
    patterns_ =
        qobject_cast<frames::TPermissionPattern_LCBF*>(make(QStringLiteral("TPermissionPattern_LCBF")));
    settingsNode(host_)->ItemByName(QStringLiteral("Kind"))->SetAsInteger(k);
}

void ReportSettingsForm::closeFrames() {
    if (!hosted_) return;
    hosted_->close();
    delete managers_;
    delete patterns_;
    managers_ = nullptr;
    patterns_ = nullptr;
    delete hosted_;
    hosted_ = nullptr;
    host_->saveLayout();
}

void ReportSettingsForm::setKind(int k) {
    if (sbKind_->value() != k) {
        sbKind_->setValue(k); // comes back here through valueChanged
        return;
    }
    closeFrames();
    openFrames();
}

void ReportSettingsForm::done(int result) {
    closed_ = true;
    frames::guard([this] { closeFrames(); });
    TfmPersistentForm::done(result);
}

} // namespace workbench
