#pragma once
#include "frames/medit/ME_ComboEdit.h"
#include <QImage>

namespace frames {

// A colour: as TComboEdit_ME over a list with the column COLOR (0x00BBGGRR), and every row of
// both lists shows a swatch of the colour: a one-pixel teal ring (0x808000), a one-pixel white
// ring, the colour inside; the list's empty entry is filled with the window colour, and a row
// without a colour (COLOR null) gets no swatch.
class TComboColorEdit_ME : public TComboEdit_ME {
    Q_OBJECT
public:
    explicit TComboColorEdit_ME(QWidget* parent = nullptr);
    static constexpr int SwatchWidth = 30, SwatchHeight = 12, TextMargin = 30;

    void AfterConstruction() override;

    // The swatch of the current row of the sender's list (isEmpty: the empty entry) into image,
    // with the text margin; nothing when there is no bitmap or the row has no colour.
    virtual void lfNewValuelcSelectGetImage(QObject* sender, bool isEmpty, QImage& image, int& textMargin);
    virtual void lfOldValuelcSelectGetImage(QObject* sender, bool isEmpty, QImage& image, int& textMargin);

    // Paints the rings and the fill over the whole bitmap.
    static void paintSwatch(QImage& bitmap, const QColor& fill);

    QImage Bitmap; // null until AfterConstruction

private:
    void swatchOf(TAbs_LF* lf, bool isEmpty, QImage& image, int& textMargin);
};

} // namespace frames
