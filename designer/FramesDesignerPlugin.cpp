#include "designer/FramesDesignerPlugin.h"
#include "frames/core/AbsEditFrame.h"
#include "frames/core/Host.h"
#include "frames/core/Registry.h"
#include <QIcon>
#include <QLabel>
#include <QtGlobal>
#include <memory>
#include <stdexcept>

namespace frames::designer {

namespace {

// The services a frame may ask for while it sits on a form in the designer: no database, no
// forms to open, the configuration's defaults; messages go to the designer's output.
class DesignHost : public Host {
public:
    int RunModule(const QString&, TRunParams&) override { return 2; }
    QObject* RvGetForm(const QString&) override { return nullptr; }
    QStringList FormList() const override { return {}; }
    void ErrorBox(const QString& text) override { qWarning("frames: %s", qPrintable(text)); }
    void ErrorBoxEx(const QString& text, int detail) override {
        qWarning("frames: %s (%d)", qPrintable(text), detail);
    }
    void WarningBox(const QString& text) override { qWarning("frames: %s", qPrintable(text)); }
    void InfoBox(const QString& text) override { qInfo("frames: %s", qPrintable(text)); }
    bool QuestionBox(const QString&) override { return false; }
    int GetIntValue(const QString&) const override { return 0; }
    bool GetBoolValue(const QString&) const override { return false; }
    QString GetStringValue(const QString&) const override { return {}; }
    QString PrecisionCurFormat() const override { return QStringLiteral(",0.00"); }
    QString PrecisionQuantityFormat() const override { return QStringLiteral(",0.###"); }
    QString PrecisionRubFormat() const override { return QStringLiteral(",0.00"); }
    QString PrecisionVolumeFormat() const override { return QStringLiteral(",0.###"); }
    QString ProfilePath() const override { return {}; }
    QString IniString(const QString&, const QString&, const QString& def) const override { return def; }
    db::Database* RvDatabase() const override { return nullptr; }
    db::Transaction* pfReadTransaction() const override { return nullptr; }
    db::Database* ImageDatabase() const override { return nullptr; }
    bool IsFuncRights(const QString&) const override { return false; }
    int SessionNumber() const override { return 0; }
    void TraceText(const QString&, int) override {}
    void OpenAddress(const QString&) override {}
    void CustomizeGrid(ui::DBGrid*) override {}
    void FindInGrid(ui::DBGrid*) override {}
};

bool hostInstalled() {
    try {
        host();
        return true;
    } catch (const std::logic_error&) {
        return false;
    }
}

// The host the frames on the designer's forms use: the application's own when it installed one
// (a program that loads forms with the plugin), else the plugin's.
Host* designTimeHost() {
    static DesignHost designHost;
    if (!hostInstalled()) setHost(&designHost);
    return host();
}

// The frame as the registry makes it, when the host has a database. Without one (the designer
// itself) the frame is shown as constructed with its descriptions applied: its AfterConstruction
// may read the database. The code that uic generates from the form finishes it in full at run
// time.
TAbsEditFrame* makeForDesign(const QString& className, QWidget* parent) {
    Host* h = designTimeHost();
    if (h->RvDatabase() && h->pfReadTransaction()) return Registry::instance().create(className, parent);
    const FrameClass* c = Registry::instance().find(className);
    if (!c) throw std::runtime_error("Unknown frame class " + className.toStdString());
    std::unique_ptr<TAbsEditFrame> frame(c->make(parent));
    frame->setObjectName(className.mid(1));
    FormLoader::apply(frame.get(), className);
    return frame.release();
}

} // namespace

FrameWidget::FrameWidget(const QString& className, const QString& family, QObject* parent)
    : QObject(parent), className_(className), family_(family) {}

QString FrameWidget::group() const {
    return Registry::familyCaption(family_);
}

QString FrameWidget::toolTip() const {
    const QString caption = FormLoader::caption(className_);
    return caption.isEmpty() ? className_ : caption;
}

QString FrameWidget::whatsThis() const {
    const QString caption = FormLoader::caption(className_);
    return caption.isEmpty() ? className_ : QStringLiteral("%1 — %2").arg(className_, caption);
}

QString FrameWidget::includeFile() const {
    return QStringLiteral("frames/designer/%1.h").arg(className_);
}

QIcon FrameWidget::icon() const {
    return {};
}

QWidget* FrameWidget::createWidget(QWidget* parent) {
    try {
        return makeForDesign(className_, parent);
    } catch (const std::exception& e) {
        // The designer must not go down with a frame: it shows what failed in its place.
        auto* failed =
            new QLabel(QStringLiteral("%1: %2").arg(className_, QString::fromUtf8(e.what())), parent);
        failed->setWordWrap(true);
        return failed;
    }
}

QSize FrameWidget::defaultSize() const {
    if (size_.isValid()) return size_;
    QSize size(200, 60);
    try {
        std::unique_ptr<TAbsEditFrame> frame(makeForDesign(className_, nullptr));
        const QSize hint = frame->sizeHint().expandedTo(frame->minimumSizeHint());
        if (hint.width() > 0 && hint.height() > 0) size = hint;
    } catch (const std::exception& e) {
        qWarning("frames: %s: %s", qPrintable(className_), e.what());
    }
    size_ = size;
    return size_;
}

QString FrameWidget::domXml() const {
    const QSize size = defaultSize();
    return QStringLiteral("<ui language=\"c++\">\n"
                          " <widget class=\"%1\" name=\"%2\">\n"
                          "  <property name=\"geometry\">\n"
                          "   <rect><x>0</x><y>0</y><width>%3</width><height>%4</height></rect>\n"
                          "  </property>\n"
                          " </widget>\n"
                          "</ui>\n")
        .arg(className_, className_.mid(1))
        .arg(size.width())
        .arg(size.height());
}

FramesDesignerPlugin::FramesDesignerPlugin(QObject* parent) : QObject(parent) {
    const Registry& registry = Registry::instance();
    for (const QString& family : registry.families())
        for (const QString& cls : registry.classNames(family))
            widgets_.append(new FrameWidget(cls, family, this));
}

} // namespace frames::designer
