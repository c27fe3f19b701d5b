#pragma once
#include "frames/lookup/LF_Abs.h"

namespace frames {

// A set (complect) of a goods card valid from a date: the list shows the sets of the card with
// the article code SetArticul names, by date. The reference form "ComplectHeader" is opened for
// the same card and learns its article code and name.
class TComplectHeader_LF : public TAbs_LF {
    Q_OBJECT
    Q_PROPERTY(QString Articul READ Articul WRITE SetArticul)
    Q_PROPERTY(QString CardName READ CardName WRITE SetCardName)
public:
    explicit TComplectHeader_LF(QWidget* parent = nullptr);

    QString Articul() const { return articul_; }
    // The card whose sets are listed; the list is read again when it is open. A set that the
    // new list does not hold is let go.
    void SetArticul(const QString& articul);
    // The same for a card the frame has just been switched to: the set in force today (the
    // latest set dated today or earlier, else the earliest one) is chosen.
    void SetNewArticul(const QString& articul);
    QString CardName() const { return cardName_; }
    // The card's name, for the reference form and the frame's tooltip.
    void SetCardName(const QString& name);

    void pFIBDataSet1BeforeOpen(db::AbstractDataSet& dataSet) override;
    // Opens the sets form for the card (parameters ARTICUL and CARD_NAME); without an article
    // code there is no card to show sets of, and the user is told so.
    void lcSelectDlgClick(QObject* sender) override;

private:
    void reopen();
    void setKey(const QVariant& key);

    QString articul_;
    QString cardName_;
};

} // namespace frames
