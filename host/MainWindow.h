#pragma once
#include "frames/core/AbsEditFrame.h"
#include "host/CardForms.h"
#include "host/FrameHostForms.h"
#include <QMainWindow>
#include <QPointer>

class QTreeWidget;
class QTreeWidgetItem;
class QScrollArea;
class QLabel;
class QPushButton;

namespace frames {
class Registry;
}

namespace workbench {

class HostImpl;

// The workbench's main window: the frame browser (registered classes by family on the left, the
// chosen frame free-standing on the right) and the entry to the card list form and the reference
// forms.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(HostImpl* host, frames::Registry* registry, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Shows the frame of that class in the panel (the previous one is closed); returns it, or
    // nullptr when it could not be made.
    frames::TAbsEditFrame* showFrame(const QString& className);
    frames::TAbsEditFrame* currentFrame() const { return frame_; }
    void openCardList();
    // Opens a list form of records for a lookup frame, whose edit dialog shows the frame bound.
    RecordListForm* openOnEditDialog(const QString& className);
    void openReferenceForm(const QString& formName);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void closeFrame();
    void itemChosen(QTreeWidgetItem* item);

    HostImpl* host_;
    frames::Registry* registry_;
    QTreeWidget* tree_;
    QScrollArea* scroll_;
    QWidget* panel_;
    QLabel* info_;
    QPushButton* btBound_;
    QPointer<frames::TAbsEditFrame> frame_;
    QPointer<CardListForm> cardList_;
    QPointer<RecordListForm> recordList_;
};

} // namespace workbench
