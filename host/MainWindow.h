#pragma once
#include "frames/core/AbsEditFrame.h"
#include "host/CardForms.h"
#include "host/ClientReportForm.h"
#include "host/FilterPanel.h"
#include "host/FrameHostForms.h"
#include "host/HostedFrames.h"
#include <QMainWindow>
#include <QPointer>

class QTreeWidget;
class QTreeWidgetItem;
class QScrollArea;
class QSplitter;
class QLabel;
class QLineEdit;
class QPushButton;
class QTimer;

namespace frames {
class Registry;
}

namespace workbench {

class HostImpl;
class MassEditDialog;

// The workbench's main window: the frame browser (registered classes by family on the left, the
// chosen frame free-standing on the right) and the entry to the card list form, the payment
// documents with their edit dialog of value editors, the filter panel and the reference forms.
class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    MainWindow(HostImpl* host, const frames::Registry* registry, QWidget* parent = nullptr);
    ~MainWindow() override;

    // Shows the frame of that class in the panel (the previous one is closed); returns it, or
    // nullptr when it could not be made.
    frames::TAbsEditFrame* showFrame(const QString& className);
    frames::TAbsEditFrame* currentFrame() const { return frame_; }
    void openCardList();
    // The report over the counterparties chosen in the client selection dialog.
    ClientReportForm* openClientReport();
    // Opens a list form of records for a lookup frame, whose edit dialog shows the frame bound.
    RecordListForm* openOnEditDialog(const QString& className);
    // The payment documents; their edit dialog gives the focus to the frame of that class first.
    RecordListForm* openDocumentList(const QString& focusClass = {});
    // The clients, whose edit dialog is the client's card with his address.
    RecordListForm* openClientList();
    // The mass-edit dialog over the documents (their marked rows, else the current one), on the
    // column that a frame of that class edits.
    MassEditDialog* openMassEdit(const QString& frameClass);
    // The filter panel, with the frame of that class in view.
    FilterPanelForm* openFilterPanel(const QString& focusClass = {});
    // The sales report, its frame of that class (a filter box of the report) in view.
    FilterPanelForm* openSalesReport(const QString& focusClass = {});
    // What "На форме редактирования…" opens for the frame shown: the record list of a lookup,
    // the documents for a value editor, the filter panel for a filter, the mass-edit dialog over
    // the documents for a mass-edit frame; nothing for the others.
    // The form that hosts a CRM frame: the company or event list, or the CRM report form.
    void openCrmForm(const QString& className);
    void openHostOfFrame(const QString& className);
    // Whether the frame browser offers a host form for that class.
    bool hasHostForm(const QString& className) const;
    void openReferenceForm(const QString& formName);
    // Shows in the frame browser only the frames whose caption or class name contains the text
    // (any case); returns how many are shown.
    int filterFrames(const QString& text);

protected:
    void closeEvent(QCloseEvent* e) override;

private:
    void closeFrame();
    // Shows the chosen frame's items (ItemsCount, ItemsItem and its key list) under it.
    void showItems();
    void itemChosen(QTreeWidgetItem* item);
    void restoreWindowLayout();
    void saveWindowLayout();

    HostImpl* host_;
    const frames::Registry* registry_;
    QTreeWidget* tree_;
    QLineEdit* search_;
    QSplitter* split_;
    QScrollArea* scroll_;
    QWidget* panel_;
    QLabel* info_;
    QPushButton* btBound_;
    QLabel* items_;
    QTimer* itemsTimer_;
    QPointer<frames::TAbsEditFrame> frame_;
    HostedFrames* hosted_;
    QPointer<CardListForm> cardList_;
    QPointer<ClientReportForm> clientReport_;
    QPointer<RecordListForm> recordList_;
    QPointer<RecordListForm> documentList_;
    QPointer<RecordListForm> clientList_;
    QPointer<FilterPanelForm> filterPanel_;
    QPointer<FilterPanelForm> salesReport_;
};

} // namespace workbench
