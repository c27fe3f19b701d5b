// Writes the demo pages of the image database (schema/images/20_demo_pages.sql) to standard
// output: generated pictures of document pages in each stored format, as hex literals.
//   make_demo_pages > schema/images/20_demo_pages.sql
#include <QBuffer>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <cstdio>

namespace {

// A document page: a title, a few lines of "text", a stamp and the page number.
QImage page(int w, int h, const QString& title, int number, QColor stamp) {
    QImage img(w, h, QImage::Format_RGB32);
    img.fill(QColor(250, 250, 245));
    QPainter p(&img);
    p.setRenderHint(QPainter::Antialiasing);
    QFont f(QStringLiteral("DejaVu Sans"));
    f.setPixelSize(qMax(8, h / 18));
    f.setBold(true);
    p.setFont(f);
    p.setPen(Qt::black);
    p.drawText(QRect(4, 4, w - 8, h / 8), Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextWordWrap, title);
    p.setPen(QPen(QColor(120, 120, 120), 1));
    for (int y = h / 5; y < h * 3 / 4; y += qMax(4, h / 16))
        p.drawLine(w / 10, y, w - w / 10 - ((y * 7) % (w / 3)), y);
    p.setPen(QPen(stamp, qMax(1, w / 60)));
    p.drawEllipse(QPoint(w * 3 / 4, h * 4 / 5), w / 7, w / 7);
    f.setPixelSize(qMax(8, h / 14));
    p.setFont(f);
    p.setPen(Qt::darkBlue);
    p.drawText(QRect(0, h - h / 7, w / 2, h / 8), Qt::AlignCenter, QStringLiteral("стр. %1").arg(number));
    return img;
}

QByteArray encode(const QImage& img, const char* format, int quality = -1) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    img.save(&buffer, format, quality);
    return bytes;
}

// A bitmap small enough for one statement: 256 colours.
QByteArray bitmap(const QImage& img) {
    return encode(img.convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither), "BMP");
}

void row(int doc, int kind, int number, const QByteArray& image, int format) {
    std::printf(
        "INSERT INTO PAYMENT_DOC_IMAGES (ID_PAYMENT_DOC, IMAGE_KIND, PAGE_NUMBER, IMAGE, IMAGE_FORMAT) "
        "VALUES (%d, %d, %d, x'%s', %d);\n",
        doc, kind, number, image.toHex().constData(), format);
}

} // namespace

int main(int argc, char** argv) {
    QGuiApplication app(argc, argv);
    std::printf(
        "/* Demo pages of the payment documents, written by make_demo_pages (schema/make_demo_pages.cpp).\n"
        "   Document 1: three scanned pages in three formats (bitmap, JPEG, icon) and a photo;\n"
        "   document 2: pages 1 and 3 (page 2 was deleted: page 3 keeps its number), one stored\n"
        "   without a known format; document 3: a metafile that has no viewer here. */\n\n");
    const QString pp1 = QStringLiteral("Платёжное поручение ПП-000101");
    row(1, 1, 1, bitmap(page(120, 160, pp1, 1, Qt::blue)), 0);
    row(1, 1, 2, encode(page(240, 320, pp1, 2, Qt::blue), "JPG", 70), 1);
    row(1, 1, 3, encode(page(32, 32, QString(), 3, Qt::red).scaled(32, 32), "ICO"), 2);
    QImage photo(200, 150, QImage::Format_RGB32);
    {
        QPainter p(&photo);
        QLinearGradient sky(0, 0, 0, 150);
        sky.setColorAt(0, QColor(110, 160, 230));
        sky.setColorAt(1, QColor(230, 240, 250));
        p.fillRect(photo.rect(), sky);
        p.setBrush(QColor(90, 140, 60));
        p.setPen(Qt::NoPen);
        p.drawRect(0, 100, 200, 50);
        p.setBrush(QColor(180, 80, 60));
        p.drawRect(70, 60, 60, 45);
        p.setBrush(QColor(250, 210, 60));
        p.drawEllipse(QPoint(165, 30), 14, 14);
    }
    row(1, 3, 1, encode(photo, "JPG", 75), 1);
    const QString pp2 = QStringLiteral("Платёжное поручение ПП-000102");
    row(2, 1, 1, bitmap(page(120, 160, pp2, 1, Qt::darkGreen)), 0);
    row(2, 1, 3, bitmap(page(120, 160, pp2, 3, Qt::darkGreen)), -1);
    // The header of a placeable metafile and an empty record list: what a scanner driver's
    // vector page starts with; there is no decoder for it here.
    const QByteArray wmf =
        QByteArray::fromHex("d7cdc69a0000000000007800a000e8030000000000000100090000030c000000"
                            "0000030000000000");
    row(3, 2, 1, wmf, 4);
    return 0;
}
