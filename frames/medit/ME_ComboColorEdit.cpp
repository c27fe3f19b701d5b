#include "frames/medit/ME_ComboColorEdit.h"
#include "frames/core/Guard.h"
#include "frames/core/Registry.h"
#include "platform/widgets/ColorSwatch.h"
#include <QIcon>
#include <QPixmap>

namespace frames {

TComboColorEdit_ME::TComboColorEdit_ME(QWidget* parent) : TComboEdit_ME(parent) {
    for (auto [lf, handler] : {std::pair{lfNewValue, &TComboColorEdit_ME::lfNewValuelcSelectGetImage},
                               {lfOldValue, &TComboColorEdit_ME::lfOldValuelcSelectGetImage}}) {
        lf->lcSelect->OnGetImage = [this, handler](QObject* sender, int row) {
            QImage image;
            int margin = 0;
            guard([&] { (this->*handler)(sender, row < 0, image, margin); });
            return image.isNull() ? QIcon() : QIcon(QPixmap::fromImage(image));
        };
    }
}

void TComboColorEdit_ME::AfterConstruction() {
    TComboEdit_ME::AfterConstruction();
    Bitmap = QImage(SwatchWidth, SwatchHeight, QImage::Format_RGB32);
}

void TComboColorEdit_ME::paintSwatch(QImage& bitmap, const QColor& fill) {
    const QRgb teal = ui::colorFromBgr(0x808000).rgb();
    const QRgb white = qRgb(255, 255, 255);
    const int w = bitmap.width(), h = bitmap.height();
    for (int x = 0; x < w; ++x)
        for (int y = 0; y < h; ++y) {
            QRgb c = fill.rgb();
            if (x == 0 || x == w - 1 || y == 0 || y == h - 1)
                c = teal;
            else if (x < 2 || x > w - 3 || y < 2 || y > h - 3)
                c = white;
            bitmap.setPixel(x, y, c);
        }
}

void TComboColorEdit_ME::swatchOf(TAbs_LF* lf, bool isEmpty, QImage& image, int& textMargin) {
    if (Bitmap.isNull()) return;
    QColor fill = palette().color(QPalette::Base);
    if (!isEmpty) {
        db::Field* color = lf->pFIBDataSet1->findField(QStringLiteral("COLOR"));
        if (!color || color->isNull()) return;
        fill = ui::colorFromBgr(color->asInt64());
    }
    paintSwatch(Bitmap, fill);
    image = Bitmap;
    textMargin = TextMargin;
}

void TComboColorEdit_ME::lfNewValuelcSelectGetImage(QObject*, bool isEmpty, QImage& image, int& textMargin) {
    swatchOf(lfNewValue, isEmpty, image, textMargin);
}

void TComboColorEdit_ME::lfOldValuelcSelectGetImage(QObject*, bool isEmpty, QImage& image, int& textMargin) {
    swatchOf(lfOldValue, isEmpty, image, textMargin);
}

FRAMES_REGISTER(TComboColorEdit_ME, "medit");

} // namespace frames
