#pragma once
#include "frames/multi/LF_MultiAbs.h"
#include <QPixmap>

namespace frames {

// A list of colours from the colour reference: the chosen colours keep their value in the list
// and show it as a swatch beside the name. Any number of colours may be chosen. The query is
// fixed; the exclusion clause is appended to it.
class TMultiColor_LF : public TMultiAbs_LF {
    Q_OBJECT
public:
    explicit TMultiColor_LF(QWidget* parent = nullptr);

    QString SelectText(const QString& keys) const override;
    bool HasExclusion() const override { return true; }
    // The swatch of a list row: a two-pixel frame around the row's colour (white for a row
    // without one).
    virtual QVariant dbColorListGetImage(QObject* sender, int row);
    virtual void dbColorListKeyDown(QObject* sender, int& key, Qt::KeyboardModifiers shift);

    ui::LookupListBox* dbColorList; // the list of the base, showing swatches
    const QString FixedSQL = QStringLiteral("select id, name, color, comment from Color where id<>-1 ");

protected:
    int MaxChosen() const override { return 0; }
    void FillListRow() override;

private:
    QPixmap swatch_{30, 12};
};

} // namespace frames
