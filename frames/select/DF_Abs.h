#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Query.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/ClassifTreeView.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QColor>
#include <QGroupBox>
#include <QHash>
#include <QSplitter>
#include <QToolButton>
#include <functional>

namespace frames {

// A statement with named parameters whose text a form description sets ("SQL": its lines).
class TFIBQuery : public db::Query {
    Q_OBJECT
    Q_PROPERTY(QStringList SQL READ sqlLines WRITE setSqlLines)
public:
    using db::Query::Query;
    QStringList sqlLines() const { return sql().isEmpty() ? QStringList{} : sql().split('\n'); }
    void setSqlLines(const QStringList& lines) { setSql(lines.join('\n')); }
    bool hasSql() const { return !sql().trimmed().isEmpty(); }
    // Sets the parameter when the statement has it.
    void setParam(const QString& name, const QVariant& value);
};

// The status bar under the chosen grid: one panel that its owner draws.
class TMXBar : public QWidget {
    Q_OBJECT
public:
    explicit TMXBar(QWidget* parent = nullptr);
    std::function<void(QPainter&, const QRect&)> onDrawPanel;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent*) override;
};

// The base of the selection dialogs: a classifier tree on the left, and on the right the records
// of the current node that are not chosen (upper grid) and those that are (lower grid). The choice
// lives on the server, in the concrete frame's selection table, one row per user, kind and
// record; every move between the grids inserts or deletes one row in the frame's own short write
// transaction, and both grids are read again from the server afterwards.
class TAbs_DF : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind READ GetKind WRITE SetKindProperty)
    Q_PROPERTY(int TreeType MEMBER TreeType)
    Q_PROPERTY(bool ShowNodeCounts MEMBER ShowNodeCounts)
public:
    explicit TAbs_DF(QWidget* parent = nullptr);
    ~TAbs_DF() override;

    void AfterConstruction() override;
    void Init() override;
    bool IsEmpty() override;
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    void FormClose() override;

    // ---- overridable steps, in this order
    virtual void SetKind(int kind);
    virtual void UpdateSelectImages(int node);
    virtual void UpdateSelectText(int node);
    virtual void ReadMXCounts(int node);
    virtual void GetMXPanelTexts(QString& text, QString& extraText, QColor& textColor, QColor& extraColor,
                                 QString& rightName);

    int GetKind() const { return Kind; }
    void SetKindProperty(int kind) { SetKind(kind); }

    // ---- the choice
    QString ItemsList();
    void ClearInvalidSelection();
    void ReopenDataSet();
    void UpdateDataSet();
    void CalcMX(bool full);
    void TransferRecDown();
    void TransferRecUp();
    void AddSelected();
    void DeleteUnSelected();

    // ---- handlers
    void DBTreeViewChange(int node);
    // The user clicked the node's state image: drops every choice under a node that has some,
    // chooses every record under one that has none.
    void DBTreeViewSelecting(int node);
    void DBTreeViewMouseDown(int node, Qt::MouseButton button);
    void DBGridSortMarkingChanged(ui::DBGrid* grid);
    void DBGridFind(ui::DBGrid* grid, QChar character);
    void sbtnSelectClientsClick() { TransferRecDown(); }
    void sbtnUnSelectClientsClick() { TransferRecUp(); }
    void aSearchExecute(QObject* sender);
    void SelectedMXBarDrawPanel(QPainter& painter, const QRect& rect);

    // What the status bar shows: the text, and the extra text when the user may see it.
    QString MXPanelText();
    // The node of a classifier id (-1 when the tree has none).
    int NodeOfClassif(int idClassif) const { return DBTreeView->findNode(idClassif); }

    // ---- controls
    ui::ClassifTreeView* DBTreeView;
    QSplitter* cxSplitterTree;
    QWidget* pnGrids;
    QSplitter* cxSplitterUnSelected;
    QGroupBox* gbUnSelected;
    ui::DBGrid* DBGridUnSelected;
    QWidget* PanelBtn;
    QToolButton* sbtnSelectClients;
    QToolButton* sbtnUnSelectClients;
    QGroupBox* gbSelected;
    ui::DBGrid* DBGridSelected;
    TMXBar* SelectedMXBar;
    QAction* aSearch;

    // ---- data
    db::Transaction* pfWriteTransaction;
    db::DataSet* trDataSet;
    db::DataSource* dsClassif;
    db::DataSet* pfDataSet;
    db::DataSource* ds;
    db::DataSet* pfSelected;
    db::DataSource* dsSelected;
    TFIBQuery* pfClassItemsCount;
    TFIBQuery* pfSelectItem;
    TFIBQuery* pfUnSelectItem;
    TFIBQuery* pfIsEmpty;
    TFIBQuery* pfSelectedList;
    TFIBQuery* pfAddSelected;
    TFIBQuery* pfClearInvalid;
    // Optional: the counts of every classifier node's own records at once (columns ID_CLASSIF,
    // CNT, CNT2), for frames whose pfClassItemsCount counts a node's records with those of every
    // node below it. CalcMX and ReopenDataSet then read one grouped statement and add the counts
    // up the tree instead of running pfClassItemsCount once per node.
    TFIBQuery* pfClassItemsCounts;

    // ---- state
    int Kind = -1;
    int CurClassif = -1;
    int LastUnSelectedID = -1;
    int LastSelectedID = -1;
    int UserID = -1;
    int TreeType = -1;
    bool ShowNodeCounts = false;
    int NodeCount = 0;
    int NodeSelected = 0;
    int UnSelectedCount = 0;
    int SelectedCount = 0;
    int MXCount = 0;
    int MXSelected = 0;

signals:
    // DBTreeViewSelecting chose or dropped every record under the node (emitted once it did).
    void NodeChoiceChanged(int node);

protected:
    virtual void trDataSetBeforeOpen(db::AbstractDataSet& dataSet);
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& dataSet);
    void pfDataSetBeforeClose(db::AbstractDataSet& dataSet);
    void pfDataSetAfterOpen(db::AbstractDataSet& dataSet);
    // Runs before pfClearInvalid executes (its USER_ID and KIND are set).
    virtual void pfClearInvalidBeforeExecute() {}
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // One statement in the write transaction, committed; rolled back when it failed (the error
    // goes on to the caller).
    void execWrite(TFIBQuery* q);
    void transferMarked(ui::DBGrid* grid, db::DataSet* dataSet, TFIBQuery* statement);
    bool gridKeyDown(ui::DBGrid* grid, QKeyEvent* e);
    // Gives the parents of a node the marks of their children: all chosen (4) when every child
    // is, partly (3) when some child has a mark.
    void carrySelectImages(int node);
    // Every node of a freshly read tree gets its folder image.
    void markNodeImages();
    void applyServerOrder(db::DataSet* dataSet, const QList<db::SortKey>& keys);
    int treeNodeCount() const { return DBTreeView->nodeCount(); }

    // Reads the counts of every node through pfClassItemsCounts when it has a statement; until
    // dropCountCache, ReadMXCounts takes them from there.
    void cacheNodeCounts();
    void dropCountCache() { countCache_.clear(); }

    QHash<db::DataSet*, QString> baseSelect_;    // each grid's statement without its order
    QHash<int, std::pair<int, int>> countCache_; // node -> (Cnt, Cnt2), while a pass runs
    bool initialized_ = false;
    bool reopening_ = false; // the tree is being read again: its node changes are not the user's
};

} // namespace frames
