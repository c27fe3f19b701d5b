#pragma once
#include "frames/core/AbsEditFrame.h"
#include "platform/db/DataSet.h"
#include "platform/db/DataSource.h"
#include "platform/db/Transaction.h"
#include "platform/widgets/DBGrid.h"
#include <QAction>
#include <QToolButton>

namespace frames {

// A user's own list of goods cards (SEL_CARDSCLA by article): cards are added through the host's
// card form ("CardForm", several at a time) and marked rows deleted, each change committed at once.
class TSFCards : public TAbsEditFrame {
    Q_OBJECT
    Q_PROPERTY(int Kind MEMBER Kind)
public:
    explicit TSFCards(QWidget* parent = nullptr);
    ~TSFCards() override;

    void Init() override;
    void SetReadOnly(bool value) override;
    void FormClose() override;

    // Handlers.
    virtual void pfDataSetBeforeOpen(db::AbstractDataSet& ds);
    virtual void aAddUpdate();
    virtual void aDelUpdate();
    virtual void aAddExecute();
    virtual void aDelExecute();

    // The article of a card's code as the card form gives it.
    static QString GetArticul(const QString& code);

    ui::DBGrid* dbGrid;
    QWidget* pnTop;
    QToolButton* bbAdd;
    QToolButton* bbDel;
    db::DataSet* pfDataSet;
    db::Transaction* pfTransaction;
    db::DataSource* ds;
    QAction* aAdd;
    QAction* aDel;

    int Kind = -1;
    int UserId = 0;

    // The name of the run parameter that carries the chosen cards ("code=name" lines).
    static constexpr const char* CardsParam = "Cards";

private:
    void updateActions();
    void reopen();
};

} // namespace frames
