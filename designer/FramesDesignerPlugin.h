#pragma once
#include <QObject>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>

namespace frames::designer {

// One frame class in the designer's palette: under its family's name, with the caption of its
// form description as tool tip and the size the frame takes with its description applied as the
// default geometry. The designer and uic create it through the registry: the widget on the form
// is the frame a host gets from Registry::create.
class FrameWidget : public QObject, public QDesignerCustomWidgetInterface {
    Q_OBJECT
    Q_INTERFACES(QDesignerCustomWidgetInterface)
public:
    FrameWidget(const QString& className, const QString& family, QObject* parent);

    QString name() const override { return className_; }
    QString group() const override;
    QString toolTip() const override;
    QString whatsThis() const override;
    QString includeFile() const override;
    QIcon icon() const override;
    bool isContainer() const override { return false; }
    QWidget* createWidget(QWidget* parent) override;
    QString domXml() const override;
    bool isInitialized() const override { return initialized_; }
    void initialize(QDesignerFormEditorInterface*) override { initialized_ = true; }

    // The default size on a form: the frame's size hint with its description applied.
    QSize defaultSize() const;

private:
    QString className_;
    QString family_;
    mutable QSize size_;
    bool initialized_ = false;
};

// Every frame class of the registry, read when the designer loads the plugin.
class FramesDesignerPlugin : public QObject, public QDesignerCustomWidgetCollectionInterface {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
    Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)
public:
    explicit FramesDesignerPlugin(QObject* parent = nullptr);

    QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return widgets_; }

private:
    QList<QDesignerCustomWidgetInterface*> widgets_;
};

} // namespace frames::designer
